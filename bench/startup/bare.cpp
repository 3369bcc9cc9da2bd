// tavrin_bench_bare [TEXT]
//
// The smallest Qt program with a status item and a window: what Tavrin's own start is measured
// against. With a text it shows that in the two weights that every window has: what the fonts of a
// script take is none of the program's.

#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    QPixmap square(22, 22);
    square.fill(Qt::black);
    QSystemTrayIcon statusItem{QIcon(square)};
    statusItem.show();

    QWidget window;
    window.resize(820, 640);
    if (argc > 1) {
        const QString text = QString::fromUtf8(argv[1]);
        auto* const plain = new QLabel(text, &window);
        plain->move(0, 0);
        auto* const bold = new QLabel(text, &window);
        bold->move(0, 100);
        QFont font = bold->font();
        font.setWeight(QFont::Bold);
        bold->setFont(font);
    }
    window.show();

    return QApplication::exec();
}
