#include "pictures.h"
#include "plainChart.h"
#include "plainCurve.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "testCase.h"

#include <QApplication>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

using namespace zorbin_qt_gui;
using context_t = simpleCurveRenderer_t::context_t;
using points_t = plainCurve_t::points_t;

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

/// Strip charts that draw with the painter, beside the plain way of drawing curves.
class tst_simpleStripChartPlainWay : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Against the plain way.
    void leavesThePainterAsItWas_data();
    void leavesThePainterAsItWas();
    void drawsNothingForReversedOrEmptyWindows();
    void drawsAsThePlainWay_data();
    void drawsAsThePlainWay();
    void drawsAsThePlainWayOnOddPainters_data();
    void drawsAsThePlainWayOnOddPainters();
    void drawsAsThePlainWayUnderSeveralRectangles_data();
    void drawsAsThePlainWayUnderSeveralRectangles();
    void repaintsAsThePlainWayWhileTheCurveChanges();
    void showsAsThePlainWidget_data();
    void showsAsThePlainWidget();
};

// A context that shows all of 0 s to 15 s, values -5 to 5, on 300 x 100 pixels.
static context_t wholeContext(QPainter* painter)
{
    context_t context{};
    context.painter = painter;
    context.drawMinTime = 0.0;
    context.drawMaxTime = 15.0;
    context.minTime = 0.0;
    context.maxValue = 5.0;
    context.xScale = 20.0;
    context.yScale = 10.0;
    context.width = 300;
    context.height = 100;
    return context;
}

void tst_simpleStripChartPlainWay::leavesThePainterAsItWas_data()
{
    QTest::addColumn<double>("opacity");
    QTest::newRow("opaque") << 1.0;
    QTest::newRow("translucent, line by line") << 0.5;
}

void tst_simpleStripChartPlainWay::leavesThePainterAsItWas()
{
    QFETCH(double, opacity);
    stripChartCurve_t curve;
    for (int i = 0; i < 2000; ++i)
        curve.addPoint(0.01 * i, 4.0 * std::sin(i), i % 500 < 400 ? Qt::red : Qt::blue);
    QImage picture(300, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setBrush(Qt::green);
    painter.setBackground(Qt::yellow);
    painter.setOpacity(opacity);
    painter.setClipRect(10, 10, 200, 50);
    painter.translate(3, 4);
    const QTransform transform = painter.transform();
    const QPainter::RenderHints hints = painter.renderHints();
    static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(wholeContext(&painter));
    QCOMPARE(painter.brush(), QBrush(Qt::green));
    QCOMPARE(painter.background(), QBrush(Qt::yellow));
    QCOMPARE(painter.opacity(), opacity);
    QCOMPARE(painter.transform(), transform);
    QCOMPARE(painter.clipRegion(), QRegion(7, 6, 200, 50));
    QCOMPARE(painter.renderHints(), hints);
    QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
    QCOMPARE(painter.pen().width(), 2);
}

void tst_simpleStripChartPlainWay::drawsNothingForReversedOrEmptyWindows()
{
    stripChartCurve_t curve;
    auto* const renderer = static_cast<simpleCurveRenderer_t*>(curve.renderer());
    QImage picture(300, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    const QImage untouched = picture;
    QPainter painter(&picture);
    context_t context = wholeContext(&painter);
    renderer->draw(context); // no points
    for (int i = 0; i < 200; ++i)
        curve.addPoint(0.1 * i, 1.0, Qt::red);
    context.drawMinTime = 10.0;
    context.drawMaxTime = 5.0;
    renderer->draw(context);
    context.drawMinTime = 100.0; // after all points
    context.drawMaxTime = 110.0;
    renderer->draw(context);
    QCOMPARE(firstDifference(picture, untouched), QString());
}

namespace {

// How random curves may look; each row of the comparisons takes one.
struct taste_t
{
    double pointsPerPixel = 1.0;
    double gaps = 0.0;         // chance of a gap before a point
    double colorChanges = 0.0; // chance of another colour at a point
    double translucent = 0.0;  // chance that this colour is translucent
    double odd = 0.0;          // chance of a value that is not finite or is huge
    double roughness = 0.05;   // step between values, as a part of the height
    double zoom = 1.0;         // how much of the data the value bounds cut off
};
} // namespace
Q_DECLARE_METATYPE(taste_t)

static QColor randomColor(random_t& random, const taste_t& taste)
{
    if (random.chance(0.05))
        return QColor();
    QColor color = QColor::fromHsv(random.integer(0, 359), 255, random.integer(100, 255));
    if (random.chance(taste.translucent))
        color.setAlpha(random.integer(0, 255));
    return color;
}

// Points over the times \p from to \p to; \p pixelTime is how long a pixel column is.
static points_t randomPoints(random_t& random, const taste_t& taste, double from, double to,
                             double pixelTime)
{
    static const std::vector<double> oddValues{nan_, nan_, inf, -inf, 1e5, -1e5, 1e9, -1e9, 1e300};
    points_t points;
    QColor color = randomColor(random, taste);
    double value = random.real(-1.0, 1.0);
    const double step = pixelTime / taste.pointsPerPixel;
    for (double time = from; time < to; time += step * random.real(0.1, 1.9)) {
        if (random.chance(taste.gaps))
            time += std::max(step, 0.3 * (to - from) * random.real(0.0, 1.0));
        if (random.chance(taste.colorChanges))
            color = randomColor(random, taste);
        value += taste.roughness * random.real(-1.0, 1.0);
        value = std::min(std::max(value, -1.0), 1.0);
        points.emplace_back(time, random.chance(taste.odd) ? random.oneOf(oddValues) : value,
                            color);
    }
    return points;
}

static void tastes()
{
    QTest::addColumn<taste_t>("taste");
    taste_t taste;
    QTest::newRow("smooth") << taste;
    taste.pointsPerPixel = 0.1;
    taste.roughness = 1.0;
    QTest::newRow("few points") << taste;
    taste.gaps = 0.1;
    taste.colorChanges = 0.3;
    QTest::newRow("few points in colours with gaps") << taste;
    taste.odd = 0.2;
    taste.translucent = 0.5;
    QTest::newRow("few points of every kind") << taste;
    taste = taste_t();
    taste.pointsPerPixel = 20.0;
    QTest::newRow("many smooth points") << taste;
    taste.roughness = 2.0;
    QTest::newRow("many rough points") << taste;
    taste.zoom = 5.0;
    QTest::newRow("many rough points, zoomed in") << taste;
    taste.colorChanges = 0.02;
    taste.gaps = 0.005;
    QTest::newRow("many points in colours with gaps") << taste;
    taste.odd = 0.01;
    QTest::newRow("many points, some odd") << taste;
    taste.translucent = 0.5;
    QTest::newRow("many points of every kind") << taste;
    taste = taste_t();
    taste.pointsPerPixel = 3.0;
    taste.roughness = 0.02;
    taste.zoom = 20.0;
    QTest::newRow("smooth, zoomed in much") << taste;
    taste.odd = 0.1;
    taste.colorChanges = 0.1;
    QTest::newRow("zoomed in much, odd, in colours") << taste;
    taste = taste_t();
    taste.translucent = 1.0;
    taste.pointsPerPixel = 5.0;
    QTest::newRow("all translucent") << taste;
}

void tst_simpleStripChartPlainWay::drawsAsThePlainWay_data()
{
    tastes();
}

// Both ways of drawing get the same painter settings and pieces of the picture, in turn.
void tst_simpleStripChartPlainWay::drawsAsThePlainWay()
{
    QFETCH(taste_t, taste);
    random_t random(11);
    for (int round = 0; round < 40; ++round) {
        const int width = random.integer(1, 250);
        const int height = random.integer(1, 120);
        const double start = random.oneOf<double>({0.0, -7.25, 1.7e9, 1e12});
        const double span = random.oneOf<double>({0.5, 15.0, 3600.0});
        stripChartCurve_t curve;
        curve.dataDuration(inf);
        curve.gapThreshold(0.05 * span);
        curve.color(randomColor(random, taste));
        curve.addPoints(
            randomPoints(random, taste, start - 0.2 * span, start + 1.2 * span, span / width));
        const points_t& points = record(curve).points; // less those that rounding made too close

        context_t context{};
        context.minTime = start;
        context.maxValue = random.real(0.5, 1.2) / taste.zoom;
        context.xScale = width / span;
        context.yScale = height * 0.5 * taste.zoom;
        context.width = static_cast<unsigned>(width);
        context.height = static_cast<unsigned>(height);
        QImage actual(width, height, QImage::Format_RGB32);
        actual.fill(Qt::white);
        QImage wanted = actual;
        QPainter actualPainter(&actual);
        QPainter wantedPainter(&wanted);
        for (int piece = random.integer(1, 3); piece > 0; --piece) {
            const int left = piece == 1 ? 0 : random.integer(0, width - 1);
            const int right = piece == 1 ? width - 1 : random.integer(left, width - 1);
            for (QPainter* const painter : {&actualPainter, &wantedPainter}) {
                painter->setClipRect(left, 0, right - left + 1, height);
                painter->eraseRect(left, 0, right - left + 1, height);
            }
            context.drawMinTime = context.minTime + left / context.xScale;
            context.drawMaxTime = context.minTime + (right + 1) / context.xScale;
            context.painter = &actualPainter;
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
            context.painter = &wantedPainter;
            drawPlainly(context, points, curve.color(), 0.05 * span);
        }
        actualPainter.end();
        wantedPainter.end();
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

namespace {
// Turns a usual context and painter into an odd one.
using oddity_t = std::function<void(context_t&)>;
} // namespace
Q_DECLARE_METATYPE(oddity_t)

void tst_simpleStripChartPlainWay::drawsAsThePlainWayOnOddPainters_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<oddity_t>("oddity");
    const auto rgb = QImage::Format_RGB32;
    const auto row = [](const char* name, QImage::Format format, const oddity_t& oddity) {
        QTest::newRow(name) << format << oddity;
    };
    const oddity_t none = [](context_t&) {};
    row("premultiplied alpha", QImage::Format_ARGB32_Premultiplied, none);
    row("straight alpha", QImage::Format_ARGB32, none);
    row("16 bits", QImage::Format_RGB16, none);
    row("24 bits", QImage::Format_RGB888, none);
    row("bytes in order", QImage::Format_RGBA8888, none);
    row("30 bits", QImage::Format_RGB30, none);
    row("64 bits", QImage::Format_RGBA64, none);
    row("grey", QImage::Format_Grayscale8, none);
    row("one bit", QImage::Format_Mono, none);
    row("negative value scale", rgb, [](context_t& c) {
        c.yScale = -c.yScale;
        c.maxValue = -1.0;
    });
    row("negative time scale", rgb, [](context_t& c) {
        c.xScale = -c.xScale;
        c.painter->translate(200, 0);
    });
    row("value scale of zero", rgb, [](context_t& c) { c.yScale = 0.0; });
    row("time scale of zero", rgb, [](context_t& c) { c.xScale = 0.0; });
    row("no scale at all", rgb, [](context_t& c) { c.xScale = c.yScale = 0.0; });
    row("infinite value scale", rgb, [](context_t& c) { c.yScale = inf; });
    row("infinite time scale", rgb, [](context_t& c) { c.xScale = inf; });
    row("huge scales", rgb, [](context_t& c) { c.xScale = c.yScale = 1e12; });
    row("NaN scales", rgb, [](context_t& c) { c.xScale = c.yScale = nan_; });
    row("NaN top", rgb, [](context_t& c) { c.maxValue = nan_; });
    row("size of zero", rgb, [](context_t& c) { c.width = c.height = 0; });
    row("drawn window of everything", rgb, [](context_t& c) {
        c.drawMinTime = -inf;
        c.drawMaxTime = inf;
    });
    row("drawn window of NaN", rgb, [](context_t& c) { c.drawMinTime = c.drawMaxTime = nan_; });
    row("drawn window of an instant", rgb,
        [](context_t& c) { c.drawMaxTime = c.drawMinTime = 7.0; });
    row("drawn window reversed", rgb,
        [](context_t& c) { std::swap(c.drawMinTime, c.drawMaxTime); });
    row("translated", rgb, [](context_t& c) { c.painter->translate(-31, 17); });
    row("translated by fractions", rgb, [](context_t& c) { c.painter->translate(3.4, -2.6); });
    row("scaled by 2", rgb, [](context_t& c) { c.painter->scale(2, 2); });
    row("scaled by 0.37", rgb, [](context_t& c) { c.painter->scale(0.37, 0.37); });
    row("mirrored", rgb, [](context_t& c) {
        c.painter->translate(200, 0);
        c.painter->scale(-1, 1);
    });
    row("rotated", rgb, [](context_t& c) { c.painter->rotate(20); });
    row("upright", rgb, [](context_t& c) {
        c.painter->translate(100, 0);
        c.painter->rotate(90);
    });
    row("in perspective", rgb, [](context_t& c) {
        c.painter->setTransform(QTransform(1, 0, 0.001, 0, 1, 0.001, 0, 0, 1));
    });
    row("with a window", rgb, [](context_t& c) { c.painter->setWindow(0, 0, 400, 200); });
    row("clipped", rgb, [](context_t& c) { c.painter->setClipRect(20, 10, 90, 50); });
    row("clipped to nothing", rgb, [](context_t& c) { c.painter->setClipRect(0, 0, 0, 0); });
    row("clipped to a region", rgb, [](context_t& c) {
        c.painter->setClipRegion(QRegion(0, 0, 50, 60) + QRegion(70, 30, 60, 90));
    });
    row("clipped to a circle", rgb, [](context_t& c) {
        QPainterPath circle;
        circle.addEllipse(20, 5, 110, 90);
        c.painter->setClipPath(circle);
    });
    row("half transparent", rgb, [](context_t& c) { c.painter->setOpacity(0.5); });
    row("antialiased", rgb, [](context_t& c) { c.painter->setRenderHint(QPainter::Antialiasing); });
    row("adding up", rgb,
        [](context_t& c) { c.painter->setCompositionMode(QPainter::CompositionMode_Plus); });
    row("combined bit by bit", rgb, [](context_t& c) {
        c.painter->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    });
    row("with a brush", rgb, [](context_t& c) { c.painter->setBrush(Qt::green); });
}

void tst_simpleStripChartPlainWay::drawsAsThePlainWayOnOddPainters()
{
    QFETCH(QImage::Format, format);
    QFETCH(oddity_t, oddity);
    random_t random(21);
    for (int round = 0; round < 12; ++round) {
        taste_t taste;
        taste.pointsPerPixel = random.oneOf<double>({0.2, 1.0, 10.0});
        taste.roughness = random.oneOf<double>({0.05, 0.3, 2.0});
        taste.zoom = random.oneOf<double>({1.0, 1.0, 4.0});
        if (random.chance(0.5)) {
            taste.gaps = taste.colorChanges = taste.odd = 0.02;
            taste.translucent = 0.3;
        }
        stripChartCurve_t curve;
        curve.addPoints(randomPoints(random, taste, -2.0, 17.0, 0.075));
        const points_t& points = record(curve).points;
        const auto drawn = [&](const auto& draw) {
            QImage picture(200, 120, format);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            context_t context{};
            context.painter = &painter;
            context.drawMinTime = 0.0;
            context.drawMaxTime = 15.0;
            context.minTime = 0.0;
            context.maxValue = 1.0 / taste.zoom;
            context.xScale = 200 / 15.0;
            context.yScale = 60.0 * taste.zoom;
            context.width = 200;
            context.height = 120;
            oddity(context);
            draw(context);
            painter.end();
            return picture;
        };
        const QImage actual = drawn([&](const context_t& context) {
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
        });
        const QImage wanted =
            drawn([&](const context_t& context) { drawPlainly(context, points, QColor(), 1.1); });
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

void tst_simpleStripChartPlainWay::drawsAsThePlainWayUnderSeveralRectangles_data()
{
    QTest::addColumn<bool>("byPainter");
    QTest::addColumn<bool>("byToolkit");
    QTest::newRow("set on the painter") << true << false;
    QTest::newRow("set by the toolkit") << false << true;
    QTest::newRow("set by both") << true << true;
}

// Rectangles of the clip reach, or lie, beyond the picture.
void tst_simpleStripChartPlainWay::drawsAsThePlainWayUnderSeveralRectangles()
{
    QFETCH(bool, byPainter);
    QFETCH(bool, byToolkit);
    random_t random(22);
    const QSize size(200, 120);
    const auto randomRegion = [&] {
        // The toolkit paints nothing that has no pixel of the picture.
        QRegion region(random.integer(0, 199), random.integer(0, 119), 20, 20);
        for (int i = random.integer(0, 4); i > 0; --i)
            region += QRect(random.integer(-150, 220), random.integer(-100, 130),
                            random.integer(1, 200), random.integer(1, 120));
        return region;
    };
    for (int round = 0; round < 200; ++round) {
        taste_t taste;
        taste.pointsPerPixel = random.oneOf<double>({0.1, 0.5, 3.0});
        taste.roughness = random.oneOf<double>({0.3, 2.0});
        stripChartCurve_t curve;
        curve.gapThreshold(100.0);
        curve.addPoints(randomPoints(random, taste, -2.0, 17.0, 0.075));
        const QRegion ofPainter = randomRegion();
        const QRegion ofToolkit = randomRegion();
        const auto drawn = [&](const auto& draw) {
            QImage picture(size, QImage::Format_RGB32);
            picture.fill(Qt::white);
            if (byToolkit)
                picture.paintEngine()->setSystemClip(ofToolkit);
            QPainter painter(&picture);
            painter.translate(5, -7);
            if (byPainter)
                painter.setClipRegion(ofPainter);
            draw(context_t{&painter, 0.0, 15.0, 0.0, 1.0, 200 / 15.0, 60.0, 200, 120});
            painter.end();
            return picture;
        };
        const QImage actual = drawn([&](const context_t& context) {
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
        });
        const QImage wanted = drawn([&](const context_t& context) {
            drawPlainly(context, record(curve).points, QColor(), 100.0);
        });
        QVERIFY2(actual == wanted, qPrintable(QStringLiteral("round %1: ").arg(round) +
                                              firstDifference(actual, wanted)));
    }
}

// Points come and go, the colour and the threshold change, bounds move: whatever the renderer
// remembers of former pictures has to follow.
void tst_simpleStripChartPlainWay::repaintsAsThePlainWayWhileTheCurveChanges()
{
    random_t random(31);
    for (int round = 0; round < 10; ++round) {
        stripChartCurve_t curve;
        plainCurve_t model;
        double duration = 40.0;
        curve.dataDuration(duration);
        model.duration = duration;
        double now = 0.0;
        context_t context = wholeContext(nullptr);
        for (int step = 0; step < 60; ++step) {
            taste_t taste;
            taste.pointsPerPixel = random.oneOf<double>({0.5, 5.0, 30.0});
            taste.roughness = random.oneOf<double>({0.05, 1.0});
            if (random.chance(0.3)) {
                taste.gaps = taste.odd = 0.002;
                taste.colorChanges = 0.01;
            }
            const double to = now + random.oneOf<double>({0.0, 0.1, 1.0, 5.0});
            const points_t batch = randomPoints(random, taste, now, to, 0.05);
            now = to;
            curve.addPoints(batch);
            model.addPoints(batch);
            switch (random.integer(0, 12)) {
            case 0:
                model.color = randomColor(random, taste);
                curve.color(model.color);
                break;
            case 1:
                model.threshold = random.oneOf<double>({0.01, 0.05, 0.2, 1.1, -1.0, nan_});
                curve.gapThreshold(model.threshold);
                break;
            case 2:
                model.duration = random.oneOf<double>({5.0, 20.0, 60.0});
                curve.dataDuration(model.duration);
                break;
            case 3:
                if (random.chance(0.3)) {
                    curve.clear();
                    model.clear();
                }
                break;
            case 4:
                context.maxValue = random.oneOf<double>({0.3, 1.0, 1.5});
                context.yScale = random.oneOf<double>({40.0, 50.0, 300.0});
                break;
            case 5:
                context.xScale = random.oneOf<double>({20.0, 20.0, 10.0, 55.0, -20.0});
                break;
            case 6:
                context.minTime = now - random.real(0.0, 30.0);
                break;
            default:
                context.minTime += random.oneOf<double>({0.0, 0.05, 1.0, 0.0123});
            }
            context.drawMinTime = context.minTime + random.oneOf<int>({0, 0, 50}) / context.xScale;
            context.drawMaxTime =
                context.minTime + random.oneOf<int>({300, 300, 100}) / context.xScale;
            QImage actual(300, 100, QImage::Format_RGB32);
            actual.fill(Qt::white);
            QImage wanted = actual;
            QPainter actualPainter(&actual);
            context.painter = &actualPainter;
            static_cast<simpleCurveRenderer_t*>(curve.renderer())->draw(context);
            actualPainter.end();
            QPainter wantedPainter(&wanted);
            context.painter = &wantedPainter;
            drawPlainly(context, model.points, model.color, model.threshold);
            wantedPainter.end();
            QVERIFY2(actual == wanted,
                     qPrintable(QStringLiteral("round %1, step %2: ").arg(round).arg(step) +
                                firstDifference(actual, wanted)));
        }
    }
}

void tst_simpleStripChartPlainWay::showsAsThePlainWidget_data()
{
    tastes();
}

namespace {

// A chart and the plain widget, both on the screen, with the same curves and the same past. Each is
// a window: QPainter rounds lines in another way where a widget is elsewhere in its window.
struct compared_t
{
    explicit compared_t(int curveCount)
    {
        std::vector<stripChartCurve_t*> made;
        for (int i = 0; i < curveCount; ++i)
            made.push_back(new stripChartCurve_t(nullptr));
        std::sort(made.begin(), made.end(), std::less<>()); // a chart draws in this order
        models.resize(made.size());
        for (std::size_t i = 0; i < made.size(); ++i) {
            chart.addCurve(made[i]);
            plain.addCurve(&models[i]);
        }
        curves = made;
        QObject::connect(&chart, &stripChart_t::timeBoundsChanged, &chart,
                         [this](double min, double max) {
                             heard << boundsSignal("timeBoundsChanged", min, max);
                         });
        QObject::connect(&chart, &stripChart_t::valueBoundsChanged, &chart,
                         [this](double min, double max) {
                             heard << boundsSignal("valueBoundsChanged", min, max);
                         });
        QObject::connect(&chart, &stripChart_t::valueAutoscaleChanged, &chart, [this](bool on) {
            heard << QStringLiteral("valueAutoscaleChanged(%1)").arg(on);
        });
    }

    bool show(const QSize& size)
    {
        for (QWidget* const window : {static_cast<QWidget*>(&chart), static_cast<QWidget*>(&plain)})
            window->resize(size);
        chart.move(0, 0);
        plain.move(0, 500);
        chart.show();
        plain.show();
        settle(); // or one would be told to paint itself once more, later than the other
        return chart.windowHandle()->isExposed() && plain.windowHandle()->isExposed();
    }

    /// What differs, if anything: signals since the last call, the pictures on the screen.
    QString difference()
    {
        const QStringList wanted = plain.takeSignals();
        const QStringList actual = std::exchange(heard, QStringList());
        if (actual != wanted)
            return "signals " + actual.join(u' ') + " instead of " + wanted.join(u' ');
        const QImage actualPicture = shown(chart);
        const QImage wantedPicture = shown(plain);
        if (actualPicture == wantedPicture)
            return QString();
        return firstDifference(actualPicture, wantedPicture);
    }

    stripChart_t chart{nullptr};
    plainChart_t plain;
    std::vector<stripChartCurve_t*> curves; // the chart's
    std::vector<plainCurve_t> models;
    QStringList heard;
};
} // namespace

void tst_simpleStripChartPlainWay::showsAsThePlainWidget()
{
    QFETCH(taste_t, taste);
    random_t random(41);
    compared_t both(random.integer(1, 3));
    QVERIFY(both.show(QSize(random.integer(100, 400), random.integer(50, 200))));
    double span = 10.0;
    double now = 100.0;
    const double lead = random.oneOf<double>({0.0, 0.0, 3.0, 6.0}); // the window's, over the points
    const auto timeBounds = [&](double min, double max) {
        both.chart.timeBounds(min, max);
        both.plain.timeBounds(min, max);
    };
    const auto scrollTime = [&](double time) {
        both.chart.scrollTime(time);
        both.plain.scrollTime(time);
    };
    timeBounds(now - span, now);
    for (int frame = 0; frame < 150; ++frame) {
        for (int action = random.integer(1, 6); action > 0; --action) {
            const auto which = static_cast<std::size_t>(
                random.integer(0, static_cast<int>(both.curves.size()) - 1));
            stripChartCurve_t& curve = *both.curves[which];
            plainCurve_t& model = both.models[which];
            switch (random.integer(0, 60)) {
            case 0:
                model.threshold = random.oneOf<double>({0.05, 0.5, 1.1});
                curve.gapThreshold(model.threshold);
                break;
            case 1:
                model.duration = random.oneOf<double>({5.0, 20.0, 7200.0});
                curve.dataDuration(model.duration);
                break;
            case 2:
                curve.clear();
                model.clear();
                break;
            case 3: {
                const QColor color = QColor::fromHsv(random.integer(0, 359), 100, 255);
                both.chart.setBackgroundColor(color);
                both.plain.setBackgroundColor(color);
                break;
            }
            case 4: {
                const double middle = random.real(-0.5, 0.5);
                const double half = random.real(0.2, 1.5) / taste.zoom;
                both.chart.valueBounds(middle - half, middle + half);
                both.plain.valueBounds(middle - half, middle + half);
                break;
            }
            case 5:
            case 6: {
                const bool enable = random.chance(0.7);
                both.chart.autoscaleValue(enable);
                both.plain.autoscaleValue(enable);
                break;
            }
            case 7: {
                const double range = random.oneOf<double>({0.01, 0.5, 2.0});
                both.chart.minValueRange(range);
                both.plain.minValueRange(range);
                break;
            }
            case 8:
                span = random.oneOf<double>({1.0, 10.0, 33.0});
                timeBounds(now - span, now);
                break;
            case 9:
                scrollTime(now - 2.5 * span);
                break;
            case 10: {
                QSize size(random.integer(60, 400), random.integer(50, 200));
                if (random.chance(0.5)) // hardly changes the time scale
                    size.setWidth(both.chart.width() + random.oneOf<int>({-2, -1, 1, 2}));
                both.chart.resize(size);
                both.plain.resize(size);
                break;
            }
            default:
                if (random.chance(0.5)) {
                    const double to = now + random.oneOf<double>({0.01, 0.1, 0.1, 0.5, 2.0});
                    const points_t batch =
                        randomPoints(random, taste, std::max(now - 0.2, model.timeMax()), to,
                                     span / both.chart.width());
                    if (batch.size() < 30) {
                        for (const auto& point : batch) {
                            curve.addPoint(point.time, point.value, point.color);
                            model.addPoint(point.time, point.value, point.color);
                        }
                    } else {
                        curve.addPoints(batch);
                        model.addPoints(batch);
                    }
                    now = std::max(now, to);
                } else {
                    scrollTime(now + lead - random.oneOf<double>({0.0, 0.0, 0.3}));
                }
            }
        }
        const QString difference = both.difference();
        QVERIFY2(difference.isEmpty(),
                 qPrintable(QStringLiteral("frame %1: ").arg(frame) + difference));
    }
}

ZORBIN_TEST_MAIN(tst_simpleStripChartPlainWay, QApplication)
#include "tst_simpleStripChartPlainWay.moc"
