#include "childProcess.h"
#include "glCurveRenderer.h"
#include "glPlot.h"
#include "glStripChartImpl.h"
#include "messageRecorder.h"
#include "paintLog.h"
#include "pictures.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"

#include <QMouseEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSignalSpy>
#include <cmath>
#include <cstdio>
#include <limits>

using namespace gl_tests;
using namespace zorbin_qt_gui;

static const double inf = std::numeric_limits<double>::infinity();

namespace {

// Calls what Qt calls when the size has changed.
void resizeGl(stripChart_t& chart, int width, int height)
{
    struct opened_t : glStripChartWidget_t
    {
        using glStripChartWidget_t::resizeGL;
    };
    (canvasOf(chart).*(&opened_t::resizeGL))(width, height);
}

// The size of the viewport in the current context.
QSize viewportSize()
{
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    return {viewport[2], viewport[3]};
}

} // namespace

/// Strip charts that draw with OpenGL: the drawing widget, and what holds without a context.
class tst_glStripChart : public glTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Without a context.
    void drawsNoCurvesOfTheOtherBackEnd();
    void warnsOnceWithoutAContext_data();
    void warnsOnceWithoutAContext();
    void staysEmptyWithoutAContext();

    // Sizes of segments, hooks of a renderer without a chart.
    void sizesSegmentsByTheNumberOfPoints_data();
    void sizesSegmentsByTheNumberOfPoints();
    void needsNoChartForItsHooks();
    void ignoresWidgetsThatAreNoOpenGlCharts();

    // The drawing widget.
    void makesTheBackEndOfTheProcess();
    void knowsTheVendorsThatItSupports();
    void isChosenForTheVendorsThatItSupports_data();
    void isChosenForTheVendorsThatItSupports();
    void tracksThePointerAndExpands();
    void takesTheCanvasColourWhenTheContextIsSetUp();
    void blendsAndShadesFlat();
    void putsTheCentreIntoTheMiddle();
    void tellsItsSize();
    void takesTheSizeThatItIsTold();
    void takesTheSizeThatItIsToldOnADenseDisplay_data();
    void takesTheSizeThatItIsToldOnADenseDisplay();
    void leavesTheMatricesAndArraysAsTheyWere();
    void repaintsAllOfItselfForEachChange();
    void scrollsWithoutSnappingToPixels();
    void tellsWhereThePointerIs();
};

static int makeThreeCharts()
{
    for (int i = 0; i < 3; ++i) {
        stripChart_t chart(nullptr);
        chart.resize(100, 50);
        auto* const curve = new stripChartCurve_t(nullptr);
        chart.addCurve(curve);
        chart.show();
        curve->addPoints(levelPoints(500));
        chart.timeBounds(0.0, 50.0);
        processEvents();
        curve->clear();
        curve->addPoints(levelPoints(500));
        chart.hide();
        chart.show();
        processEvents();
    }
    return 0;
}

// Such contexts lack the fixed functions. In Qt 6 the charts ask for another one themselves.
static int makeThreeChartsInTheCoreProfile()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QGLFormat format;
    format.setVersion(3, 3);
    format.setProfile(QGLFormat::CoreProfile);
    QGLFormat::setDefaultFormat(format);
#endif
    return makeThreeCharts();
}

// The other way round takes a process that has chosen the other back end.
static int showSimpleCurvesInAGlChart()
{
    qputenv("ZORBIN_QT_STRIPCHART_TYPE", "simple");
    glStripChartImpl_t chart(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    chart.widget()->resize(100, 50);
    chart.widget()->show();
    curve->addPoints(levelPoints(500));
    chart.timeBounds(0.0, 50.0);
    processEvents();
    return qobject_cast<simpleCurveRenderer_t*>(curve->renderer()) != nullptr ? 0 : 1;
}

void tst_glStripChart::drawsNoCurvesOfTheOtherBackEnd()
{
    simpleStripChartImpl_t chart;
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    chart.canvasColor(Qt::darkGreen);
    chart.widget()->resize(100, 50);
    curve->addPoints(levelPoints(500));
    chart.timeBounds(0.0, 50.0);
    QImage blank(100, 50, QImage::Format_RGB32);
    blank.fill(Qt::darkGreen);
    QCOMPARE(firstDifference(snapshot(*chart.widget()), blank), QString());

    const childOutcome_t child = runChild("simple curves in a gl chart");
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
}

void tst_glStripChart::warnsOnceWithoutAContext_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QStringList>("environment");
    const QString plain = "three charts";
    QTest::newRow("X without GLX")
        << plain << QStringList{"QT_QPA_PLATFORM=xcb", "QT_XCB_GL_INTEGRATION=none"};
    QTest::newRow("minimal") << plain << QStringList{"QT_QPA_PLATFORM=minimal"};
    QTest::newRow("offscreen") << plain
                               << QStringList{"QT_QPA_PLATFORM=offscreen", "DISPLAY",
                                              "LSAN_OPTIONS=detect_leaks=0"};
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTest::newRow("core profile") << QString("three charts in the core profile") << QStringList();
#endif
}

void tst_glStripChart::warnsOnceWithoutAContext()
{
    QFETCH(QString, scenario);
    QFETCH(QStringList, environment);
    const childOutcome_t child = runChild(scenario, environment);
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said.count(QStringLiteral("warning: ") + QLatin1String(noContextWarning)), 1);
}

void tst_glStripChart::staysEmptyWithoutAContext()
{
    if (hasContext)
        QSKIP("There is a context here; warnsOnceWithoutAContext() looks at the other case.");
    plotted_t plot;
    QVERIFY(!glStripChartImpl_t::supported());
    plot.curve->addPoints(levelPoints(1000));
    QCOMPARE(plot.curve->timeMax(), 0.025 + 999 * 0.1);
    QVERIFY(!rendererOf(*plot.curve).createGLSegment(0, 10));
    plot.chart.resize(200, 80);
    processEvents();
    QCOMPARE(implOf(plot.chart).yScaleFactor(), 8.0);
    plot.chart.autoscaleValue(true);
    QCOMPARE(plot.chart.maxValueBound() + plot.chart.minValueBound(), 0.1);
    plot.curve->clear();
    delete plot.curve;
    QCOMPARE(implOf(plot.chart).curves().size(), std::size_t(0));
}

void tst_glStripChart::sizesSegmentsByTheNumberOfPoints_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<unsigned>("size");
    QTest::newRow("none") << 0 << 100U;
    QTest::newRow("one") << 1 << 100U;
    QTest::newRow("a thousand") << 1000 << 100U;
    QTest::newRow("one more") << 1001 << 101U; // sqrt(10010) = 100.05
    QTest::newRow("ten thousand") << 10000 << 317U;
    QTest::newRow("a whole root") << 16000 << 400U;
    QTest::newRow("beyond a whole root") << 16001 << 401U;
    QTest::newRow("a hundred thousand") << 100000 << 1000U;
    QTest::newRow("a million") << 1000000 << 3163U;
}

void tst_glStripChart::sizesSegmentsByTheNumberOfPoints()
{
    QFETCH(int, points);
    QFETCH(unsigned, size);
    stripChartCurve_t curve;
    curve.dataDuration(inf);
    for (int i = 0; i < points; ++i)
        record(curve).points.emplace_back(i, 0.0, QColor());
    glCurveRenderer_t& renderer = rendererOf(curve);
    QCOMPARE(renderer.segmentSize(), 100U);
    renderer.calcSegmentThreshold();
    QCOMPARE(renderer.segmentSize(), size);
}

void tst_glStripChart::needsNoChartForItsHooks()
{
    messageRecorder_t messages;
    stripChartCurve_t curve;
    curve.dataDuration(20.0);
    for (int i = 0; i < 10; ++i)
        curve.addPoints(levelPoints(150, 49, 15.0 * i + 0.025));
    glCurveRenderer_t& renderer = rendererOf(curve);
    QVERIFY(!renderer.createGLSegment(0, 10));
    renderer.removeGLSegment(nullptr);
    glCurveRenderer_t::glSegment_t segment{1};
    renderer.removeGLSegment(&segment); // not ours to delete: there is no chart
    renderer.draw(0.0, 0.0);
    renderer.segmentRemoved(0, 100, 12345); // unknown
    renderer.prepareToDelete();
    renderer.prepareToDelete();
    curve.clear();
    QCOMPARE(messages.texts(), QStringList());
}

void tst_glStripChart::ignoresWidgetsThatAreNoOpenGlCharts()
{
    plotted_t plot;
    plot.curve->addPoints(levelPoints(250));
    const int lists = hasContext ? listCount(plot.chart) : 0;
    QWidget other;
    plot.curve->renderer()->chart(&other);
    plot.curve->renderer()->chart(nullptr);
    plot.curve->renderer()->chart(&canvasOf(plot.chart)); // the same
    QCOMPARE(implOf(plot.chart).curves(), std::set<stripChartCurve_t*>{plot.curve});
    if (hasContext)
        QCOMPARE(listCount(plot.chart), lists);
}

void tst_glStripChart::makesTheBackEndOfTheProcess()
{
    stripChart_t chart(nullptr);
    QVERIFY(chart.findChild<glStripChartImpl_t*>());
    QCOMPARE(implOf(chart).widget(), &canvasOf(chart));
    stripChartCurve_t curve;
    QVERIFY(qobject_cast<glCurveRenderer_t*>(curve.renderer()));
}

void tst_glStripChart::knowsTheVendorsThatItSupports()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    contextOf(plot.chart);
    const std::string vendor = reinterpret_cast<const char*>(glGetString(GL_VENDOR));
    QCOMPARE(glStripChartImpl_t::supported(),
             vendor == "NVIDIA Corporation" || vendor == "nouveau");
}

static int tellVendorAndChoice()
{
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return 1;
    std::printf("%s\n", reinterpret_cast<const char*>(glGetString(GL_VENDOR)));
    context.doneCurrent();
    qunsetenv("ZORBIN_QT_STRIPCHART_TYPE");
    std::printf("%s\n", stripChartImpl_t::implementationType().c_str());
    return 0;
}

void tst_glStripChart::isChosenForTheVendorsThatItSupports_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("NVIDIA Corporation") << "gl";
    QTest::newRow("nouveau") << "gl";
    QTest::newRow("Nouveau") << "simple";
    QTest::newRow("NVIDIA") << "simple";
    QTest::newRow("Mesa") << "simple";
}

void tst_glStripChart::isChosenForTheVendorsThatItSupports()
{
    REQUIRE_CONTEXT();
    QFETCH(QString, type);
    const QString vendor = QString::fromLatin1(QTest::currentDataTag());
    const childOutcome_t child = runChild("vendor and choice", {"force_gl_vendor=" + vendor});
    QCOMPARE(child.exitCode, 0);
    if (child.said.value(0) != vendor)
        QSKIP("Only Mesa's drivers say what they are told to.");
    QCOMPARE(child.said, (QStringList{vendor, type}));
}

void tst_glStripChart::tracksThePointerAndExpands()
{
    glStripChartImpl_t impl(nullptr);
    const QWidget& canvas = *impl.widget();
    QVERIFY(qobject_cast<const glStripChartWidget_t*>(&canvas));
    QVERIFY(!canvas.parent());
    QVERIFY(canvas.hasMouseTracking());
    QCOMPARE(canvas.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(canvas.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

// Deliberate: the colour is taken once.
void tst_glStripChart::takesTheCanvasColourWhenTheContextIsSetUp()
{
    REQUIRE_CONTEXT();
    plotted_t plot(QColor(255, 51, 102, 204));
    plot.chart.setBackgroundColor(Qt::blue);
    QCOMPARE(implOf(plot.chart).canvasColor(), QColor(Qt::blue));
    const QImage picture = drawn(plot.chart);
    QCOMPARE(picture.pixelColor(0, 0), QColor(255, 51, 102));
    QCOMPARE(picture.pixelColor(299, 99), QColor(255, 51, 102));
    float color[4] = {};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, color);
    QCOMPARE(color[0], 1.0F);
    QCOMPARE(color[1], 0.2F);
    QCOMPARE(color[2], 0.4F);
    QCOMPARE(color[3], 0.8F);
}

void tst_glStripChart::blendsAndShadesFlat()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    contextOf(plot.chart);
    const auto integer = [](GLenum name) {
        GLint value = -1;
        glGetIntegerv(name, &value);
        return value;
    };
    QVERIFY(glIsEnabled(GL_BLEND));
    QCOMPARE(integer(GL_BLEND_SRC), GL_SRC_ALPHA);
    QCOMPARE(integer(GL_BLEND_DST), GL_ONE_MINUS_SRC_ALPHA);
    QCOMPARE(integer(GL_SHADE_MODEL), GL_FLAT);
}

void tst_glStripChart::putsTheCentreIntoTheMiddle()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.chart.resize(200, 80);
    processEvents();
    contextOf(plot.chart);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    QCOMPARE(viewport[0], 0);
    QCOMPARE(viewport[1], 0);
    QCOMPARE(viewport[2], 200);
    QCOMPARE(viewport[3], 80);
    float projection[16] = {};
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    const float wanted[16] = {0.01F, 0, 0, 0, 0, 0.025F, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1};
    for (int i = 0; i < 16; ++i)
        QVERIFY2(std::abs(projection[i] - wanted[i]) < 1e-7F, qPrintable(QString::number(i)));
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    QCOMPARE(mode, GL_MODELVIEW);

    plot.chart.timeBounds(100.0, 110.0); // 20 pixels a second again
    plot.chart.valueBounds(-4.0, 4.0);   // 10 pixels a unit
    plot.curve->addPoints({{105.025, 0.05, Qt::red}, {105.525, 0.05, Qt::red}});
    QCOMPARE(paintedColumns(drawn(plot.chart), 39), QString("100-109"));
}

void tst_glStripChart::tellsItsSize()
{
    plotted_t plot;
    plot.chart.resize(240, 60);
    processEvents();
    QCOMPARE(implOf(plot.chart).yScaleFactor(), 6.0);
    QCOMPARE(implOf(plot.chart).xScaleFactor(), 20.0); // follows the next time bounds
    plot.chart.timeBounds(0.0, 24.0);
    QCOMPARE(implOf(plot.chart).xScaleFactor(), 10.0);
}

void tst_glStripChart::takesTheSizeThatItIsTold()
{
    plotted_t plot; // 300 x 100
    resizeGl(plot.chart, 120, 40);
    QCOMPARE(implOf(plot.chart).yScaleFactor(), 4.0);
    plot.chart.timeBounds(0.0, 12.0);
    QCOMPARE(implOf(plot.chart).xScaleFactor(), 10.0);
    if (!hasContext)
        return;
    contextOf(plot.chart);
    resizeGl(plot.chart, 160, 50);
    QCOMPARE(viewportSize(), QSize(160, 50));
    float projection[16] = {};
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    QCOMPARE(projection[0], 2.0F / 160.0F);
    QCOMPARE(projection[5], 2.0F / 50.0F);
}

// Prints what a chart takes its size for when it is shown, and when Qt tells it another one; and
// the size in the context.
static int tellSizesOnADenseDisplay()
{
    stripChart_t chart(nullptr);
    chart.resize(103, 61);
    if (!show(chart))
        return 1;
    chart.valueBounds(0.0, 1.0);
    const auto tell = [&] {
        chart.timeBounds(chart.minTimeBound() - 1.0, chart.minTimeBound());
        contextOf(chart);
        const QSize viewport = viewportSize();
        std::printf("%g x %g, %d x %d\n", implOf(chart).xScaleFactor(),
                    implOf(chart).yScaleFactor(), viewport.width(), viewport.height());
    };
    tell();
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    resizeGl(chart, static_cast<int>(80 * chart.devicePixelRatioF()),
             static_cast<int>(40 * chart.devicePixelRatioF()));
#else
    resizeGl(chart, 80, 40);
#endif
    tell();
    return 0;
}

void tst_glStripChart::takesTheSizeThatItIsToldOnADenseDisplay_data()
{
    QTest::addColumn<QString>("factor");
    QTest::addColumn<QString>("shown"); // device pixels of 103 x 61
    QTest::addColumn<QString>("told");  // and of 80 x 40
    QTest::newRow("2") << "2"
                       << "206 x 122"
                       << "160 x 80";
    // 128.75 x 76.25; Qt 6 sets a viewport of its own for each repaint and drops the fractions.
    const bool isCut = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);
    QTest::newRow("1.25") << "1.25" << (isCut ? "128 x 76" : "129 x 76") << "100 x 50";
}

void tst_glStripChart::takesTheSizeThatItIsToldOnADenseDisplay()
{
    REQUIRE_CONTEXT();
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QSKIP("On the offscreen platform the viewport was seen to ignore the scale; why is not "
              "known.");
    QFETCH(QString, factor);
    QFETCH(QString, shown);
    QFETCH(QString, told);
    const childOutcome_t child =
        runChild("sizes on a dense display", {"QT_SCALE_FACTOR=" + factor});
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said, (QStringList{"103 x 61, " + shown, "80 x 40, " + told}));
}

void tst_glStripChart::leavesTheMatricesAndArraysAsTheyWere()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->dataDuration(30.0);
    for (int i = 0; i < 5; ++i)
        plot.curve->addPoints(levelPoints(110, 49, i * 11.0 + 0.025)); // all three zones
    QVERIFY(record(*plot.curve).outgoingCount > 0);
    QVERIFY(!record(*plot.curve).segments.empty());
    QVERIFY(record(*plot.curve).incomingCount > 0);
    plot.chart.timeBounds(30.0, 60.0);
    drawn(plot.chart);
    GLint depth = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    QCOMPARE(depth, 1);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &depth);
    QCOMPARE(depth, 1);
    QVERIFY(!glIsEnabled(GL_VERTEX_ARRAY));
    QVERIFY(!glIsEnabled(GL_COLOR_ARRAY));
    float matrix[16] = {};
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
    const float wanted[16] = {10, 0, 0, 0, 0, 10, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (int i = 0; i < 16; ++i)
        QCOMPARE(matrix[i], wanted[i]);
    QCOMPARE(glGetError(), GLenum(GL_NO_ERROR));
}

void tst_glStripChart::repaintsAllOfItselfForEachChange()
{
    plotted_t plot;
    paintLog_t paints(&canvasOf(plot.chart));
    const QRegion all(0, 0, 300, 100);
    const QRegion none;
    paints.take();
    QCOMPARE(paints.take(), none);
    plot.chart.timeBounds(1.0, 16.0);
    QCOMPARE(paints.take(), all);
    plot.chart.timeBounds(1.0, 16.0);
    QCOMPARE(paints.take(), none);
    plot.chart.scrollTime(17.0);
    QCOMPARE(paints.take(), all);
    plot.chart.valueBounds(-4.0, 5.0);
    QCOMPARE(paints.take(), all);
    plot.chart.valueBounds(-4.0, 5.0);
    QCOMPARE(paints.take(), none);
    plot.curve->addPoint(10.0, 0.0);
    QCOMPARE(paints.take(), all);
    plot.curve->addPoint(10.0, 0.0); // dropped
    QCOMPARE(paints.take(), none);
    plot.curve->addPoint(1000.0, 0.0); // far outside, but the times aren't looked at
    QCOMPARE(paints.take(), all);
    plot.curve->clear();
    QCOMPARE(paints.take(), all);
    plot.curve->color(Qt::blue);
    QCOMPARE(paints.take(), none);
    implOf(plot.chart).canvasColor(Qt::blue);
    QCOMPARE(paints.take(), none);
}

void tst_glStripChart::scrollsWithoutSnappingToPixels()
{
    plotted_t plot;
    plot.chart.scrollTime(15.013);
    QCOMPARE(plot.chart.maxTimeBound(), 15.013);
    QCOMPARE(plot.chart.minTimeBound(), 15.013 - 15.0);
    plot.chart.scrollTime(10.0);
    QCOMPARE(plot.chart.maxTimeBound(), 10.0);
}

void tst_glStripChart::tellsWhereThePointerIs()
{
    plotted_t plot;
    glStripChartWidget_t& canvas = canvasOf(plot.chart);
    QSignalSpy positions(&plot.chart, &stripChart_t::mousePos);
    QMouseEvent move(QEvent::MouseMove, QPointF(60, 20), canvas.mapToGlobal(QPoint(60, 20)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &move);
    QCOMPARE(positions, (QList<QVariantList>{{3.0, 3.0}}));
    positions.clear();
    if (hasContext) { // repaints tell again
        plot.chart.timeBounds(10.0, 25.0);
        processEvents();
        QCOMPARE(positions, (QList<QVariantList>{{13.0, 3.0}}));
        positions.clear();
    }
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&canvas, &leave);
    QCOMPARE(positions.size(), 1);
    QVERIFY(std::isnan(positions.first().at(0).toDouble()));
    QVERIFY(std::isnan(positions.first().at(1).toDouble()));
    positions.clear();
    if (hasContext) {
        canvas.update();
        processEvents();
        QCOMPARE(positions.size(), 1);
        QVERIFY(std::isnan(positions.first().at(0).toDouble()));
    }
}

int main(int argc, char** argv)
{
    qputenv("ZORBIN_QT_STRIPCHART_TYPE", "gl");
    tst_glStripChart tests;
    return runTestsOrScenario(
        argc, argv, tests,
        {{"simple curves in a gl chart", showSimpleCurvesInAGlChart},
         {"vendor and choice", tellVendorAndChoice},
         {"sizes on a dense display", tellSizesOnADenseDisplay},
         {"three charts", makeThreeCharts},
         {"three charts in the core profile", makeThreeChartsInTheCoreProfile}});
}
#include "tst_glStripChart.moc"
