#include "platform/linux/x11/X11SyntheticKeyboard.h"

#include "platform/linux/desktop/XdgFolders.h"
#include "platform/linux/x11/ClipboardPasteboard.h"

namespace tavrin {

X11SyntheticKeyboard::X11SyntheticKeyboard(ClipboardPasteboard& pasteboard)
    : m_pasteboard(pasteboard)
    , m_typist(stateFile())
{
}

QString X11SyntheticKeyboard::stateFile()
{
    const QString folder = xdg::runtimeFolder();
    QString display = qEnvironmentVariable("DISPLAY");
    display.replace(u'/', u'_');
    return folder.isEmpty() ? QString()
                            : folder + QStringLiteral("/tavrin-borrowed-keys") + display;
}

void X11SyntheticKeyboard::postPasteShortcut(const RunningApplication& target)
{
    const PasteShortcut shortcut = pasteShortcutOf(target);
    if (shortcut == PasteShortcut::ShiftInsert)
        m_pasteboard.offerAsPrimary();
    m_typist.paste(shortcut, target);
}

void X11SyntheticKeyboard::postUnicodeText(
    const QStringList& chunks, const RunningApplication& target)
{
    m_typist.type(chunks.join(QString()), target);
}

void X11SyntheticKeyboard::coverModifierKey()
{
    m_typist.tapEmptyCode();
}

void X11SyntheticKeyboard::cancelTyping()
{
    m_typist.cancel();
}

} // namespace tavrin
