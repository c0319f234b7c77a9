// Linked into the programs of the documentation: takes a picture of their window and ends them.
// The arguments of a program are the picture's file, how many colours there are to be in it at
// least and, at will, after how many seconds it is taken, 1 at first. The exit status says whether
// there is such a picture.
#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <set>

static std::size_t countColors(const QImage& picture)
{
    std::set<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, y));
    return colors.size();
}

static bool savePicture(const QString& path, std::size_t leastColors)
{
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible()) {
            const QImage picture = window->grab().toImage();
            const std::size_t colors = countColors(picture);
            if (colors < leastColors)
                std::fprintf(stderr, "takePicture: there are only %zu colours\n", colors);
            return picture.save(path) && colors >= leastColors;
        }
    std::fputs("takePicture: there is no window\n", stderr);
    return false;
}

static void takePicture()
{
    const QStringList arguments = QCoreApplication::arguments();
    const int delay = static_cast<int>(1000.0 * arguments.value(3, QStringLiteral("1")).toDouble());
    // The time counts from when the program has set itself up and takes events.
    QTimer::singleShot(0, qApp, [delay, arguments] {
        QTimer::singleShot(delay, qApp, [arguments] {
            const bool isSaved = savePicture(arguments.value(1), arguments.value(2).toUInt());
            QCoreApplication::exit(isSaved ? 0 : 1);
        });
    });
}
Q_COREAPP_STARTUP_FUNCTION(takePicture)
