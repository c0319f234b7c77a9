#include "childProcess.h"
#include "glCurveRenderer.h"
#include "glStripChartImpl.h"
#include "glStripChartWidget.h"
#include "messageRecorder.h"
#include "paintLog.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"
#include "simpleCurveRenderer.h"
#include "simpleStripChartImpl.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "testCase.h"

#include <QMouseEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <malloc.h>
#include <memory>
#include <new>
#include <qopengl.h>
#include <utility>
#include <vector>

using namespace zorbin_qt_gui;
using point_t = stripChartCurve_t::point_t;
using points_t = std::deque<point_t>;

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

static const char noContextWarning[] =
    "glStripChartImpl_t::glStripChartImpl_t: No usable OpenGL context - Charts stay empty";

// Whether the platform gives contexts; initTestCase() finds out.
static bool hasContext = false;

#define REQUIRE_CONTEXT()                                                                          \
    do {                                                                                           \
        if (!hasContext)                                                                           \
            QSKIP("This platform has no OpenGL context to draw in; what holds without one is "     \
                  "tested by staysEmptyWithoutAContext() and the functions on records.");          \
    } while (false)

// Bytes taken by new and not given back by delete, here and in the library.
static std::atomic<qint64> allocated{0};

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    allocated += static_cast<qint64>(malloc_usable_size(block));
    return block;
}

void* operator new(std::size_t size)
{
    void* const block = operator new(size, std::nothrow);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept
{
    allocated -= static_cast<qint64>(malloc_usable_size(block));
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept
{
    operator delete(block);
}

namespace {

using chartUse_t = std::function<void(stripChart_t*)>;

glStripChartWidget_t& canvasOf(stripChart_t& chart)
{
    return *chart.findChild<glStripChartWidget_t*>();
}

glStripChartImpl_t& implOf(stripChart_t& chart)
{
    return *chart.findChild<glStripChartImpl_t*>();
}

glCurveRenderer_t& rendererOf(stripChartCurve_t& curve)
{
    return *qobject_cast<glCurveRenderer_t*>(curve.renderer());
}

QOpenGLContext* contextOf(stripChart_t& chart)
{
    canvasOf(chart).makeCurrent();
    return QOpenGLContext::currentContext();
}

void processEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

// What the chart's context holds.
QImage inContext(stripChart_t& chart)
{
    glStripChartWidget_t& canvas = canvasOf(chart);
    canvas.makeCurrent();
    QImage picture(canvas.size(), QImage::Format_RGBX8888);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                 picture.bits());
    return picture.mirrored().convertToFormat(QImage::Format_RGB32);
}

// The same once all that is due has been painted.
QImage drawn(stripChart_t& chart)
{
    processEvents();
    return inContext(chart);
}

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

bool show(stripChart_t& chart)
{
    chart.show();
    if (!QTest::qWaitForWindowExposed(&chart, patienceMs()))
        return false;
    processEvents();
    return true;
}

// The display lists in the current context.
QList<GLuint> listNames()
{
    constexpr GLuint namesUsed = 20000; // far more than any test here takes
    QList<GLuint> names;
    for (GLuint name = 1; name <= namesUsed; ++name) {
        if (glIsList(name) == GL_TRUE)
            names << name;
    }
    return names;
}

int listCount()
{
    return static_cast<int>(listNames().size());
}

int listCount(stripChart_t& chart)
{
    canvasOf(chart).makeCurrent();
    return listCount();
}

// Sees the display lists of a chart, also when its own context is gone.
class witness_t
{
public:
    explicit witness_t(stripChart_t& chart)
    {
        QOpenGLContext* const watched = contextOf(chart);
        m_context.setFormat(watched->format());
        m_context.setShareContext(watched);
        m_surface.setFormat(watched->format());
        m_surface.create();
        m_isValid = m_context.create() && QOpenGLContext::areSharing(&m_context, watched);
    }

    bool isValid() const { return m_isValid; }

    /// -1 when the context can't be asked.
    int lists()
    {
        if (!m_context.makeCurrent(&m_surface))
            return -1;
        const int count = listCount();
        m_context.doneCurrent();
        return count;
    }

private:
    QOpenGLContext m_context;
    QOffscreenSurface m_surface;
    bool m_isValid = false;
};

// A chart of 300 x 100 pixels, 20 pixels a second from 0 s to 15 s, 10 pixels a unit from -5 to 5,
// on white, with one red curve. A point at time (x + 0.5) / 20 and value (y + 0.5) / 10 - 5 is in
// the middle of the pixel x columns from the left and y rows from the bottom.
struct plotted_t
{
    explicit plotted_t(QColor canvas = Qt::white) : curve(new stripChartCurve_t(nullptr))
    {
        chart.resize(300, 100);
        chart.setBackgroundColor(canvas);
        chart.addCurve(curve);
        curve->color(Qt::red);
        curve->gapThreshold(1.5);
        if (!show(chart))
            qFatal("the chart didn't get on screen");
        chart.timeBounds(0.0, 15.0);
        chart.valueBounds(-5.0, 5.0);
        processEvents();
    }

    static double time(int column) { return (column + 0.5) / 20; }
    /// \p row counts from the top.
    static double value(int row) { return (99 - row + 0.5) / 10 - 5; }
    static point_t at(int column, int row) { return {time(column), value(row), Qt::green}; }

    QImage blankCanvas() const
    {
        QImage picture(chart.size(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        return picture;
    }

    stripChart_t chart{nullptr};
    stripChartCurve_t* const curve; // the chart's
};

// A point in every second column of one row, 0.1 s apart.
points_t levelPoints(int count, int row = 49, double from = 0.025)
{
    points_t points;
    for (int i = 0; i < count; ++i)
        points.emplace_back(from + i * 0.1, plotted_t::value(row), Qt::green);
    return points;
}

void fillRow(QImage* picture, int from, int end, int row, QColor color)
{
    QPainter(picture).fillRect(from, row, end - from, 1, color);
}

// The columns [from, end) of a row that aren't white, e.g. "40-59 80-99".
QString paintedColumns(const QImage& picture, int row)
{
    QStringList runs;
    int begin = -1;
    for (int x = 0; x <= picture.width(); ++x) {
        const bool isPainted =
            x < picture.width() && picture.pixelColor(x, row) != QColor(Qt::white);
        if (isPainted && begin < 0)
            begin = x;
        if (!isPainted && begin >= 0)
            runs << QStringLiteral("%1-%2").arg(std::exchange(begin, -1)).arg(x - 1);
    }
    return runs.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(chartUse_t)

/// Deletes what it is given, from a slot.
class deleter_t : public QObject
{
    Q_OBJECT

public:
    explicit deleter_t(QObject* object) : m_object(object) {}

public Q_SLOTS:
    void deleteIt() { delete m_object; }

private:
    const QPointer<QObject> m_object;
};

class tst_glStripChart : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

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

    // Display lists.
    void keepsOneListPerSegment();
    void drawsAgainWithoutNewLists();
    void makesListsThatAreMissing();
    void survivesRunningOutOfLists();
    void makesSegmentsOnRequest();
    void movesCurvesBetweenCharts();
    void takesUpACurveWhoseChartIsGone();
    void releasesListsInEveryOrder_data();
    void releasesListsInEveryOrder();
    void keepsDrawingAfterBeingHiddenAndReparented();
    void drawsAgainInAnotherContext();
    void makesNoListsWithoutAWindow();
    void freesTheArraysOfLoosePoints();
    void hasForgottenACurveBeforeItsEndIsAnnounced_data();
    void hasForgottenACurveBeforeItsEndIsAnnounced();
    void repaintsWhenACurveIsDeleted();
    void mayBeDeletedLaterBySlotsOfItsSignals_data();
    void mayBeDeletedLaterBySlotsOfItsSignals();
    void losesACurveToSlotsOfSignalsByQt_data();
    void losesACurveToSlotsOfSignalsByQt();
    void leavesNothingBehindAfterAHundredCharts();
    void survivesChangesAtRandom();

    // Beside the painter.
    void showsTheSameAsThePainter_data();
    void showsTheSameAsThePainter();
};

// Whether contexts must be had here: X servers give them, unless Qt is told not to ask.
static bool isContextExpected()
{
    return QGuiApplication::platformName() == QLatin1String("xcb") &&
           qgetenv("QT_XCB_GL_INTEGRATION") != "none";
}

void tst_glStripChart::initTestCase()
{
    QCOMPARE(stripChartImpl_t::implementationType(), std::string("gl"));
    messageRecorder_t messages;
    const stripChart_t chart(nullptr);
    hasContext = !messages.texts().contains(QString::fromLatin1(noContextWarning));
    if (isContextExpected())
        QCOMPARE(messages.texts(), QStringList());
}

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
        QSKIP("The offscreen platform's OpenGL keeps the viewport that its first surface had.");
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

void tst_glStripChart::leavesAPlainCanvas()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    QCOMPARE(firstDifference(drawn(plot.chart), plot.blankCanvas()), QString());
}

void tst_glStripChart::showsWhatItDrew()
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

void tst_glStripChart::grabsWhatItDrew()
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

void tst_glStripChart::drawsNothingForASinglePoint()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints({plotted_t::at(100, 50)});
    QCOMPARE(firstDifference(drawn(plot.chart), plot.blankCanvas()), QString());
}

// Deliberate: the points' own colours don't show.
void tst_glStripChart::drawsLinesInTheColourOfTheCurve()
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

void tst_glStripChart::fadesLooseLinesAcrossGaps()
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
void tst_glStripChart::fadesLinesOfSegmentsAcrossGaps()
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
void tst_glStripChart::drawsTheLineToTheIncomingPointsAtFullOpacity()
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

void tst_glStripChart::drawsTheLineFromTheOutgoingPoints_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("green");
    QTest::newRow("within the threshold") << 1.0 << 0;
    QTest::newRow("across a gap") << 3.0 << 192;
}

void tst_glStripChart::drawsTheLineFromTheOutgoingPoints()
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

void tst_glStripChart::interruptsTheLineFromTheOutgoingPointsAtNaN()
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

void tst_glStripChart::drawsWithoutHolesWhilePointsAgeOut()
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
void tst_glStripChart::givesEachLooseLineOneColourAlsoWhenShadedSmoothly()
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
void tst_glStripChart::drawsAllSegmentsUnderAnyMatrix()
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

void tst_glStripChart::takesANewColourAtTheNextDraw()
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

void tst_glStripChart::forgetsNoColourBetweenTwoDraws()
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

void tst_glStripChart::interruptsTheLineAtNaN_data()
{
    QTest::addColumn<int>("before"); // points
    QTest::newRow("loose") << 0;
    QTest::newRow("first of a segment") << 100;
    QTest::newRow("second of a segment") << 99;
    QTest::newRow("last of a segment") << 1;
    QTest::newRow("inside of a segment") << 50;
    QTest::newRow("first of the loose ones") << 200;
}

void tst_glStripChart::interruptsTheLineAtNaN()
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

void tst_glStripChart::drawsToTheEdgeForInfinities_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("isUp");
    QTest::newRow("infinity") << inf << true;
    QTest::newRow("minus infinity") << -inf << false;
    QTest::newRow("largest") << std::numeric_limits<double>::max() << true;
    QTest::newRow("least") << std::numeric_limits<double>::lowest() << false;
}

void tst_glStripChart::drawsToTheEdgeForInfinities()
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

void tst_glStripChart::survivesAnythingInItsPoints()
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

void tst_glStripChart::placesPointsExactly_data()
{
    QTest::addColumn<int>("right"); // index of the last point in view
    QTest::newRow("loose points") << 4999;
    QTest::newRow("segments") << 2500;
    QTest::newRow("outgoing points") << 1300;
}

// A spike every 10 ms, one pixel for each ms, seconds since 1970: 1.8e9 s is beyond the whole
// numbers of a float, and even of its steps of 128 s.
void tst_glStripChart::placesPointsExactly()
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

void tst_glStripChart::keepsOneListPerSegment()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints(levelPoints(100));
    QCOMPARE(listCount(plot.chart), 0);
    plot.curve->addPoint(11.0, 0.0);
    QCOMPARE(listCount(plot.chart), 1);
    plot.curve->addPoints(levelPoints(400, 49, 12.0));
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(5));
    QCOMPARE(listCount(plot.chart), 5);
    plot.curve->dataDuration(30.0); // prunes up to 21.9 s
    plot.curve->addPoint(52.0, 0.0);
    QCOMPARE(listCount(plot.chart), int(record(*plot.curve).segments.size()));
    QVERIFY(listCount(plot.chart) < 5);
    plot.curve->clear();
    QCOMPARE(listCount(plot.chart), 0);
}

void tst_glStripChart::drawsAgainWithoutNewLists()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints(levelPoints(1000));
    plot.chart.timeBounds(0.0, 100.0);
    const QImage first = drawn(plot.chart);
    QCOMPARE(listNames().size(), 9);
    const QList<GLuint> names = listNames();
    for (int i = 0; i < 10; ++i) {
        canvasOf(plot.chart).update();
        QCOMPARE(firstDifference(drawn(plot.chart), first), QString());
    }
    QCOMPARE(listNames(), names);
    QCOMPARE(rendererOf(*plot.curve).segmentSize(), 100U);
    plot.curve->addPoints(levelPoints(9000, 49, 101.0));
    drawn(plot.chart);
    QCOMPARE(rendererOf(*plot.curve).segmentSize(), 317U);
}

void tst_glStripChart::makesListsThatAreMissing()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    auto* const curve = new stripChartCurve_t(nullptr);
    curve->color(Qt::red);
    curve->addPoints(levelPoints(250)); // before there is a chart
    QCOMPARE(record(*curve).segments.size(), std::size_t(2));
    plot.chart.addCurve(curve);
    plot.chart.timeBounds(0.0, 30.0); // 10 pixels a second
    const QImage picture = drawn(plot.chart);
    QCOMPARE(listCount(plot.chart), 2);
    QCOMPARE(paintedColumns(picture, 49), QString("0-248"));
}

void tst_glStripChart::survivesRunningOutOfLists()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    contextOf(plot.chart);
    messageRecorder_t messages;
    glBegin(GL_LINES); // inside of which no list name can be had
    plot.curve->addPoints(levelPoints(250));
    glEnd();
    const QString failed = "Failed to get list -- Skipping segmenting";
    QCOMPARE(messages.texts(), (QStringList{failed, failed}));
    QCOMPARE(messages.kinds(), (QStringList{"debug", "debug"}));
    QCOMPARE(listCount(plot.chart), 0);
    while (glGetError() != GL_NO_ERROR)
        ;
    plot.chart.timeBounds(0.0, 30.0);
    QCOMPARE(paintedColumns(drawn(plot.chart), 49), QString("0-248"));
    QCOMPARE(listCount(plot.chart), 2);
    QCOMPARE(messages.texts().size(), 2);
}

void tst_glStripChart::makesSegmentsOnRequest()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints(levelPoints(50));
    glCurveRenderer_t& renderer = rendererOf(*plot.curve);
    glCurveRenderer_t::glSegment_t* const segment = renderer.createGLSegment(0, 20);
    QVERIFY(segment);
    contextOf(plot.chart);
    QCOMPARE(glIsList(segment->list), GLboolean(GL_TRUE));
    renderer.removeGLSegment(segment);
    QCOMPARE(listCount(plot.chart), 0);
    renderer.segmentCreated(0, 20, 77);
    QCOMPARE(listCount(plot.chart), 1);
    renderer.segmentRemoved(0, 20, 78);
    QCOMPARE(listCount(plot.chart), 1);
    renderer.segmentRemoved(0, 20, 77);
    QCOMPARE(listCount(plot.chart), 0);
}

void tst_glStripChart::movesCurvesBetweenCharts()
{
    REQUIRE_CONTEXT();
    plotted_t from;
    plotted_t to;
    from.curve->addPoints(levelPoints(250));
    from.chart.timeBounds(0.0, 30.0);
    to.chart.timeBounds(0.0, 30.0);
    const QImage picture = drawn(from.chart);
    QCOMPARE(listCount(from.chart), 2);
    paintLog_t paints(&canvasOf(from.chart));
    paints.take();
    QVERIFY(to.chart.addCurve(from.curve));
    QVERIFY(implOf(from.chart).curves().empty());
    QCOMPARE(listCount(from.chart), 0);
    QCOMPARE(paints.take(), QRegion(0, 0, 300, 100));
    QCOMPARE(firstDifference(drawn(from.chart), from.blankCanvas()), QString());
    canvasOf(to.chart).update();
    QCOMPARE(firstDifference(drawn(to.chart), picture), QString());
    QCOMPARE(listCount(to.chart), 2);
    QVERIFY(from.chart.addCurve(from.curve)); // and back
    QCOMPARE(listCount(to.chart), 0);
    canvasOf(from.chart).update();
    QCOMPARE(firstDifference(drawn(from.chart), picture), QString());
}

void tst_glStripChart::takesUpACurveWhoseChartIsGone()
{
    REQUIRE_CONTEXT();
    auto former = std::make_unique<plotted_t>();
    stripChartCurve_t* const curve = former->curve;
    curve->addPoints(levelPoints(150));
    const QImage picture = drawn(former->chart);
    former->chart.removeCurve(curve);
    former.reset();
    plotted_t plot;
    QVERIFY(plot.chart.addCurve(curve));
    canvasOf(plot.chart).update();
    QCOMPARE(firstDifference(drawn(plot.chart), picture), QString());
    curve->addPoints(levelPoints(100, 49, 15.025));
    QCOMPARE(listCount(plot.chart), 2);
}

void tst_glStripChart::releasesListsInEveryOrder_data()
{
    QTest::addColumn<QString>("order"); // c: curve, r: curve out of the chart, x: chart
    QTest::newRow("the chart with its curve") << "x";
    QTest::newRow("the curve first") << "cx";
    QTest::newRow("a curve taken out, the chart, the curve") << "rxc";
    QTest::newRow("a curve taken out, the curve, the chart") << "rcx";
}

void tst_glStripChart::releasesListsInEveryOrder()
{
    REQUIRE_CONTEXT();
    QFETCH(QString, order);
    auto plot = std::make_unique<plotted_t>();
    witness_t witness(plot->chart);
    QVERIFY(witness.isValid());
    stripChartCurve_t* const curve = plot->curve;
    curve->addPoints(levelPoints(550));
    QCOMPARE(witness.lists(), 5);
    for (const QChar step : order) {
        if (step == u'r')
            plot->chart.removeCurve(curve);
        if (step == u'c')
            delete curve;
        if (step == u'x')
            plot.reset();
        QCOMPARE(witness.lists(), step == u'r' ? 5 : 0);
    }
}

void tst_glStripChart::keepsDrawingAfterBeingHiddenAndReparented()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints(levelPoints(250));
    const QImage picture = drawn(plot.chart);
    QVERIFY(paintedColumns(picture, 49).startsWith("0-"));
    plot.chart.hide();
    plot.curve->addPoints(levelPoints(200, 49, 26.0));
    QVERIFY(show(plot.chart));
    QCOMPARE(firstDifference(drawn(plot.chart), picture), QString());
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(4));

    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    window.resize(300, 100);
    layout->addWidget(&plot.chart);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    QTRY_COMPARE(drawn(plot.chart), picture);
    plot.curve->clear();
    QCOMPARE(listCount(plot.chart), 0);
    plot.curve->addPoints(levelPoints(250));
    QCOMPARE(firstDifference(drawn(plot.chart), picture), QString());
    plot.chart.setParent(nullptr);
    plot.curve->addPoints(levelPoints(200, 49, 26.0));
    QVERIFY(show(plot.chart));
    QTRY_COMPARE(drawn(plot.chart), picture);
}

void tst_glStripChart::drawsAgainInAnotherContext()
{
    REQUIRE_CONTEXT();
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QSKIP("Qt 6 keeps the widget that has the context to itself.");
#else
    plotted_t plot;
    plot.curve->addPoints(levelPoints(250));
    const QImage picture = drawn(plot.chart);
    QCOMPARE(listCount(plot.chart), 2);
    const QPointer<QOpenGLContext> before = contextOf(plot.chart);
    QGLFormat format = canvasOf(plot.chart).format();
    format.setSampleBuffers(false);
    format.setStencil(!format.stencil());
    canvasOf(plot.chart).setFormat(format);
    QVERIFY(before.isNull());
    QCOMPARE(listCount(plot.chart), 0);
    plot.chart.hide();
    QVERIFY(show(plot.chart));
    QTRY_COMPARE(drawn(plot.chart), picture);
    QCOMPARE(listCount(plot.chart), 2);
    plot.curve->clear();
    QCOMPARE(listCount(plot.chart), 0);
#endif
}

void tst_glStripChart::makesNoListsWithoutAWindow()
{
    REQUIRE_CONTEXT();
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QSKIP("In Qt 6 contexts need no window.");
#else
    plotted_t plot;
    plot.curve->addPoints(levelPoints(250, 20));
    QVERIFY(drawn(plot.chart) != plot.blankCanvas());
    contextOf(plot.chart)->doneCurrent();
    canvasOf(plot.chart).windowHandle()->destroy();
    const messageRecorder_t messages;
    plot.curve->clear();
    plot.curve->addPoints(levelPoints(250));
    QCOMPARE(messages.texts(), QStringList()); // no list was asked for
    QCOMPARE(record(*plot.curve).segments.size(), std::size_t(2));
    plot.chart.hide();
    QVERIFY(show(plot.chart));
    plot.chart.timeBounds(0.0, 30.0); // 10 pixels a second
    QTRY_COMPARE(paintedColumns(drawn(plot.chart), 49), QString("0-248"));
    QCOMPARE(paintedColumns(drawn(plot.chart), 20), QString());
#endif
}

void tst_glStripChart::freesTheArraysOfLoosePoints()
{
    REQUIRE_CONTEXT();
    plotted_t plot;
    plot.curve->addPoints(levelPoints(90));
    QCOMPARE(record(*plot.curve).incomingCount, 90);
    drawn(plot.chart);
    const qint64 before = allocated;
    rendererOf(*plot.curve).prepareToDelete();
    constexpr qint64 vertices = 2 * 90;
    constexpr qint64 parts = 4 + 4; // of a place and of a colour
    QVERIFY(before - allocated >= vertices * parts * static_cast<qint64>(sizeof(float)));
}

// The slot is connected before the chart knows the curve, so it runs before the chart's own.
void tst_glStripChart::hasForgottenACurveBeforeItsEndIsAnnounced_data()
{
    QTest::addColumn<chartUse_t>("use");
    QTest::newRow("a repaint") << chartUse_t([](stripChart_t* chart) {
        canvasOf(*chart).update();
        drawn(*chart);
    });
    QTest::newRow("other bounds") << chartUse_t(
        [](stripChart_t* chart) { chart->timeBounds(0.0, 10.0); });
    QTest::newRow("deleted") << chartUse_t([](stripChart_t* chart) { delete chart; });
}

void tst_glStripChart::hasForgottenACurveBeforeItsEndIsAnnounced()
{
    QFETCH(chartUse_t, use);
    const QPointer<stripChart_t> chart = new stripChart_t(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    int uses = 0;
    connect(curve, &QObject::destroyed, this, [&] {
        ++uses;
        QVERIFY(implOf(*chart).curves().empty());
        use(chart);
    });
    chart->addCurve(curve);
    QVERIFY(show(*chart));
    curve->addPoints(levelPoints(250));
    delete curve;
    QCOMPARE(uses, 1);
    delete chart;
}

void tst_glStripChart::repaintsWhenACurveIsDeleted()
{
    plotted_t plot;
    paintLog_t paints(&canvasOf(plot.chart));
    paints.take();
    delete plot.curve;
    QCOMPARE(paints.take(), QRegion(0, 0, 300, 100));
}

// What makes Qt have a chart send signals while it is at work on it.
static void causesOfSignals()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<chartUse_t>("use");
    QTest::addColumn<bool>("isShown");    // before the use
    QTest::addColumn<bool>("isPainting"); // which takes a context
    const QByteArray mouse = SIGNAL(mousePos(double, double));
    const QByteArray value = SIGNAL(valueBoundsChanged(double, double));
    const chartUse_t show = [](stripChart_t* chart) { chart->window()->show(); };
    const auto canvas = [](stripChart_t* chart) { return &canvasOf(*chart); };
    QTest::newRow("the first repaint") << mouse << show << false << true;
    QTest::newRow("the first size") << value << show << false << false;
    const auto row = [](const char* name, const QByteArray& signal, bool isPainting,
                        const chartUse_t& use) {
        QTest::newRow(name) << signal << use << true << isPainting;
    };
    row("scrolling", mouse, true, [](stripChart_t* chart) { chart->scrollTime(3.0); });
    row("a jump", mouse, true, [](stripChart_t* chart) { chart->scrollTime(90.0); });
    row("a repaint at once", mouse, true, [=](stripChart_t* chart) { canvas(chart)->repaint(); });
    row("a picture", mouse, true, [](stripChart_t* chart) { chart->grab(); });
    row("the pointer", mouse, false, [=](stripChart_t* chart) {
        QMouseEvent move(QEvent::MouseMove, QPointF(60, 20),
                         canvas(chart)->mapToGlobal(QPoint(60, 20)), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(canvas(chart), &move);
    });
    row("the pointer's leaving", mouse, false, [=](stripChart_t* chart) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(canvas(chart), &leave);
    });
    row("another size", value, false,
        [](stripChart_t* chart) { chart->window()->resize(200, 400); });
}

void tst_glStripChart::mayBeDeletedLaterBySlotsOfItsSignals_data()
{
    causesOfSignals();
}

void tst_glStripChart::mayBeDeletedLaterBySlotsOfItsSignals()
{
    QFETCH(QByteArray, signal);
    QFETCH(chartUse_t, use);
    QFETCH(bool, isPainting);
    QFETCH(bool, isShown);
    if (isPainting)
        REQUIRE_CONTEXT();
    for (const bool isWindow : {true, false}) {
        QWidget parent;
        QVBoxLayout layout(&parent);
        const QPointer<stripChart_t> chart = new stripChart_t(nullptr);
        if (!isWindow)
            layout.addWidget(chart);
        auto* const curve = new stripChartCurve_t(nullptr);
        chart->addCurve(curve);
        curve->addPoints({{-10.0, 100.0, Qt::red}, {-5.0, 200.0, Qt::red}});
        chart->window()->resize(200, 100);
        if (isShown) {
            chart->window()->show();
            QVERIFY(QTest::qWaitForWindowExposed(chart->window(), patienceMs()));
        }
        connect(chart, signal.constData(), chart, SLOT(deleteLater()));
        use(chart);
        QTRY_VERIFY(!chart);
        parent.grab();
    }
}

void tst_glStripChart::losesACurveToSlotsOfSignalsByQt_data()
{
    causesOfSignals();
}

void tst_glStripChart::losesACurveToSlotsOfSignalsByQt()
{
    QFETCH(QByteArray, signal);
    QFETCH(chartUse_t, use);
    QFETCH(bool, isPainting);
    QFETCH(bool, isShown);
    if (isPainting)
        REQUIRE_CONTEXT();
    stripChart_t chart(nullptr);
    const QPointer<stripChartCurve_t> curve = new stripChartCurve_t(nullptr);
    auto* const other = new stripChartCurve_t(nullptr);
    for (stripChartCurve_t* const added : {curve.data(), other}) {
        chart.addCurve(added);
        added->addPoints({{-10.0, 100.0, Qt::red}, {-5.0, 200.0, Qt::red}});
    }
    chart.resize(200, 100);
    if (isShown) {
        chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    }
    deleter_t deleter(curve);
    connect(&chart, signal.constData(), &deleter, SLOT(deleteIt()));
    use(&chart);
    QTRY_VERIFY(!curve);
    QCOMPARE(implOf(chart).curves(), std::set<stripChartCurve_t*>{other});
    chart.grab();
}

void tst_glStripChart::leavesNothingBehindAfterAHundredCharts()
{
    REQUIRE_CONTEXT();
    plotted_t witnessed; // sees whether contexts stay usable
    witnessed.curve->addPoints(levelPoints(250));
    std::vector<QPointer<QOpenGLContext>> contexts;
    for (int i = 0; i < 100; ++i) {
        auto chart = std::make_unique<stripChart_t>(nullptr);
        chart->resize(100, 50);
        auto* const curve = new stripChartCurve_t(nullptr);
        chart->addCurve(curve);
        QVERIFY(show(*chart));
        curve->addPoints(levelPoints(250));
        drawn(*chart);
        contexts.emplace_back(contextOf(*chart));
        QVERIFY(contexts.back());
        QCOMPARE(listCount(*chart), 2);
        chart.reset();
        QVERIFY(!contexts.back());
    }
    QCOMPARE(listCount(witnessed.chart), 2);
    QCOMPARE(glGetError(), GLenum(GL_NO_ERROR));
}

// Random changes; after each frame there are lists for segments that are still there and no other.
void tst_glStripChart::survivesChangesAtRandom()
{
    random_t random(23);
    std::vector<std::unique_ptr<plotted_t>> plots;
    for (int i = 0; i < 3; ++i)
        plots.push_back(std::make_unique<plotted_t>());
    const auto anyPlot = [&]() -> plotted_t& {
        return *plots[static_cast<std::size_t>(random.integer(0, int(plots.size()) - 1))];
    };
    double time = 0.0;
    for (int step = 0; step < 400; ++step) {
        plotted_t& plot = anyPlot();
        const std::set<stripChartCurve_t*> curves = implOf(plot.chart).curves();
        stripChartCurve_t* const curve = curves.empty() ? nullptr : *curves.begin();
        switch (random.integer(0, 9)) {
        case 0:
            if (curve != nullptr)
                anyPlot().chart.addCurve(curve);
            break;
        case 1:
            if (curve != nullptr)
                curve->clear();
            break;
        case 2:
            plot.chart.setVisible(random.chance(0.5));
            break;
        case 3:
            if (curve != nullptr && random.chance(0.3))
                delete curve;
            break;
        case 4: {
            auto* const added = new stripChartCurve_t(nullptr);
            added->dataDuration(random.oneOf<double>({5.0, 50.0, 7200.0}));
            plot.chart.addCurve(added);
            break;
        }
        case 5:
            if (random.chance(0.3)) {
                const auto index = random.integer(0, int(plots.size()) - 1);
                plots[static_cast<std::size_t>(index)] = std::make_unique<plotted_t>();
            }
            break;
        case 6:
            if (curve != nullptr)
                curve->color(random.chance(0.5) ? Qt::red : Qt::blue);
            break;
        default:
            time += 20.0;
            if (curve != nullptr)
                curve->addPoints(levelPoints(random.integer(1, 400), 49, time));
            time += 40.0;
            plot.chart.timeBounds(time - 100.0, time);
        }
        processEvents();
        if (!hasContext)
            continue;
        for (const auto& each : plots) {
            std::size_t segments = 0;
            for (stripChartCurve_t* const shownCurve : implOf(each->chart).curves())
                segments += record(*shownCurve).segments.size();
            const int lists = listCount(each->chart);
            QVERIFY2(
                lists <= int(segments),
                qPrintable(
                    QStringLiteral("step %1: %2 lists for %3").arg(step).arg(lists).arg(segments)));
            QCOMPARE(glGetError(), GLenum(GL_NO_ERROR));
        }
    }
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

void tst_glStripChart::showsTheSameAsThePainter_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 12; ++seed)
        QTest::addRow("recording %u", seed) << seed;
}

// Lines are 1 pixel wide in the one and 2 in the other, and the painter drops fractions of pixels,
// so a pixel is looked for within 2 pixels. With every point in the curve's colour, which is
// opaque, there are no other differences.
void tst_glStripChart::showsTheSameAsThePainter()
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
