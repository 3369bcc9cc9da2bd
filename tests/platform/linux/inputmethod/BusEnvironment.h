#pragma once

#include "platform/linux/inputmethod/BusConnection.h"

#include <QByteArray>

namespace tavrin::testing {

/// Gives a variable of the environment a value while it lives.
class Variable {
public:
    Variable(const char* name, const QByteArray& value)
        : m_name(name)
        , m_wasSet(qEnvironmentVariableIsSet(name))
        , m_before(qgetenv(name))
    {
        qputenv(name, value);
    }

    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }

    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* m_name;
    bool m_wasSet;
    QByteArray m_before;
};

/// Far more than a peer in this process needs.
inline Deadline soon()
{
    return std::chrono::steady_clock::now() + std::chrono::seconds(10);
}

/// For what never comes.
inline Deadline almostNow()
{
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
}

} // namespace tavrin::testing
