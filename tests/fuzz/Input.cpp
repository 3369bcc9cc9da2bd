#include "fuzz/Input.h"

#include <array>
#include <limits>

namespace tavrin::fuzz {
namespace {

constexpr std::array<char16_t, 16> rareUnits{u'\0', u'\r', u'\n', 0xD800, 0xD83D, 0xDBFF, 0xDC00,
    0xDE00, 0xDFFF, 0x200F, 0x202E, 0x2066, 0xFEFF, 0xFFFD, 0xFFFF, 0x4E2D};
constexpr std::uint8_t firstRare = 0xC0;

} // namespace

std::uint8_t Input::byte()
{
    return m_read < m_size ? m_data[m_read++] : std::uint8_t{0};
}

qint64 Input::number()
{
    const std::uint8_t kind = byte();
    switch (kind % 8) {
    case 0: {
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i)
            bits = bits << 8U | byte();
        return static_cast<qint64>(bits);
    }
    case 1:
        return std::numeric_limits<qint64>::max() - byte() % 32;
    case 2:
        return std::numeric_limits<qint64>::min() + byte() % 32;
    case 3:
        return -qint64{byte() % 32};
    default:
        return byte() % 64;
    }
}

QString Input::text()
{
    QString text;
    for (int left = byte(); left > 0; --left) {
        const std::uint8_t unit = byte();
        text.append(unit < firstRare ? QChar(unit) : QChar(rareUnits.at(unit % rareUnits.size())));
    }
    return text;
}

QByteArray Input::rest()
{
    QByteArray bytes(
        reinterpret_cast<const char*>(m_data + m_read), static_cast<qsizetype>(m_size - m_read));
    m_read = m_size;
    return bytes;
}

QString Input::restAsText()
{
    QString text;
    while (m_read < m_size) {
        const unsigned high = byte();
        text.append(QChar(high << 8U | byte()));
    }
    return text;
}

} // namespace tavrin::fuzz
