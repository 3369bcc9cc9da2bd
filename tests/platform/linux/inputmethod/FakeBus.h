#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <gio/gio.h>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin::testing {

/// A message bus in this process with one service on it, which does what the test tells. It greets
/// by itself.
class FakeBus {
public:
    /// Gives the body of the answer: a tuple that the bus takes over, or null for none at all.
    /// Called on another thread, never twice at the same time.
    using Service = std::function<GVariant*(const QString& method, const QStringList& arguments)>;

    explicit FakeBus(Service service);
    ~FakeBus();

    FakeBus(const FakeBus&) = delete;
    FakeBus& operator=(const FakeBus&) = delete;

    [[nodiscard]] QByteArray address() const;

    /// The methods that have been called, in order.
    [[nodiscard]] QStringList calls();

private:
    static int accept(GDBusServer* server, GDBusConnection* connection, void* bus);
    static GDBusMessage* filter(
        GDBusConnection* connection, GDBusMessage* message, int incoming, void* bus);
    GVariant* answer(GDBusMessage* call);

    QTemporaryDir m_folder;
    Service m_service;
    GMainContext* m_context;
    GMainLoop* m_loop;
    GDBusServer* m_server;
    std::thread m_thread;
    std::mutex m_mutex; // Guards what follows, and the service.
    std::vector<GDBusConnection*> m_connections;
    QStringList m_calls;
};

} // namespace tavrin::testing
