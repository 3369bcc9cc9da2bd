#include "platform/linux/speech/protocol/RecognizerProtocol.h"

#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace tavrin::recognizer {
namespace {

constexpr qsizetype lengthBytes = 4;
constexpr qsizetype headBytes = 9; // The kind and two numbers.
constexpr qsizetype mostTerms = 1'000;
constexpr qsizetype longestTerm = 200;
constexpr qsizetype longestArgument = 4'096;

// What an engine may say of itself. A message holds the place of one of them.
constexpr std::array engineStateTexts{
    texts::sphinxReady,
    texts::noSphinxModel,
    texts::brokenSphinxModel,
    texts::onnxReady,
    texts::onnxNotLoaded,
    texts::onnxNoFolder,
    texts::onnxNoModel,
    texts::onnxUnknownKind,
    texts::onnxUnreadable,
    texts::onnxMalformed,
    texts::onnxKeyMissing,
    texts::onnxKeyUnusable,
    texts::onnxNoTokens,
    texts::onnxTokensMalformed,
    texts::onnxTokensShort,
    texts::onnxTokenMissing,
    texts::onnxNotWholeUtterance,
    texts::onnxNoLibrary,
    texts::onnxNoPartner,
    texts::onnxLibraryBroken,
    texts::onnxLibraryVersion,
    texts::onnxLibraryIncomplete,
    texts::onnxOtherLibrary,
    texts::onnxModelRefused,
};

QDataStream& prepared(QDataStream& stream)
{
    stream.setVersion(QDataStream::Qt_6_4);
    return stream;
}

/// What @p write puts into a stream.
template <class Write>
QByteArray written(Write write)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    write(prepared(stream));
    return content;
}

/// What @p read takes from @p content, when it takes all of it and nothing is missing.
template <class Value, class Read>
std::optional<Value> readWhole(const QByteArray& content, Read read)
{
    QDataStream stream(content);
    Value value{};
    if (!read(prepared(stream), value) || stream.status() != QDataStream::Ok || !stream.atEnd())
        return std::nullopt;
    return value;
}

bool isKnown(quint8 kind)
{
    const auto known = [kind](MessageKind first, MessageKind last) {
        return kind >= static_cast<quint8>(first) && kind <= static_cast<quint8>(last);
    };
    return known(MessageKind::Begin, MessageKind::Abandon)
        || known(MessageKind::Hello, MessageKind::Failed);
}

bool readTerms(QDataStream& stream, QStringList& terms)
{
    quint16 count = 0;
    stream >> count;
    if (count > mostTerms)
        return false;
    for (quint16 i = 0; i < count; ++i) {
        QString term;
        stream >> term;
        if (stream.status() != QDataStream::Ok || term.size() > longestTerm)
            return false;
        terms.append(term);
    }
    return true;
}

} // namespace

QByteArray toBytes(const Message& message)
{
    if (message.content.size() > longestMessage - headBytes)
        return {};
    QByteArray bytes(lengthBytes + headBytes, Qt::Uninitialized);
    char* const at = bytes.data();
    qToLittleEndian(static_cast<quint32>(headBytes + message.content.size()), at);
    at[lengthBytes] = static_cast<char>(message.kind);
    qToLittleEndian(message.request, at + lengthBytes + 1);
    qToLittleEndian(message.utterance, at + lengthBytes + 5);
    return bytes + message.content;
}

std::optional<Message> MessageReader::next()
{
    if (m_isBroken || m_bytes.size() < lengthBytes)
        return std::nullopt;
    const char* const at = m_bytes.constData();
    const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(at));
    if (length < headBytes || length > longestMessage) {
        m_isBroken = true;
        return std::nullopt;
    }
    if (m_bytes.size() < lengthBytes + length)
        return std::nullopt;
    const auto kind = static_cast<quint8>(at[lengthBytes]);
    if (!isKnown(kind)) {
        m_isBroken = true;
        return std::nullopt;
    }
    Message message;
    message.kind = static_cast<MessageKind>(kind);
    message.request = qFromLittleEndian<quint32>(at + lengthBytes + 1);
    message.utterance = qFromLittleEndian<quint32>(at + lengthBytes + 5);
    message.content = m_bytes.sliced(lengthBytes + headBytes, length - headBytes);
    m_bytes.remove(0, lengthBytes + length);
    return message;
}

QByteArray versionContent(quint32 version)
{
    return written([&](QDataStream& stream) { stream << version; });
}

std::optional<quint32> readVersion(const QByteArray& content)
{
    return readWhole<quint32>(content, [](QDataStream& stream, quint32& version) {
        stream >> version;
        return true;
    });
}

QByteArray stateContent(const EngineState& state)
{
    return written([&](QDataStream& stream) {
        stream << state.isAvailable << state.text << state.argument.left(longestArgument);
    });
}

std::optional<EngineState> readState(const QByteArray& content)
{
    return readWhole<EngineState>(content, [](QDataStream& stream, EngineState& state) {
        stream >> state.isAvailable >> state.text >> state.argument;
        return state.argument.size() <= longestArgument;
    });
}

QByteArray requestContent(const SpeechRequest& request)
{
    QStringList terms;
    for (const QString& term : request.contextualStrings) {
        if (terms.size() == mostTerms)
            break;
        if (term.size() <= longestTerm)
            terms.append(term);
    }
    return written([&](QDataStream& stream) {
        stream << request.shouldReportPartialResults << static_cast<quint8>(request.taskHint)
               << request.addsPunctuation << static_cast<quint16>(terms.size());
        for (const QString& term : terms)
            stream << term;
    });
}

std::optional<SpeechRequest> readRequest(const QByteArray& content)
{
    return readWhole<SpeechRequest>(content, [](QDataStream& stream, SpeechRequest& request) {
        quint8 hint = 0;
        stream >> request.shouldReportPartialResults >> hint >> request.addsPunctuation;
        if (hint > static_cast<quint8>(SpeechTaskHint::Confirmation))
            return false;
        request.taskHint = static_cast<SpeechTaskHint>(hint);
        return readTerms(stream, request.contextualStrings);
    });
}

QByteArray soundContent(std::span<const qint16> samples)
{
    if (samples.empty())
        return {}; // Of nothing there is no address to copy from.
    QByteArray content(static_cast<qsizetype>(samples.size_bytes()), Qt::Uninitialized);
    qToLittleEndian<qint16>(samples.data(), static_cast<qsizetype>(samples.size()), content.data());
    return content;
}

std::optional<std::vector<qint16>> readSound(const QByteArray& content)
{
    const std::size_t count = static_cast<std::size_t>(content.size()) / sizeof(qint16);
    if (content.size() % static_cast<qsizetype>(sizeof(qint16)) != 0 || count > mostSamples)
        return std::nullopt;
    std::vector<qint16> samples(count);
    if (samples.empty())
        return samples;
    qFromLittleEndian<qint16>(content.constData(), static_cast<qsizetype>(count), samples.data());
    return samples;
}

QByteArray textContent(const QString& text)
{
    return written([&](QDataStream& stream) { stream << text.right(longestText); });
}

std::optional<QString> readText(const QByteArray& content)
{
    return readWhole<QString>(content, [](QDataStream& stream, QString& text) {
        stream >> text;
        return text.size() <= longestText;
    });
}

QByteArray failureContent(int code)
{
    return written([&](QDataStream& stream) { stream << static_cast<qint32>(code); });
}

std::optional<int> readFailure(const QByteArray& content)
{
    return readWhole<int>(content, [](QDataStream& stream, int& code) {
        qint32 read = 0;
        stream >> read;
        code = read;
        return true;
    });
}

EngineState stateOf(const SpeechAvailability& availability)
{
    const auto found =
        std::ranges::find(engineStateTexts, availability.text.zhHans, &LocalizedText::zhHans);
    return {availability.isAvailable, static_cast<quint16>(found - engineStateTexts.begin()),
        availability.argument};
}

std::optional<SpeechAvailability> availabilityOf(const EngineState& state)
{
    if (state.text >= engineStateTexts.size())
        return std::nullopt;
    return SpeechAvailability{state.isAvailable, engineStateTexts.at(state.text), state.argument};
}

} // namespace tavrin::recognizer
