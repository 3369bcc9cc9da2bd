#pragma once

#include <unistd.h>
#include <utility>

namespace tavrin::devcloud {

/// Owns one file descriptor; none while it is negative.
class Descriptor {
public:
    Descriptor() = default;

    explicit Descriptor(int value)
        : m_value(value)
    {
    }

    ~Descriptor() { reset(); }

    Descriptor(Descriptor&& other) noexcept
        : m_value(std::exchange(other.m_value, -1))
    {
    }

    Descriptor& operator=(Descriptor&& other) noexcept
    {
        if (this != &other) {
            reset();
            m_value = std::exchange(other.m_value, -1);
        }
        return *this;
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    void reset()
    {
        if (m_value >= 0)
            close(m_value);
        m_value = -1;
    }

    [[nodiscard]] int value() const { return m_value; }

    [[nodiscard]] bool isOpen() const { return m_value >= 0; }

private:
    int m_value = -1;
};

} // namespace tavrin::devcloud
