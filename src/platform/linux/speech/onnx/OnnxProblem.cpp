#include "platform/linux/speech/onnx/OnnxProblem.h"

#include "platform/linux/speech/onnx/OnnxTexts.h"

namespace tavrin {
namespace {

LocalizedText libraryTextOf(OnnxFault fault)
{
    switch (fault) {
    case OnnxFault::NoLibrary:
        return texts::onnxNoLibrary;
    case OnnxFault::NoPartner:
        return texts::onnxNoPartner;
    case OnnxFault::LibraryBroken:
        return texts::onnxLibraryBroken;
    case OnnxFault::LibraryVersion:
        return texts::onnxLibraryVersion;
    case OnnxFault::LibraryIncomplete:
        return texts::onnxLibraryIncomplete;
    case OnnxFault::OtherLibrary:
        return texts::onnxOtherLibrary;
    default:
        return texts::onnxModelRefused;
    }
}

} // namespace

LocalizedText textOf(OnnxFault fault)
{
    switch (fault) {
    case OnnxFault::NoFolder:
        return texts::onnxNoFolder;
    case OnnxFault::NoModel:
        return texts::onnxNoModel;
    case OnnxFault::UnknownKind:
        return texts::onnxUnknownKind;
    case OnnxFault::Unreadable:
        return texts::onnxUnreadable;
    case OnnxFault::Malformed:
        return texts::onnxMalformed;
    case OnnxFault::KeyMissing:
        return texts::onnxKeyMissing;
    case OnnxFault::KeyUnusable:
        return texts::onnxKeyUnusable;
    case OnnxFault::NoTokens:
        return texts::onnxNoTokens;
    case OnnxFault::TokensMalformed:
        return texts::onnxTokensMalformed;
    case OnnxFault::TokensShort:
        return texts::onnxTokensShort;
    case OnnxFault::TokenMissing:
        return texts::onnxTokenMissing;
    case OnnxFault::NotWholeUtterance:
        return texts::onnxNotWholeUtterance;
    default:
        return libraryTextOf(fault);
    }
}

} // namespace tavrin
