// tavrin-bench-typist FILE
//
// Types the text of the file into the program in front, as a delivery does, and stays until its
// input ends: it cannot know when the last key has arrived.

#include "delivery/UnicodeChunks.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"
#include "platform/qt/QtMainQueue.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QFile file(QCoreApplication::arguments().value(1));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fputs("usage: tavrin-bench-typist FILE\n", stderr);
        return 2;
    }
    const tavrin::X11Workspace workspace;
    const auto target = workspace.frontmostApplication();
    if (!target) {
        std::fputs("tavrin-bench-typist: no program is in front\n", stderr);
        return EXIT_FAILURE;
    }
    tavrin::ClipboardPasteboard pasteboard;
    tavrin::QtMainQueue mainQueue;
    tavrin::X11SyntheticKeyboard keyboard(pasteboard, mainQueue);
    tavrin::allowDroppedCompletions(true); // Nobody runs the queue.
    keyboard.postUnicodeText(
        tavrin::unicodeChunks(QString::fromUtf8(file.readAll())), *target, [](auto) {});
    while (std::getchar() != EOF) { }
    return EXIT_SUCCESS;
}
