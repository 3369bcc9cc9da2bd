#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "platform/programs/Workspace.h"

#include <QProcess>
#include <QString>
#include <QStringList>

namespace tavrin::testing {

/// The test editor as a program of its own: with a process, a window and a text that are not ours.
/// It is in front once it has been made, and ends with the object.
class OtherProgram {
public:
    /// @p editor is its file; the options are those of the test editor.
    explicit OtherProgram(const QString& editor, const QStringList& options = {});
    ~OtherProgram();

    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    [[nodiscard]] RunningApplication application() const;

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// What stands in its field, by its own word; empty while it is paused.
    [[nodiscard]] QString text();

    /// Stops it, as a program that hangs.
    void pause();
    void resume();

    void close();

private:
    QProcess m_process;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    bool m_isPaused = false;
};

} // namespace tavrin::testing
