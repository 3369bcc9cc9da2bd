// A driver for the desktop tests: brings text into the program in front as a delivery does, by one
// way alone. Every line on its standard input is one JSON object: {"paste": TEXT}, {"type": TEXT},
// {"begin": TEXT} to type without waiting for the keys, {"write": TEXT} for a write into the
// element with the keyboard, or {"read": true}. It answers each with one line: the "text" that this
// element tells to accessibility, and whether the order is "done", which for keys means that they
// are out.

#include "delivery/UnicodeChunks.h"
#include "platform/linux/atspi/AtspiAccessibility.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"
#include "platform/qt/QtMainQueue.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

class Driver {
public:
    /// False when there was nobody to bring it to.
    bool carryOut(const QJsonObject& order)
    {
        const auto target = m_workspace.frontmostApplication();
        if (!target)
            return false;
        m_element = m_accessibility.focusedElement(target->processIdentifier);
        if (order.contains("paste"_L1)) {
            if (!m_pasteboard.setString(order["paste"_L1].toString()))
                return false;
            return areOut([&](const Completion<KeyPosting>& completion) {
                m_keyboard.postPasteShortcut(
                    {*target, m_accessibility.isTerminal(m_element.get())}, completion);
            });
        }
        if (order.contains("type"_L1)) {
            // As before every delivery: what the program has fetched is not typed.
            static_cast<void>(m_pasteboard.setString(order["type"_L1].toString()));
            return areOut([&](const Completion<KeyPosting>& completion) {
                m_keyboard.postUnicodeText(
                    unicodeChunks(order["type"_L1].toString()), *target, completion);
            });
        }
        if (order.contains("begin"_L1)) {
            m_keyboard.postUnicodeText(
                unicodeChunks(order["begin"_L1].toString()), *target, [](KeyPosting) {});
        }
        if (order.contains("write"_L1))
            return m_accessibility.setSelectedText(order["write"_L1].toString(), m_element.get());
        return true;
    }

    [[nodiscard]] QString text()
    {
        return m_accessibility.value(m_element.get()).value_or(QString());
    }

private:
    /// Presses keys, and waits until they are out or cannot be.
    static bool areOut(const std::function<void(const Completion<KeyPosting>&)>& press)
    {
        QEventLoop loop;
        press([&](KeyPosting posting) { loop.exit(posting == KeyPosting::Done ? 0 : 1); });
        return loop.exec() == 0;
    }

    X11Workspace m_workspace;
    AtspiAccessibility m_accessibility;
    ClipboardPasteboard m_pasteboard;
    QtMainQueue m_mainQueue;
    X11SyntheticKeyboard m_keyboard{m_pasteboard, m_mainQueue};
    ElementHandle m_element;
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_NO_GLIB", "1"); // As in the program itself.
    const QCoreApplication application(argc, argv);
    Driver driver;
    for (std::string line; std::getline(std::cin, line);) {
        const QJsonObject order = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        const bool done = driver.carryOut(order);
        const QJsonObject answer{{u"done"_s, done}, {u"text"_s, driver.text()}};
        std::puts(QJsonDocument(answer).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    }
    return EXIT_SUCCESS;
}
