// Linked into the programs of the documentation: takes a picture of their window and ends them.
// The arguments of a program are the picture's file and, at will, after how many seconds it is
// taken, 1 at first. The exit status says whether there is a picture, and not of one colour only.
#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdio>

static bool isOneColor(const QImage& picture)
{
    QImage plain(picture.size(), picture.format());
    plain.fill(picture.pixelColor(0, 0));
    return picture == plain;
}

static bool savePicture(const QString& path)
{
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible()) {
            const QImage picture = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
            if (isOneColor(picture)) {
                std::fputs("takePicture: the window is of one colour only\n", stderr);
                return false;
            }
            return picture.save(path);
        }
    std::fputs("takePicture: there is no window\n", stderr);
    return false;
}

static void takePicture()
{
    const QStringList arguments = QCoreApplication::arguments();
    const int delay = static_cast<int>(1000.0 * arguments.value(2, QStringLiteral("1")).toDouble());
    // The time counts from when the program has set itself up and takes events.
    QTimer::singleShot(0, qApp, [delay, path = arguments.value(1)] {
        QTimer::singleShot(delay, qApp,
                           [path] { QCoreApplication::exit(savePicture(path) ? 0 : 1); });
    });
}
Q_COREAPP_STARTUP_FUNCTION(takePicture)
