#pragma once

#include "platform/keyboard/KeyMonitor.h"

#include <QList>

#include <memory>
#include <utility>

namespace tavrin::testing {

/// A keyboard that the test presses. Tells apart which program has the keyboard: a press reaches
/// either the global or the local monitors.
class InMemoryKeyMonitor final : public KeyMonitor {
public:
    bool refusesGlobalMonitors = false;

    [[nodiscard]] std::unique_ptr<KeyObservation> addGlobalMonitor(GlobalHandler handler) override
    {
        if (refusesGlobalMonitors)
            return nullptr;
        return std::make_unique<Observation<GlobalHandler>>(m_global, std::move(handler));
    }

    [[nodiscard]] std::unique_ptr<KeyObservation> addLocalMonitor(LocalHandler handler) override
    {
        return std::make_unique<Observation<LocalHandler>>(m_local, std::move(handler));
    }

    /// A key event while another program has the keyboard.
    void sendToOtherProgram(const KeyEvent& event) const
    {
        for (const GlobalHandler* handler : m_global)
            (*handler)(event);
    }

    /// A key event in a window of Tavrin. True when a monitor swallowed it.
    [[nodiscard]] bool sendToOwnWindow(const KeyEvent& event) const
    {
        bool swallowed = false;
        for (const LocalHandler* handler : m_local)
            swallowed = swallowed || (*handler)(event);
        return swallowed;
    }

    [[nodiscard]] qsizetype globalMonitors() const { return m_global.size(); }

    [[nodiscard]] qsizetype localMonitors() const { return m_local.size(); }

private:
    /// Keeps its handler in the list for as long as it lives.
    template <class Handler>
    class Observation final : public KeyObservation {
    public:
        Observation(QList<const Handler*>& handlers, Handler handler)
            : m_handlers(handlers)
            , m_handler(std::move(handler))
        {
            m_handlers.append(&m_handler);
        }

        ~Observation() override { m_handlers.removeOne(&m_handler); }

        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;

    private:
        QList<const Handler*>& m_handlers;
        Handler m_handler;
    };

    QList<const GlobalHandler*> m_global;
    QList<const LocalHandler*> m_local;
};

} // namespace tavrin::testing
