// Linked into the programs of the documentation: takes a picture of their window and ends them.
// The arguments of a program are the picture's file, how many colours there are to be in it at
// least and, at will, after how many ticks of the program's timer it is taken, 50 at first. Ticks
// come as fast as they can, so that nobody waits and the picture is the same each time. The exit
// status says whether there is such a picture.
#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <set>

namespace {

constexpr int maxSeconds = 60; // for all ticks; far more than they take

std::size_t countColors(const QImage& picture)
{
    std::set<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, y));
    return colors.size();
}

bool savePicture(const QString& path, std::size_t leastColors)
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

// Counts the ticks of the program's timer, the one without a parent.
class photographer_t : public QObject
{
public:
    explicit photographer_t(const QStringList& arguments)
        : QObject(qApp), m_path(arguments.value(1)), m_leastColors(arguments.value(2).toUInt()),
          m_ticksLeft(arguments.value(3, QStringLiteral("50")).toInt())
    {
        qApp->installEventFilter(this);
        QTimer::singleShot(1000 * maxSeconds, this, [] {
            std::fputs("takePicture: the program's timer doesn't tick\n", stderr);
            QCoreApplication::exit(1);
        });
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const timer = qobject_cast<QTimer*>(watched);
        if (event->type() != QEvent::Timer || timer == nullptr || timer->parent() != nullptr)
            return false;
        if (timer->interval() > 0)
            timer->setInterval(0);
        if (m_ticksLeft-- > 0)
            return false;
        timer->stop();
        QCoreApplication::exit(savePicture(m_path, m_leastColors) ? 0 : 1);
        return true;
    }

private:
    const QString m_path;
    const std::size_t m_leastColors;
    int m_ticksLeft;
};

void takePicture()
{
    new photographer_t(QCoreApplication::arguments()); // a child of the application
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(takePicture)
