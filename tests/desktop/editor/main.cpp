// A small editor for the desktop tests: shows one field, with the text and caret it is told.

#include <QApplication>
#include <QCommandLineParser>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QTextCursor>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QWidget* multiLineField(const QString& text, int anchor, int caret)
{
    auto* const field = new QPlainTextEdit(text);
    QTextCursor cursor = field->textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(caret, QTextCursor::KeepAnchor);
    field->setTextCursor(cursor);
    return field;
}

QWidget* singleLineField(const QString& text, bool password)
{
    auto* const field = new QLineEdit(text);
    if (password)
        field->setEchoMode(QLineEdit::Password);
    return field;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.addOption({u"window-title"_s, u"Title of the window."_s, u"text"_s, u"Test editor"_s});
    options.addOption({u"text"_s, u"What stands in the field."_s, u"text"_s});
    options.addOption({u"anchor"_s, u"Start of the selection."_s, u"position"_s, u"0"_s});
    options.addOption({u"caret"_s, u"End of the selection."_s, u"position"_s, u"0"_s});
    options.addOption({u"single-line"_s, u"A field of one line."_s});
    options.addOption({u"password"_s, u"A field that hides its text."_s});
    options.process(application);

    const QString text = options.value(u"text"_s);
    const bool password = options.isSet(u"password"_s);
    QWidget* const field = password || options.isSet(u"single-line"_s)
        ? singleLineField(text, password)
        : multiLineField(
            text, options.value(u"anchor"_s).toInt(), options.value(u"caret"_s).toInt());
    QMainWindow window;
    window.setCentralWidget(field);
    window.setWindowTitle(options.value(u"window-title"_s));
    window.resize(600, 300);
    window.show();
    field->setFocus();
    std::puts("ready");
    std::fflush(stdout);
    return QApplication::exec();
}
