#pragma once

#include "platform/linux/x11/X11Thread.h"

#include <QString>

#include <list>

namespace tavrin {

/// Owns the clipboard on a thread of its own and answers whoever asks for it. Texts larger than a
/// request are handed over in pieces.
class ClipboardServer final : public X11Thread {
public:
    ClipboardServer();
    ~ClipboardServer() override;

    ClipboardServer(const ClipboardServer&) = delete;
    ClipboardServer& operator=(const ClipboardServer&) = delete;

    /// Takes the clipboard for @p text, waiting at most half a second. Main thread.
    [[nodiscard]] bool offer(const QString& text);

    /// Takes the primary selection too. Main thread; returns at once.
    void offerAsPrimary();

protected:
    void handleEvent(const xcb_generic_event_t& event) override;
    void deadlinePassed() override;

private:
    /// A text on its way in pieces: the next one is written when the last one was taken.
    struct Transfer {
        xcb_window_t requestor = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray text;
        qsizetype position = 0;
        Clock::time_point deadline;
    };

    [[nodiscard]] bool take(const QByteArray& text);
    [[nodiscard]] bool own(xcb_atom_t selection);
    [[nodiscard]] xcb_timestamp_t serverTime();
    void answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool provide(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool provideMany(xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] bool provideText(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    void beginTransfer(
        xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, const QByteArray& text);
    void continueTransfer(const xcb_property_notify_event_t& event);
    void setNextDeadline();
    void handOver();
    void setAtoms(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
        const std::vector<xcb_atom_t>& atoms) const;

    [[nodiscard]] xcb_atom_t atom(const char* name) const { return connection().atom(name); }

    // All of it belongs to the thread once it runs.
    xcb_window_t m_window = XCB_WINDOW_NONE;
    QByteArray m_text; // UTF-8.
    xcb_timestamp_t m_ownedSince = XCB_CURRENT_TIME;
    xcb_timestamp_t m_lastServerTime = XCB_CURRENT_TIME;
    bool m_ownsClipboard = false;
    bool m_handedOver = false;
    std::list<Transfer> m_transfers;
};

} // namespace tavrin
