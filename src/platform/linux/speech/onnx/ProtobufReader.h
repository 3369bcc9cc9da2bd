#pragma once

#include <QByteArray>
#include <QIODevice>

#include <array>
#include <optional>

namespace tavrin {

/// A field of a protobuf message. What it holds stays in the device until it is asked for.
struct ProtobufField {
    quint32 number = 0;
    bool hasContent = false; ///< Bytes with a length: a text, a nested message.
    qint64 begin = 0; ///< Where its content stands in the device.
    qint64 size = 0;
};

/// The fields of one protobuf message that stands somewhere in a device, one after the other, at
/// the cost of a few bytes each. The device is open, can be sought in, and outlives the reader.
class ProtobufReader {
public:
    /// The message takes @p size bytes from @p begin on.
    ProtobufReader(QIODevice& device, qint64 begin, qint64 size);

    /// Empty at the end, and where the message cannot go on like this: isMalformed() tells.
    [[nodiscard]] std::optional<ProtobufField> next();

    [[nodiscard]] bool isMalformed() const { return m_isMalformed; }

    /// What the field holds; empty when it is longer than @p limit or cannot be read.
    [[nodiscard]] QByteArray content(const ProtobufField& field, qint64 limit) const;

private:
    static constexpr std::size_t windowSize = 256;

    [[nodiscard]] std::optional<ProtobufField> malformed();
    [[nodiscard]] std::optional<quint64> number();
    [[nodiscard]] std::optional<quint8> byte();
    [[nodiscard]] bool skip(quint64 bytes);

    QIODevice& m_device;
    qint64 m_position;
    const qint64 m_end;
    bool m_isMalformed = false;
    std::array<char, windowSize> m_window{};
    qint64 m_windowBegin = 0;
    qint64 m_windowLength = 0;
};

} // namespace tavrin
