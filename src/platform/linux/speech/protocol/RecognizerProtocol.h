#pragma once

#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <span>
#include <vector>

/// What the program and its recogniser say to each other: private to one build of both, and checked
/// by its version all the same. Each side takes the other for hostile.
///
/// A message is four bytes with the length of what follows, least significant first, its kind, the
/// number of the request, the utterance that it is about, and its content. The program asks, the
/// recogniser answers each request but Abandon once, with the request's number; Hello and State
/// come unasked, in this order, once, before all else.
namespace tavrin::recognizer {

inline constexpr quint32 protocolVersion = 1;

/// Of a message, in bytes; a longer one is refused on both sides.
inline constexpr qsizetype longestMessage = qsizetype(1) << 20;

/// Of what is heard in one message: a second and a half.
inline constexpr std::size_t mostSamples = 24'000;

/// Of a text in one message, in UTF-16 units.
inline constexpr qsizetype longestText = 200'000;

enum class MessageKind : quint8 {
    // Of the program.
    Begin = 1, ///< An utterance, with a SpeechRequest. Answered by Begun.
    Sound = 2, ///< Samples of it. Answered by Heard.
    Finish = 3, ///< Nothing more will be said. Answered by Done.
    Abandon = 4, ///< Nobody waits for it any more.
    // Of the recogniser.
    Hello = 65, ///< With the version.
    State = 66, ///< With an EngineState, when the model is loaded.
    Begun = 67,
    Heard = 68, ///< With what was understood so far.
    Done = 69, ///< With what was understood.
    Failed = 70, ///< With the code of a SpeechEngineError; the utterance is over.
};

struct Message {
    MessageKind kind = MessageKind::Hello;
    quint32 request = 0;
    quint32 utterance = 0;
    QByteArray content{};

    friend bool operator==(const Message&, const Message&) = default;
};

/// @param message whose content is not longer than longestMessage allows; a longer one gives
/// nothing.
[[nodiscard]] QByteArray toBytes(const Message& message);

/// Finds the messages in what arrives in pieces.
class MessageReader {
public:
    void append(QByteArrayView bytes) { m_bytes.append(bytes); }

    /// The next whole message; nothing while more is needed, and for ever once one was malformed.
    [[nodiscard]] std::optional<Message> next();

    /// Whether something arrived that is no message.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    QByteArray m_bytes;
    bool m_isBroken = false;
};

/// How an engine stands: the place of its text among engineStateTexts().
struct EngineState {
    bool isAvailable = false;
    quint16 text = 0;
    QString argument;

    friend bool operator==(const EngineState&, const EngineState&) = default;
};

// The contents. What is malformed, or longer than it may be, reads as nothing.

[[nodiscard]] QByteArray versionContent(quint32 version);
[[nodiscard]] std::optional<quint32> readVersion(const QByteArray& content);

[[nodiscard]] QByteArray stateContent(const EngineState& state);
[[nodiscard]] std::optional<EngineState> readState(const QByteArray& content);

/// Of more terms than may be sent the first ones are, and long ones not at all.
[[nodiscard]] QByteArray requestContent(const SpeechRequest& request);
[[nodiscard]] std::optional<SpeechRequest> readRequest(const QByteArray& content);

/// @param samples mostSamples at most.
[[nodiscard]] QByteArray soundContent(std::span<const qint16> samples);
[[nodiscard]] std::optional<std::vector<qint16>> readSound(const QByteArray& content);

/// @param text of which longestText is sent, the end of a longer one.
[[nodiscard]] QByteArray textContent(const QString& text);
[[nodiscard]] std::optional<QString> readText(const QByteArray& content);

[[nodiscard]] QByteArray failureContent(int code);
[[nodiscard]] std::optional<int> readFailure(const QByteArray& content);

/// For the recogniser: how an engine stands, as a message can say it.
[[nodiscard]] EngineState stateOf(const SpeechAvailability& availability);

/// For the program: what such a state means; nothing where it names no text.
[[nodiscard]] std::optional<SpeechAvailability> availabilityOf(const EngineState& state);

} // namespace tavrin::recognizer
