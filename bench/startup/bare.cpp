// The smallest Qt program with a status item and a window: what Tavrin's own start is measured
// against.

#include <QApplication>
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
    window.show();

    return QApplication::exec();
}
