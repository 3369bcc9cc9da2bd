#pragma once

class QString;

namespace tavrin {

/// The general pasteboard (Linux: the CLIPBOARD selection).
///
/// Main thread only. On Linux the text is served from a thread of its own, so that a program that
/// asks for it is answered at once whatever the main thread is doing, and it is handed to the
/// clipboard manager, where there is one, when Tavrin quits.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces the contents by the plain text @p text. False when the system refused it; the old
    /// contents may be gone then.
    virtual bool setString(const QString& text) = 0;
};

} // namespace tavrin
