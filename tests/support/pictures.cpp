#include "pictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QWidget>
#include <QWindow>

QImage snapshot(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage shown(QWidget& window)
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
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
