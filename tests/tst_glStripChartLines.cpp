#include "childProcess.h"
#include "glCurveRenderer.h"
#include "glPlot.h"
#include "glStripChartImpl.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

using namespace gl_tests;
using namespace zorbin_qt_gui;
using point_t = stripChartCurve_t::point_t;

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

namespace {

void fillRow(QImage* picture, int from, int end, int row, QColor color)
{
    QPainter(picture).fillRect(from, row, end - from, 1, color);
}

} // namespace

/// The lines of curves that OpenGL draws, beside what the painter draws.
class tst_glStripChartLines : public glTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Lines.
    void leavesAPlainCanvas();
    void showsWhatItDrew();
    void grabsWhatItDrew();
    void drawsNothingForASinglePoint();
    void drawsLinesInTheColourOfTheCurve();
    void fadesLooseLinesAcrossGaps();
    void fadesLinesOfSegmentsAcrossGaps();
    void drawsTheLineToTheIncomingPointsAtFullOpacity();
    void drawsTheLineFromTheOutgoingPoints_data();
    void drawsTheLineFromTheOutgoingPoints();
    void interruptsTheLineFromTheOutgoingPointsAtNaN();
    void drawsWithoutHolesWhilePointsAgeOut();
    void givesEachLooseLineOneColourAlsoWhenShadedSmoothly();
    void drawsAllSegmentsUnderAnyMatrix();
    void takesANewColourAtTheNextDraw();
    void forgetsNoColourBetweenTwoDraws();
    void interruptsTheLineAtNaN_data();
    void interruptsTheLineAtNaN();
    void drawsToTheEdgeForInfinities_data();
    void drawsToTheEdgeForInfinities();
    void survivesAnythingInItsPoints();
    void placesPointsExactly_data();
    void placesPointsExactly();

    // Beside the painter.
    void showsTheSameAsThePainter_data();
    void showsTheSameAsThePainter();
};

void tst_glStripChartLines::leavesAPlainCanvas()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    QCOMPARE(firstDifference(drawn(plot.chart), plot.blankCanvas()), QString());
}

void tst_glStripChartLines::showsWhatItDrew()
{
    REQUIRE_CONTEXT();
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QSKIP("Nothing drawn through OpenGL gets to an offscreen screen; what is in the context "
              "is compared by the other functions.");
    plotted_t plot;
    plot.curve->addPoints({plotted_t::at(20, 10), plotted_t::at(200, 90)});
    const QImage picture = drawn(plot.chart);
    QVERIFY(picture != plot.blankCanvas());
    QCOMPARE(firstDifference(shown(plot.chart), picture), QString());
}

void tst_glStripChartLines::grabsWhatItDrew()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints({plotted_t::at(20, 10), plotted_t::at(200, 90)});
    const QImage picture = drawn(plot.chart);
    QVERIFY(picture != plot.blankCanvas());
    QCOMPARE(firstDifference(snapshot(plot.chart), picture), QString());
    QCOMPARE(firstDifference(snapshot(canvasOf(plot.chart)), picture), QString());
    plot.curve->addPoints({plotted_t::at(220, 90)}); // not painted yet
    const QImage grabbed = snapshot(plot.chart);
    QVERIFY(grabbed != picture);
    QCOMPARE(firstDifference(drawn(plot.chart), grabbed), QString());
}

void tst_glStripChartLines::drawsNothingForASinglePoint()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints({plotted_t::at(100, 50)});
    QCOMPARE(firstDifference(drawn(plot.chart), plot.blankCanvas()), QString());
}

// Deliberate: the points' own colours don't show.
void tst_glStripChartLines::drawsLinesInTheColourOfTheCurve()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints({plotted_t::at(20, 30), plotted_t::at(40, 30), plotted_t::at(50, 20)});
    QImage wanted = plot.blankCanvas();
    fillRow(&wanted, 20, 40, 30, Qt::red); // one pixel high
    for (int i = 0; i < 10; ++i)
        fillRow(&wanted, 40 + i, 41 + i, 30 - i, Qt::red);
    QCOMPARE(firstDifference(drawn(plot.chart), wanted), QString());

    plot.curve->addPoints(levelPoints(300, 80, 3.025)); // the same from lists
    QVERIFY(record(*plot.curve).segments.size() > 1);
    fillRow(&wanted, 60, 300, 80, Qt::red);
    const QImage picture = drawn(plot.chart);
    for (const int y : {20, 80})
        QCOMPARE(firstDifference(picture.copy(62, y, 238, 1), wanted.copy(62, y, 238, 1)),
                 QString());
}

void tst_glStripChartLines::fadesLooseLinesAcrossGaps()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->color(QColor(255, 0, 0, 102));
    plot.curve->gapThreshold(2.0);
    plot.curve->addPoints({{1.03125, 0.05, Qt::green},
                           {3.03125, 0.05, Qt::green}, // 2 s: no gap yet
                           {std::nextafter(5.03125, 6.0), 0.05, Qt::green},
                           {6.03125, 0.05, Qt::green}});
    const QImage picture = drawn(plot.chart);
    QCOMPARE(paintedColumns(picture, 49), QString("20-119"));
    // Red at 0.4 and at 0.4 * 0.25 over white.
    QCOMPARE(picture.pixelColor(30, 49), QColor(255, 153, 153));
    QCOMPARE(picture.pixelColor(80, 49).red(), 255);
    QVERIFY(std::abs(picture.pixelColor(80, 49).green() - 229.5) <= 0.5);
    QCOMPARE(picture.pixelColor(110, 49), QColor(255, 153, 153));
}

// Deliberate: a quarter of the alpha is rounded down here, 103 / 4 = 25.
void tst_glStripChartLines::fadesLinesOfSegmentsAcrossGaps()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->color(QColor(0, 0, 0, 103));
    points_t points = levelPoints(20);                      // up to column 38
    for (const point_t& point : levelPoints(20, 49, 6.025)) // a gap, then from column 120
        points.push_back(point);
    for (const point_t& point : levelPoints(200, 49, 20.0))
        points.push_back(point);
    plot.curve->addPoints(points);
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(2));
    const QImage picture = drawn(plot.chart);
    QCOMPARE(paintedColumns(picture, 49), QString("0-299"));
    QCOMPARE(picture.pixelColor(20, 49).red(), 152);  // 255 - 103
    QCOMPARE(picture.pixelColor(80, 49).red(), 230);  // 255 - 25
    QCOMPARE(picture.pixelColor(130, 49).red(), 152); // after the gap
    QCOMPARE(picture.pixelColor(200, 49).red(), 230);
}

// Deliberate: that line keeps its full opacity, even across a gap. The list of the segment before
// draws it, too, and fades it; the two add up.
void tst_glStripChartLines::drawsTheLineToTheIncomingPointsAtFullOpacity()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->gapThreshold(1.5);
    points_t points = levelPoints(100, 49, -5.0); // a segment, up to 4.9 s
    points.emplace_back(7.025, plotted_t::value(49), Qt::green);
    points.emplace_back(11.025, plotted_t::value(49), Qt::green);
    plot.curve->addPoints(points);
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(1));
    QCOMPARE(record(*plot.curve).incomingCount, 2);
    const QImage picture = drawn(plot.chart);
    QCOMPARE(picture.pixelColor(50, 49), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(120, 49), QColor(Qt::red)); // from the last point to the zone
    QVERIFY(std::abs(picture.pixelColor(180, 49).green() - 191.5) <= 0.5);
}

void tst_glStripChartLines::drawsTheLineFromTheOutgoingPoints_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("green");
    QTest::newRow("within the threshold") << 1.0 << 0;
    QTest::newRow("across a gap") << 3.0 << 192;
}

void tst_glStripChartLines::drawsTheLineFromTheOutgoingPoints()
{
    REQUIRE_CONTEXT();
    QFETCH(double, step);
    QFETCH(int, green);
    plotted_t plot;
    plot.curve->addPoints(levelPoints(100, 49, 0.025)); // up to 9.925 s, column 198
    plot.curve->addPoints(levelPoints(150, 49, 9.925 + step));
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(2));
    plot.curve->dataDuration(record(*plot.curve).points.back().time - 5.0 + 0.1);
    plot.curve->addPoint(record(*plot.curve).points.back().time + 0.1, 0.05);
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(1));
    QVERIFY(record(*plot.curve).outgoingCount > 0 && record(*plot.curve).outgoingCount < 100);
    const QImage picture = drawn(plot.chart);
    QCOMPARE(paintedColumns(picture, 49), QString("100-299"));
    QCOMPARE(picture.pixelColor(150, 49), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(210, 49).green(), green);
}

void tst_glStripChartLines::interruptsTheLineFromTheOutgoingPointsAtNaN()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    points_t older = levelPoints(100, 49, 0.025); // up to 9.925 s, column 198
    older.back().value = nan_;
    plot.curve->addPoints(older);
    plot.curve->addPoints(levelPoints(150, 49, 10.925));
    plot.curve->dataDuration(record(*plot.curve).points.back().time - 5.0 + 0.1);
    plot.curve->addPoint(record(*plot.curve).points.back().time + 0.1, 0.05);
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(1));
    QVERIFY(record(*plot.curve).outgoingCount > 0 && record(*plot.curve).outgoingCount < 100);
    QCOMPARE(paintedColumns(drawn(plot.chart), 49), QString("100-195 218-299"));
}

void tst_glStripChartLines::drawsWithoutHolesWhilePointsAgeOut()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->dataDuration(12.0);
    double time = 0.025;
    for (int frame = 0; frame < 60; ++frame) {
        for (int i = 0; i < 7; ++i, time += 0.05)
            plot.curve->addPoint(time, 0.05);
        const double newest = time - 0.05;
        plot.chart.timeBounds(newest - 15.025, newest - 0.025);
        const double oldest = std::max(0.025, record(*plot.curve).points.front().time);
        const int left = qRound((oldest - plot.chart.minTimeBound()) * 20 - 0.5);
        const QString columns = paintedColumns(drawn(plot.chart), 49);
        const QStringList ends = columns.split(u'-');
        QVERIFY2(ends.size() == 2, qPrintable(columns)); // one run
        QVERIFY2(std::abs(ends.at(0).toInt() - left) <= 1, qPrintable(columns));
        QCOMPARE(ends.at(1), QString("299"));
    }
    QVERIFY(record(*plot.curve).outgoingCount > 0);
}

// Two vertices of each point: the end of the line to it, and the start of the line from it.
void tst_glStripChartLines::givesEachLooseLineOneColourAlsoWhenShadedSmoothly()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints({{1.0, 0.0, Qt::red},
                           {2.0, 1.0, Qt::red},
                           {6.0, 1.0, Qt::red}, // a gap
                           {7.0, 2.0, Qt::red},
                           {7.5, nan_, Qt::red}, // nothing to it and from it
                           {8.0, 2.0, Qt::red},
                           {9.0, 3.0, Qt::red}});
    const QImage flat = drawn(plot.chart);
    QCOMPARE(flat.pixelColor(50, 40), QColor(255, 191, 191)); // one time in four
    contextOf(plot.chart);
    glShadeModel(GL_SMOOTH);
    canvasOf(plot.chart).update();
    QCOMPARE(firstDifference(drawn(plot.chart), flat), QString());
}

// What is out of sight is left out where the chart paints itself, not by the renderer.
void tst_glStripChartLines::drawsAllSegmentsUnderAnyMatrix()
{
    REQUIRE_CONTEXT();
    plotted_t plot; // shows 15 of the 100 seconds
    plot.curve->addPoints(levelPoints(1000));
    drawn(plot.chart);
    contextOf(plot.chart);
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScaled(2.0, 10.0, 1.0); // 150 seconds
    rendererOf(*plot.curve).draw(75.0, 0.0);
    QCOMPARE(paintedColumns(inContext(plot.chart), 49), QString("0-198"));
}

void tst_glStripChartLines::takesANewColourAtTheNextDraw()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->gapThreshold(0.5);
    points_t points = levelPoints(40);                      // up to column 78
    for (const point_t& point : levelPoints(70, 49, 5.025)) // from column 100 to 238
        points.push_back(point);
    plot.curve->addPoints(points);
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(1)); // up to column 218
    drawn(plot.chart);
    plot.curve->color(Qt::blue);
    canvasOf(plot.chart).update();
    QImage picture = drawn(plot.chart);
    QCOMPARE(picture.pixelColor(50, 49), QColor(Qt::blue));
    QCOMPARE(picture.pixelColor(90, 49), QColor(192, 192, 255)); // the gap, too
    QCOMPARE(picture.pixelColor(150, 49), QColor(Qt::blue));
    // Deliberate: loose points keep their colour until they change.
    QCOMPARE(picture.pixelColor(230, 49), QColor(Qt::red));
    plot.curve->addPoint(12.025, 0.05);
    picture = drawn(plot.chart);
    QCOMPARE(picture.pixelColor(230, 49), QColor(Qt::blue));
}

void tst_glStripChartLines::forgetsNoColourBetweenTwoDraws()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoint(0.025, 0.05);
    drawn(plot.chart);
    plot.curve->color(Qt::blue);
    points_t points{{6.025, 0.05, Qt::green}}; // a gap
    for (const point_t& point : levelPoints(150, 49, 6.125))
        points.push_back(point);
    plot.curve->addPoints(points); // its list is made while the curve is blue
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(1));
    plot.curve->color(Qt::red);
    const QImage picture = drawn(plot.chart);
    QCOMPARE(picture.pixelColor(60, 49), QColor(255, 192, 192));
    QCOMPARE(picture.pixelColor(200, 49), QColor(Qt::red));
}

void tst_glStripChartLines::interruptsTheLineAtNaN_data()
{
    QTest::addColumn<int>("before"); // points
    QTest::newRow("loose") << 0;
    QTest::newRow("first of a segment") << 100;
    QTest::newRow("second of a segment") << 99;
    QTest::newRow("last of a segment") << 1;
    QTest::newRow("inside of a segment") << 50;
    QTest::newRow("first of the loose ones") << 200;
}

void tst_glStripChartLines::interruptsTheLineAtNaN()
{
    REQUIRE_CONTEXT();
    QFETCH(int, before);
    plotted_t plot;
    plot.curve->dataDuration(inf);
    points_t points = levelPoints(before, 49, -30.0); // out of view
    for (const point_t& point : {plotted_t::at(20, 49), plotted_t::at(40, 49)})
        points.push_back(point);
    points[points.size() - 2].value = before % 100 == 0 && before > 0 ? nan_ : points.back().value;
    points.push_back({plotted_t::time(50), nan_, Qt::green});
    points.push_back(plotted_t::at(60, 49));
    points.push_back(plotted_t::at(80, 49));
    if (before > 0 && before < 200) {
        for (const point_t& point : levelPoints(200, 49, 20.0))
            points.push_back(point);
        plot.curve->gapThreshold(100.0);
    }
    plot.curve->addPoints(points);
    const QString columns = paintedColumns(drawn(plot.chart), 49);
    QString wanted = before > 0 && before < 200 ? "60-299" : "60-79";
    if (before % 100 != 0)
        wanted.prepend("0-39 ");
    else if (before == 0)
        wanted.prepend("20-39 ");
    QCOMPARE(columns, wanted);
}

void tst_glStripChartLines::drawsToTheEdgeForInfinities_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("isUp");
    QTest::newRow("infinity") << inf << true;
    QTest::newRow("minus infinity") << -inf << false;
    QTest::newRow("largest") << std::numeric_limits<double>::max() << true;
    QTest::newRow("least") << std::numeric_limits<double>::lowest() << false;
}

void tst_glStripChartLines::drawsToTheEdgeForInfinities()
{
    REQUIRE_CONTEXT();
    QFETCH(double, value);
    QFETCH(bool, isUp);
    for (const bool isReversed : {false, true}) {
        plotted_t plot;
        plot.curve->gapThreshold(100.0);
        point_t away(plotted_t::time(100), value, Qt::green);
        point_t near = plotted_t::at(60, 49);
        if (isReversed)
            std::swap(away.value, near.value); // the reference is what is nowhere
        plot.curve->addPoints({near, away});
        const QImage picture = drawn(plot.chart);
        const int column = isReversed ? 100 : 60;
        // As good as upright at the point that is in view.
        for (int y = 1; y < 99; ++y) {
            const bool isPainted =
                y == 49 ? picture.pixelColor(column, y) == QColor(Qt::red) : isUp == (y < 49);
            int painted = 0;
            for (int x = 0; x < 300; ++x)
                painted += picture.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
            QCOMPARE(painted, isPainted ? 1 : 0);
            if (isPainted)
                QVERIFY(picture.pixelColor(column, y) == QColor(Qt::red) ||
                        picture.pixelColor(column - 1, y) == QColor(Qt::red));
        }
    }
}

void tst_glStripChartLines::survivesAnythingInItsPoints()
{
    random_t random(71);
    plotted_t plot;
    plot.curve->dataDuration(200.0);
    double time = -1000.0;
    const double largest = std::numeric_limits<double>::max();
    for (int i = 0; i < 3000; ++i) {
        time += random.oneOf<double>({1e-9, 0.01, 0.1, 3.0, 30.0});
        plot.curve->addPoint(time, random.oneOf<double>({0.0, 1.0, -1e30, 1e30, inf, -inf, nan_,
                                                         largest, -largest, 5e-324}));
        if (random.chance(0.02)) {
            plot.chart.timeBounds(time - random.oneOf<double>({1e-9, 15.0, 1e12, -5.0, 0.0}), time);
            plot.chart.valueBounds(0.0, random.oneOf<double>({1.0, -1.0, 1e-300, 1e300, 0.0}));
            processEvents();
        }
    }
    if (hasContext) {
        contextOf(plot.chart);
        QCOMPARE(glGetError(), GLenum(GL_NO_ERROR));
        plot.curve->clear();
        plot.chart.timeBounds(0.0, 15.0);
        plot.chart.valueBounds(-5.0, 5.0);
        QCOMPARE(firstDifference(drawn(plot.chart), plot.blankCanvas()), QString());
    }
}

void tst_glStripChartLines::placesPointsExactly_data()
{
    QTest::addColumn<int>("right"); // index of the last point in view
    QTest::newRow("loose points") << 4999;
    QTest::newRow("segments") << 2500;
    QTest::newRow("outgoing points") << 1300;
}

// A spike every 10 ms, one pixel for each ms, seconds since 1970: 1.8e9 s is beyond the whole
// numbers of a float, and even of its steps of 128 s.
void tst_glStripChartLines::placesPointsExactly()
{
    REQUIRE_CONTEXT();
    QFETCH(int, right);
    constexpr double epoch = 1.8e9;
    plotted_t plot;
    plot.curve->dataDuration(3.95);
    const auto timeOf = [](double milliseconds) { return epoch + milliseconds / 1000.0; };
    for (int i = 0; i < 5000; ++i)
        plot.curve->addPoint(timeOf(i), i % 10 == 5 ? 4.0 : -4.0);
    QVERIFY(record(*plot.curve).outgoingCount > 0);
    QVERIFY(record(*plot.curve).points.front().time < timeOf(right - 200));
    plot.chart.timeBounds(timeOf(right - 299.5), timeOf(right + 0.5));
    const QImage picture = drawn(plot.chart);
    QStringList wanted;
    for (int column = 0; column < 300; ++column) {
        const int i = right - 299 + column;
        if (i % 10 == 5 && timeOf(i) > record(*plot.curve).points.front().time)
            wanted << QStringLiteral("%1-%1").arg(column);
    }
    QVERIFY(wanted.size() >= 20);
    QCOMPARE(paintedColumns(picture, 12), wanted.join(u' ')); // value 3.75, near the tips
}

namespace {

// A chart of the painter back end, of which this process makes none by itself.
struct painterChart_t
{
    painterChart_t() : curve(new stripChartCurve_t(nullptr))
    {
        stripChartCurveData_t& data = record(*curve);
        delete std::exchange(data.renderer, new simpleCurveRenderer_t(&data));
        impl.canvasColor(Qt::white);
        impl.addCurve(curve);
    }

    simpleStripChartImpl_t impl;
    stripChartCurve_t* const curve; // the chart's
};

int colorDistance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

// Across a gap, the OpenGL back end draws that line at full opacity.
void hideLineToTheIncomingPoints(stripChart_t& chart, stripChartCurve_t& curve, QImage* picture)
{
    const stripChartCurveData_t& data = record(curve);
    const std::size_t first = data.points.size() - static_cast<std::size_t>(data.incomingCount);
    if (first == 0 || data.points[first].time - data.points[first - 1].time <= data.threshold)
        return;
    const auto columnOf = [&](double time) {
        return (time - chart.minTimeBound()) * implOf(chart).xScaleFactor();
    };
    const double left = columnOf(data.points[first - 1].time) - 3.0;
    const double right = columnOf(data.points[first].time) + 3.0;
    QPainter(picture).fillRect(QRectF(left, 0.0, right - left, picture->height()), Qt::white);
}

// Names a pixel of the first picture that the other has nowhere near; empty if there is none.
QString unmatchedPixel(const QImage& picture, const QImage& other, int reach)
{
    constexpr int closeColors = 24;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            bool isMatched = pixel == qRgb(255, 255, 255);
            for (int dy = -reach; !isMatched && dy <= reach; ++dy) {
                for (int dx = -reach; !isMatched && dx <= reach; ++dx) {
                    const QPoint at(x + dx, y + dy);
                    // What a line does beyond the edge isn't known.
                    isMatched =
                        !other.valid(at) || colorDistance(pixel, other.pixel(at)) <= closeColors;
                }
            }
            if (!isMatched)
                return QStringLiteral("(%1, %2) #%3").arg(x).arg(y).arg(pixel, 8, 16);
        }
    }
    return QString();
}

} // namespace

void tst_glStripChartLines::showsTheSameAsThePainter_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 12; ++seed)
        QTest::addRow("recording %u", seed) << seed;
}

// Lines are 1 pixel wide in the one and 2 in the other, and the painter drops fractions of pixels,
// so a pixel is looked for within 2 pixels. With every point in the curve's colour, which is
// opaque, there are no other differences.
void tst_glStripChartLines::showsTheSameAsThePainter()
{
    REQUIRE_CONTEXT();
    QFETCH(quint32, seed);
    random_t random(seed);
    plotted_t plot;
    painterChart_t painter;
    const QColor color = QColor::fromHsv(random.integer(0, 359), 255, random.integer(60, 255));
    const double step = random.oneOf<double>({0.03, 0.1, 0.5});
    const double threshold = step * 3.0;
    const double duration = random.oneOf<double>({12.0, 60.0, 7200.0});
    for (stripChartCurve_t* const curve : {plot.curve, painter.curve}) {
        curve->color(color);
        curve->gapThreshold(threshold);
        curve->dataDuration(duration);
    }
    double time = random.oneOf<double>({0.0, 1e6, 1.8e9});
    double value = 0.0;
    bool wasGap = false;
    for (int frame = 0; frame < 8; ++frame) {
        points_t batch;
        for (int i = random.integer(1, 400); i > 0; --i) {
            const bool isGap = !wasGap && random.chance(0.02);
            time += isGap ? threshold + 20.0 * step : step;
            wasGap = isGap; // in a row, they overlap more where lines are wider
            value = std::min(std::max(value + random.real(-0.6, 0.6), -6.0), 6.0);
            batch.emplace_back(time, random.chance(0.01) ? nan_ : value, color);
        }
        plot.curve->addPoints(batch);
        painter.curve->addPoints(batch);
        const double span = random.oneOf<double>({150.0, 400.0}) * step;
        const double right = time + random.real(-0.7, 0.3) * span;
        const double top = random.real(2.0, 8.0);
        const double bottom = -random.real(2.0, 8.0);
        QWidget& canvas = *painter.impl.widget();
        canvas.resize(300, 100);
        canvas.grab(); // gives it its size
        plot.chart.timeBounds(right - span, right);
        plot.chart.valueBounds(bottom, top);
        painter.impl.timeBounds(right - span, right);
        painter.impl.valueBounds(bottom, top);
        QImage ours = drawn(plot.chart);
        QImage theirs = snapshot(canvas);
        hideLineToTheIncomingPoints(plot.chart, *plot.curve, &ours);
        hideLineToTheIncomingPoints(plot.chart, *plot.curve, &theirs);
        const QString added = unmatchedPixel(ours, theirs, 2);
        const QString missing = unmatchedPixel(theirs, ours, 2);
        if (!added.isEmpty() || !missing.isEmpty()) {
            ours.save("showsTheSameAsThePainter-gl.png");
            theirs.save("showsTheSameAsThePainter-simple.png");
        }
        QVERIFY2(added.isEmpty() && missing.isEmpty(),
                 qPrintable(QStringLiteral("frame %1: only in OpenGL: %2; only in the painter: %3")
                                .arg(frame)
                                .arg(added, missing)));
    }
}

int main(int argc, char** argv)
{
    qputenv("ZORBIN_QT_STRIPCHART_TYPE", "gl");
    tst_glStripChartLines tests;
    return runTestsOrScenario(argc, argv, tests, {});
}
#include "tst_glStripChartLines.moc"
