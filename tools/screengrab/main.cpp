#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>
#include <QThread>

namespace
{

constexpr unsigned long Pause_ms = 200;
constexpr qint64 GiveUpAfter_ms = 30000;
constexpr int SameInARow = 4;

QImage grab()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

// A window draws in several steps; it has come to rest when nothing changes for a while.
QImage grabAtRest()
{
    QElapsedTimer clock;
    clock.start();
    QImage image = grab();
    int same = 0;
    while (same < SameInARow && clock.elapsed() < GiveUpAfter_ms) {
        QThread::msleep(Pause_ms);
        const QImage next = grab();
        same = next == image ? same + 1 : 0;
        image = next;
    }
    return image;
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    QTextStream err(stderr);
    if (arguments.size() != 2) {
        err << "usage: torv3dgrab FILE.png\nSaves what the X display shows, once it has come to rest.\n";
        return 2;
    }
    if (!grabAtRest().save(arguments.at(1))) {
        err << "torv3dgrab: can't write " << arguments.at(1) << '\n';
        return 1;
    }
    return 0;
}
