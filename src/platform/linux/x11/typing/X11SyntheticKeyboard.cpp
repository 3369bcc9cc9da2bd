#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"

#include "platform/MainQueue.h"
#include "platform/linux/desktop/XdgFolders.h"
#include "platform/linux/x11/ClipboardPasteboard.h"

namespace tavrin {
namespace {

/// Calls @p completion on the main thread.
template <class Answer>
std::function<void(Answer)> onMainThread(MainQueue& queue, Completion<Answer> completion)
{
    return [&queue, completion = std::move(completion)](
               Answer answer) { queue.post([completion, answer] { completion(answer); }); };
}

} // namespace

X11SyntheticKeyboard::X11SyntheticKeyboard(
    ClipboardPasteboard& pasteboard, MainQueue& mainQueue, Seconds pause)
    : m_mainQueue(mainQueue)
    , m_typist(stateFile(), pasteboard.server(), pause)
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

void X11SyntheticKeyboard::postPasteShortcut(
    const PasteTarget& target, Completion<KeyPosting> completion)
{
    m_typist.paste(pasteShortcutOf(target), target.application,
        onMainThread(m_mainQueue, std::move(completion)));
}

void X11SyntheticKeyboard::askForPasteReception(Completion<PasteReception> completion)
{
    m_typist.askForReception(onMainThread(m_mainQueue, std::move(completion)));
}

void X11SyntheticKeyboard::postUnicodeText(
    const QStringList& chunks, const RunningApplication& target, Completion<KeyPosting> completion)
{
    m_typist.type(chunks.join(QString()), target, onMainThread(m_mainQueue, std::move(completion)));
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
