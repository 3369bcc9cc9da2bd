#pragma once

#include "base/Seconds.h"
#include "platform/Pasteboard.h"

#include <memory>

namespace tavrin {

class ClipboardServer;

/// The CLIPBOARD selection of X11, served from a thread of its own. NUL characters are left out,
/// because most programs take them for the end; a lone surrogate becomes the replacement character.
class ClipboardPasteboard final : public Pasteboard {
public:
    /// Connects to the X server @p pause from now, or with the first text.
    explicit ClipboardPasteboard(Seconds pause = Seconds(0));

    /// Hands the text to the clipboard manager, waiting at most half a second for it.
    ~ClipboardPasteboard() override;

    ClipboardPasteboard(const ClipboardPasteboard&) = delete;
    ClipboardPasteboard& operator=(const ClipboardPasteboard&) = delete;

    bool setString(const QString& text) override;

    /// What gives the text out; for the keyboard, which has to know who has fetched it.
    [[nodiscard]] ClipboardServer& server() { return *m_server; }

private:
    std::unique_ptr<ClipboardServer> m_server;
};

} // namespace tavrin
