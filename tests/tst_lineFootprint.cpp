#include "lineFootprint_p.h"
#include "testCase.h"

#include "pictures.h"
#include "randomNumbers.h"

#include <QPainter>

using zorbin_qt_gui::lineFootprint;
using zorbin_qt_gui::lineFootprintBounds;
using zorbin_qt_gui::maxFootprintStepX;
using zorbin_qt_gui::maxFootprintStepY;

class tst_lineFootprint : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void equalsThePaintersLineForEveryStep();
    void boundsHoldEveryPixelOfALineCutByTheClip();
    void isKnownForSmallStepsToTheRightOnly();
};

static QImage black(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    return image;
}

static void drawLine(QImage* image, const QLine& line)
{
    QPainter painter(image);
    painter.setPen(QPen(Qt::white, 2));
    painter.drawLine(line);
}

// Each step once, somewhere in a picture as large as a display, where rounding is coarsest.
void tst_lineFootprint::equalsThePaintersLineForEveryStep()
{
    random_t random(21);
    for (int dx = 1; dx <= maxFootprintStepX; ++dx) {
        for (int dy = -maxFootprintStepY; dy <= maxFootprintStepY; ++dy) {
            // The painter draws as far out as wished; only a window around the line is compared.
            const QPoint start(random.integer(2, 3800), random.integer(1002, 2100));
            const QRect window =
                lineFootprintBounds(start.x(), start.y(), start.x() + dx, start.y() + dy)
                    .adjusted(-1, -1, 1, 1);
            QImage learnt = black(window.size());
            {
                QPainter painter(&learnt);
                const std::vector<QRect>* const rects = lineFootprint(dx, dy);
                QVERIFY(rects != nullptr);
                for (const QRect& rect : *rects)
                    painter.fillRect(rect.translated(start - window.topLeft()), Qt::white);
            }
            static QImage display = black(QSize(3840, 3160));
            drawLine(&display, QLine(start, start + QPoint(dx, dy)));
            const QImage drawn = display.copy(window);
            if (learnt != drawn)
                QFAIL(qPrintable(QStringLiteral("step %1, %2 from %3, %4: %5")
                                     .arg(dx)
                                     .arg(dy)
                                     .arg(start.x())
                                     .arg(start.y())
                                     .arg(firstDifference(learnt, drawn))));
            QPainter(&display).fillRect(window, Qt::black);
        }
    }
}

void tst_lineFootprint::boundsHoldEveryPixelOfALineCutByTheClip()
{
    random_t random(22);
    const QSize size(60, 50);
    for (int i = 0; i < 20000; ++i) {
        const int x = random.integer(-20, 70);
        const int y = random.integer(-400, 400);
        const QLine line(x, y, x + random.integer(0, 6), random.integer(-400, 400));
        QImage image = black(size);
        drawLine(&image, line);
        QPainter(&image).fillRect(lineFootprintBounds(line.x1(), line.y1(), line.x2(), line.y2()),
                                  Qt::black);
        QCOMPARE(firstDifference(image, black(size)), QString());
    }
}

void tst_lineFootprint::isKnownForSmallStepsToTheRightOnly()
{
    QVERIFY(lineFootprint(0, 5) == nullptr);
    QVERIFY(lineFootprint(-1, 5) == nullptr);
    QVERIFY(lineFootprint(maxFootprintStepX + 1, 5) == nullptr);
    QVERIFY(lineFootprint(1, maxFootprintStepY + 1) == nullptr);
    QVERIFY(lineFootprint(1, -maxFootprintStepY - 1) == nullptr);
    QVERIFY(lineFootprint(1, 5) != nullptr);
    QCOMPARE(lineFootprint(1, 5), lineFootprint(1, 5)); // learnt once
}

ZORBIN_TEST_MAIN(tst_lineFootprint, QApplication)
#include "tst_lineFootprint.moc"
