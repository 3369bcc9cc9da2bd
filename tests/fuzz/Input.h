#pragma once

#include "base/TextRange.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tavrin::fuzz {

/// Arbitrary bytes, read as the values that a test needs. Behind the end all of them are zero.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    [[nodiscard]] std::uint8_t byte();

    [[nodiscard]] bool flag() { return (byte() & 1U) != 0; }

    /// A small number, one at the edge of the type, or any.
    [[nodiscard]] qint64 number();

    [[nodiscard]] TextRange range()
    {
        const qint64 location = number();
        return {location, number()};
    }

    /// A text of at most 255 units, rich in what is easily got wrong: halves of surrogate pairs,
    /// line ends, NUL, marks of direction.
    [[nodiscard]] QString text();

    /// What @p read gives, or nothing.
    template <class Value>
    [[nodiscard]] std::optional<Value> maybe(Value (Input::*read)())
    {
        return flag() ? std::optional<Value>((this->*read)()) : std::nullopt;
    }

    /// All bytes that were not read yet.
    [[nodiscard]] QByteArray rest();

    /// The same, as UTF-16 units.
    [[nodiscard]] QString restAsText();

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_read = 0;
};

} // namespace tavrin::fuzz
