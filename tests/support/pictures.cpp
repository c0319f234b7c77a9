#include "pictures.h"

#include "testCase.h"

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

QImage snapshot(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

namespace {

// A window that is never shown. The server answers all that it is asked in order, so once this one
// has got its new size all windows have got what they were to be told.
class mark_t : public QWindow
{
public:
    mark_t()
    {
        resize(1, 1);
        create();
    }

    // Delivers events until then.
    void pass()
    {
        const QSize size(geometry().width() == 1 ? 2 : 1, 1);
        resize(size);
        m_isPassed = false;
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(patienceMs());
        while (!m_isPassed && limit.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QVERIFY2(m_isPassed, "the window system doesn't answer");
    }

protected:
    void resizeEvent(QResizeEvent* /*event*/) override { m_isPassed = true; }

private:
    bool m_isPassed = false;
};

} // namespace

void settle()
{
    // Only a window system in another process takes its time.
    const bool isDistant = QGuiApplication::platformName() == QLatin1String("xcb");
    mark_t mark;
    // What a window is told first may make Qt ask for more.
    for (int round = 0; round < 2; ++round) {
        QCoreApplication::sendPostedEvents();
        if (isDistant)
            mark.pass();
        QCoreApplication::processEvents();
    }
}

QImage shown(QWidget& window)
{
    settle();
    const QPixmap pixels = window.windowHandle()->screen()->grabWindow(window.winId());
    return pixels.toImage().convertToFormat(QImage::Format_RGB32);
}

QImage blank(const QWidget& widget)
{
    QImage picture(widget.size(), QImage::Format_RGB32);
    picture.setDotsPerMeterX(qRound(widget.logicalDpiX() / 0.0254));
    picture.setDotsPerMeterY(qRound(widget.logicalDpiY() / 0.0254));
    picture.fill(widget.palette().color(QPalette::Window));
    return picture;
}

// Saves both pictures under the running test's name and says where.
static QString saved(const QImage& actual, const QImage& wanted)
{
    QString name = QString::fromLatin1(QTest::currentTestFunction());
    if (const char* const row = QTest::currentDataTag())
        name += QLatin1Char('-') + QString::fromLatin1(row).replace(QLatin1Char(' '), u'_');
    const QString actualPath = QDir::current().absoluteFilePath(name + "-actual.png");
    const QString wantedPath = QDir::current().absoluteFilePath(name + "-wanted.png");
    if (!actual.save(actualPath) || !wanted.save(wantedPath))
        return QStringLiteral("the pictures could not be saved");
    return QStringLiteral("see %1 and %2").arg(actualPath, wantedPath);
}

QString firstDifference(const QImage& actual, const QImage& wanted)
{
    if (actual.size() != wanted.size())
        return QStringLiteral("%1 x %2 pixels instead of %3 x %4; %5")
            .arg(actual.width())
            .arg(actual.height())
            .arg(wanted.width())
            .arg(wanted.height())
            .arg(saved(actual, wanted));
    for (int y = 0; y < wanted.height(); ++y) {
        for (int x = 0; x < wanted.width(); ++x) {
            if (actual.pixel(x, y) == wanted.pixel(x, y))
                continue;
            return QStringLiteral("pixel (%1, %2) is #%3 instead of #%4; %5")
                .arg(x)
                .arg(y)
                .arg(actual.pixel(x, y), 8, 16, QLatin1Char('0'))
                .arg(wanted.pixel(x, y), 8, 16, QLatin1Char('0'))
                .arg(saved(actual, wanted));
        }
    }
    return QString();
}

int countOf(const QColor& color, const QImage& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == color.rgb() ? 1 : 0;
    }
    return count;
}
