#include "platform/linux/speech/onnx/ProtobufReader.h"

#include <algorithm>

namespace tavrin {
namespace {

// The low bits of a field's tag say how its value is stored.
enum Wire : quint64 { Varint = 0, EightBytes = 1, Content = 2, FourBytes = 5 };

constexpr int bitsOfWire = 3;
constexpr quint64 highestNumber = (1U << 29U) - 1;

} // namespace

ProtobufReader::ProtobufReader(QIODevice& device, qint64 begin, qint64 size)
    : m_device(device)
    , m_position(begin)
    , m_end(begin + size)
{
}

std::optional<ProtobufField> ProtobufReader::next()
{
    if (m_isMalformed || m_position >= m_end)
        return std::nullopt;
    const std::optional<quint64> tag = number();
    if (!tag || *tag >> bitsOfWire == 0 || *tag >> bitsOfWire > highestNumber)
        return malformed();
    ProtobufField field{.number = static_cast<quint32>(*tag >> bitsOfWire)};
    std::optional<quint64> size;
    switch (*tag & ((1U << bitsOfWire) - 1)) {
    case Varint:
        if (!number())
            return malformed();
        return field;
    case EightBytes:
        size = 8;
        break;
    case Content:
        size = number();
        field.hasContent = true;
        break;
    case FourBytes:
        size = 4;
        break;
    default:
        break;
    }
    field.begin = m_position;
    if (!size || !skip(*size))
        return malformed();
    field.size = static_cast<qint64>(*size);
    return field;
}

QByteArray ProtobufReader::content(const ProtobufField& field, qint64 limit) const
{
    if (field.size > limit || !m_device.seek(field.begin))
        return {};
    const QByteArray bytes = m_device.read(field.size);
    return bytes.size() == field.size ? bytes : QByteArray{};
}

std::optional<ProtobufField> ProtobufReader::malformed()
{
    m_isMalformed = true;
    return std::nullopt;
}

std::optional<quint64> ProtobufReader::number()
{
    constexpr unsigned bitsOfByte = 7;
    constexpr unsigned longest = 64;
    quint64 value = 0;
    for (unsigned shift = 0; shift < longest; shift += bitsOfByte) {
        const std::optional<quint8> next = byte();
        if (!next)
            return std::nullopt;
        value |= static_cast<quint64>(*next & 0x7fU) << shift;
        if ((*next & 0x80U) == 0)
            return value;
    }
    return std::nullopt;
}

std::optional<quint8> ProtobufReader::byte()
{
    if (m_position >= m_end)
        return std::nullopt;
    if (m_position < m_windowBegin || m_position >= m_windowBegin + m_windowLength) {
        const qint64 wanted = std::min<qint64>(windowSize, m_end - m_position);
        m_windowBegin = m_position;
        m_windowLength = m_device.seek(m_position) ? m_device.read(m_window.data(), wanted) : 0;
        if (m_windowLength <= 0) {
            m_windowLength = 0;
            return std::nullopt;
        }
    }
    const auto index = static_cast<std::size_t>(m_position++ - m_windowBegin);
    return static_cast<quint8>(m_window[index]);
}

bool ProtobufReader::skip(quint64 bytes)
{
    if (bytes > static_cast<quint64>(m_end - m_position))
        return false;
    m_position += static_cast<qint64>(bytes);
    return true;
}

} // namespace tavrin
