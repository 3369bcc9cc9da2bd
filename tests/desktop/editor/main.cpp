// An editor for the desktop tests: shows one field, with the text and caret it is told, and with
// the bad habits it is told. To every line on its standard input it answers with one line of JSON:
// the "text" that really stands in the field, and how many "reads" a lying field has answered. The
// line "clear" empties a field of several lines first.

#include "Fields.h"
#include "LyingAccessible.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QSocketNotifier>

#include <array>
#include <cstdio>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin::testing;

namespace {

void addOptions(QCommandLineParser& options)
{
    options.addOption({u"window-title"_s, u"Title of the window."_s, u"text"_s, u"Test editor"_s});
    options.addOption({u"text"_s, u"What stands in the field."_s, u"text"_s});
    options.addOption({u"lines"_s, u"As many lines of 99 letters instead."_s, u"count"_s});
    options.addOption({u"anchor"_s, u"Start of the selection."_s, u"position"_s, u"0"_s});
    options.addOption({u"caret"_s, u"End of the selection."_s, u"position"_s, u"0"_s});
    options.addOption({u"single-line"_s, u"A field of one line."_s});
    options.addOption({u"password"_s, u"A field that hides its text."_s});
    options.addOption({u"bare"_s, u"A field that exposes no text to accessibility."_s});
    options.addOption({u"swallow-paste"_s, u"A paste does nothing."_s});
    options.addOption({u"ignore-keys"_s, u"No key does anything."_s});
    options.addOption({u"tidy-paste"_s, u"Trims pasted lines, and makes their quotes curly."_s});
    options.addOption({u"unmanaged"_s, u"A window that no window manager looks after."_s});
    options.addOption({u"tell-window"_s, u"Says the number of its window instead of \"ready\"."_s});
    options.addOption({u"lie"_s,
        u"Deceives accessibility: stale, read-only, negative, counts, huge, secret, terminal or "
        u"stuck-insert."_s,
        u"kind"_s});
}

QString initialText(const QCommandLineParser& options)
{
    if (!options.isSet(u"lines"_s))
        return options.value(u"text"_s);
    const QString line = QString(99, u'x') + u'\n';
    return line.repeated(options.value(u"lines"_s).toInt());
}

std::unique_ptr<QWidget> makeField(const QCommandLineParser& options)
{
    const QString text = initialText(options);
    if (options.isSet(u"bare"_s))
        return std::make_unique<BareField>(text);
    const bool password = options.isSet(u"password"_s);
    if (password || options.isSet(u"single-line"_s)) {
        auto line = std::make_unique<QLineEdit>(text);
        if (password)
            line->setEchoMode(QLineEdit::Password);
        return line;
    }
    auto field = std::make_unique<PlainField>(text,
        FieldHabits{options.isSet(u"swallow-paste"_s), options.isSet(u"ignore-keys"_s),
            options.isSet(u"tidy-paste"_s)});
    field->select(options.value(u"anchor"_s).toInt(), options.value(u"caret"_s).toInt());
    if (const auto lie = lieNamed(options.value(u"lie"_s)))
        LyingAccessible::disguise(*field, *lie);
    return field;
}

void printLine(const QByteArray& line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

/// Answers what has come in; false once nobody asks any more.
bool answer(QWidget& field)
{
    std::array<char, 256> input{};
    const ssize_t length = read(STDIN_FILENO, input.data(), input.size());
    if (length <= 0)
        return false;
    QList<QByteArray> questions = QByteArray(input.data(), length).split('\n');
    questions.removeLast(); // What follows the last line's end.
    for (const QByteArray& question : questions) {
        if (auto* const plain = dynamic_cast<PlainField*>(&field); plain && question == "clear")
            plain->clear();
        const QJsonObject state{{u"text"_s, textOf(field)}, {u"reads"_s, LyingAccessible::reads()}};
        printLine(QJsonDocument(state).toJson(QJsonDocument::Compact));
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QCommandLineParser options;
    addOptions(options);
    options.process(application);

    QMainWindow window;
    QWidget* const field = makeField(options).release();
    window.setCentralWidget(field); // Which makes it the window's.
    window.setWindowTitle(options.value(u"window-title"_s));
    window.resize(600, 300);
    if (options.isSet(u"unmanaged"_s))
        window.setWindowFlag(Qt::X11BypassWindowManagerHint);
    window.show();
    field->setFocus();

    QSocketNotifier questions(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&questions, &QSocketNotifier::activated, &window, [&] {
        if (!answer(*field))
            questions.setEnabled(false);
    });
    printLine(options.isSet(u"tell-window"_s) ? QByteArray::number(window.winId()) : "ready");
    return QApplication::exec();
}
