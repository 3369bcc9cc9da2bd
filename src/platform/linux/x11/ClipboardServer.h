#pragma once

#include "platform/linux/x11/X11Thread.h"

#include <QString>

#include <functional>
#include <list>

namespace tavrin {

/// Owns the clipboard on a thread of its own and answers whoever asks for it. Texts larger than a
/// request are handed over in pieces.
class ClipboardServer final : public X11Thread {
public:
    /// Connects @p pause from now, or when it is first asked for something.
    explicit ClipboardServer(Seconds pause = Seconds(0));
    ~ClipboardServer() override;

    ClipboardServer(const ClipboardServer&) = delete;
    ClipboardServer& operator=(const ClipboardServer&) = delete;

    /// Takes the clipboard for @p text, waiting at most half a second. Main thread.
    [[nodiscard]] bool offer(const QString& text);

    /// What a program did about the text since watch().
    enum class Fetching {
        Unknown, ///< Another program owns the clipboard now.
        None, ///< Nobody has asked for the text.
        ByOthers, ///< Others have, since it was offered.
        ByProgram, ///< The program that owns the watched window has.
    };

    // From another thread than the main one; each waits at most half a second.

    /// Sees to it that the text is still ours to give (and the middle mouse button pastes it, with
    /// @p asPrimary), and watches from now on whether the program of @p window asks for it. False
    /// when the clipboard cannot be had.
    [[nodiscard]] bool watch(xcb_window_t window, bool asPrimary);

    [[nodiscard]] Fetching fetching();

    /// Refuses the text to the program of @p window from now on. False, and nothing refused, when
    /// it has asked for it since watch().
    [[nodiscard]] bool withholdFrom(xcb_window_t window);

    /// Ends withholdFrom(), as every new offer does.
    void release();

protected:
    void connected() override;
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

    /// A selection that this program may own.
    struct Ownership {
        bool isOurs = false;
        xcb_timestamp_t since = XCB_CURRENT_TIME;
    };

    /// Runs @p question on the thread and waits for its answer; @p otherwise when it takes too
    /// long.
    template <class Answer>
    [[nodiscard]] Answer ask(std::function<Answer()> question, Answer otherwise);

    [[nodiscard]] bool take(const QByteArray& text);
    [[nodiscard]] bool own(xcb_atom_t selection, Ownership& ownership);
    /// What the server says at this moment.
    [[nodiscard]] bool isOwner(xcb_atom_t selection) const;
    [[nodiscard]] bool isOfProgram(xcb_window_t requestor, xcb_window_t window) const;
    void noteFetch(xcb_window_t requestor);
    [[nodiscard]] xcb_timestamp_t serverTime();
    void answer(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool provide(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool isText(xcb_atom_t target) const;
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
    Ownership m_clipboard;
    Ownership m_primary;
    xcb_timestamp_t m_lastServerTime = XCB_CURRENT_TIME;
    bool m_handedOver = false;
    xcb_window_t m_watched = XCB_WINDOW_NONE;
    xcb_window_t m_refused = XCB_WINDOW_NONE;
    bool m_fetchedByProgram = false;
    bool m_fetchedByOthers = false;
    std::list<Transfer> m_transfers;
};

} // namespace tavrin
