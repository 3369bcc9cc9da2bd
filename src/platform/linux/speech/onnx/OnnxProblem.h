#pragma once

#include "base/LocalizedText.h"

#include <QString>

#include <tl/expected.hpp>

namespace tavrin {

/// What keeps an engine over sherpa-onnx from working. The numbers may be passed between programs.
enum class OnnxFault {
    NoFolder = 1, ///< The folder of the model is not there.
    NoModel = 2, ///< The folder holds no model, or not all of its files.
    UnknownKind = 3, ///< The model is of a kind that is not supported.
    Unreadable = 4, ///< A file cannot be read, or is none.
    Malformed = 5, ///< A file is no ONNX model, or is damaged.
    KeyMissing = 6, ///< The model's metadata lacks a key that the library requires.
    KeyUnusable = 7, ///< The value of such a key is not what the library takes.
    NoTokens = 8, ///< The table of tokens is not there.
    TokensMalformed = 9, ///< It is not in the library's format.
    TokensShort = 10, ///< It has fewer tokens than the model.
    TokenMissing = 11, ///< It lacks a token that the library requires.
    NotWholeUtterance = 12, ///< The model for final texts is a streaming one.
    NoLibrary = 13, ///< The folder holds no sherpa-onnx.
    NoPartner = 14, ///< ONNX Runtime, which it was built with, is not beside it.
    LibraryBroken = 15, ///< The system cannot load it.
    LibraryVersion = 16, ///< A version whose binary interface is not known.
    LibraryIncomplete = 17, ///< It lacks a function.
    OtherLibrary = 18, ///< One of another folder is loaded already.
    ModelRefused = 19, ///< The library cannot load the model.
};

struct OnnxProblem {
    OnnxFault fault = OnnxFault::NoModel;
    QString detail; ///< What is concerned (a file, a key, a version); stands for %1 in the text.

    friend bool operator==(const OnnxProblem&, const OnnxProblem&) = default;
};

template <class Value>
using OnnxResult = tl::expected<Value, OnnxProblem>;

[[nodiscard]] inline tl::unexpected<OnnxProblem> onnxFailure(OnnxFault fault, QString detail)
{
    return tl::unexpected<OnnxProblem>{{fault, std::move(detail)}};
}

/// What a user is told; %1 is the problem's detail.
[[nodiscard]] LocalizedText textOf(OnnxFault fault);

} // namespace tavrin
