#pragma once

#include <QByteArray>
#include <QStringList>

#include <chrono>
#include <memory>

struct DBusConnection;
struct DBusMessage;

namespace tavrin {

/// When somebody who waits for another program gives up.
using Deadline = std::chrono::steady_clock::time_point;

struct MessageDeleter {
    void operator()(DBusMessage* message) const;
};

/// An answer, or null for none: an error, nobody of that name, or no time left.
using BusAnswer = std::unique_ptr<DBusMessage, MessageDeleter>;

/// A call of a method whose arguments are texts.
struct BusCall {
    const char* service;
    const char* path;
    const char* interface;
    const char* method;
    QStringList arguments = {};
};

/// A connection of its own to a message bus. Blocking, for one thread, which needs no event loop;
/// never waits beyond the deadline it is given, and starts no service that does not run.
class BusConnection {
public:
    /// @p address as D-Bus writes them; with an empty or wrong one, and when nobody greets back in
    /// time, nothing is open.
    BusConnection(const QByteArray& address, Deadline deadline);
    ~BusConnection();

    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    [[nodiscard]] bool isOpen() const { return m_connection != nullptr; }

    [[nodiscard]] BusAnswer call(const BusCall& call, Deadline deadline) const;

private:
    void close();

    DBusConnection* m_connection = nullptr;
};

} // namespace tavrin
