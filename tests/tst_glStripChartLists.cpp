#include "childProcess.h"
#include "deleter.h"
#include "glCurveRenderer.h"
#include "glPlot.h"
#include "glStripChartImpl.h"
#include "messageRecorder.h"
#include "paintLog.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "recordingRenderer.h"

#include <QMouseEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPointer>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <memory>
#include <new>
#include <vector>

using namespace gl_tests;
using namespace zorbin_qt_gui;

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

} // namespace

Q_DECLARE_METATYPE(chartUse_t)

/// The display lists of OpenGL charts: which there are, and that none is left behind.
class tst_glStripChartLists : public glTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
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
};

void tst_glStripChartLists::keepsOneListPerSegment()
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

void tst_glStripChartLists::drawsAgainWithoutNewLists()
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

void tst_glStripChartLists::makesListsThatAreMissing()
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

void tst_glStripChartLists::survivesRunningOutOfLists()
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

void tst_glStripChartLists::makesSegmentsOnRequest()
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

void tst_glStripChartLists::movesCurvesBetweenCharts()
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

void tst_glStripChartLists::takesUpACurveWhoseChartIsGone()
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

void tst_glStripChartLists::releasesListsInEveryOrder_data()
{
    QTest::addColumn<QString>("order"); // c: curve, r: curve out of the chart, x: chart
    QTest::newRow("the chart with its curve") << "x";
    QTest::newRow("the curve first") << "cx";
    QTest::newRow("a curve taken out, the chart, the curve") << "rxc";
    QTest::newRow("a curve taken out, the curve, the chart") << "rcx";
}

void tst_glStripChartLists::releasesListsInEveryOrder()
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

void tst_glStripChartLists::keepsDrawingAfterBeingHiddenAndReparented()
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

void tst_glStripChartLists::drawsAgainInAnotherContext()
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

void tst_glStripChartLists::makesNoListsWithoutAWindow()
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

void tst_glStripChartLists::freesTheArraysOfLoosePoints()
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
void tst_glStripChartLists::hasForgottenACurveBeforeItsEndIsAnnounced_data()
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

void tst_glStripChartLists::hasForgottenACurveBeforeItsEndIsAnnounced()
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

void tst_glStripChartLists::repaintsWhenACurveIsDeleted()
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

void tst_glStripChartLists::mayBeDeletedLaterBySlotsOfItsSignals_data()
{
    causesOfSignals();
}

void tst_glStripChartLists::mayBeDeletedLaterBySlotsOfItsSignals()
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

void tst_glStripChartLists::losesACurveToSlotsOfSignalsByQt_data()
{
    causesOfSignals();
}

void tst_glStripChartLists::losesACurveToSlotsOfSignalsByQt()
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

void tst_glStripChartLists::leavesNothingBehindAfterAHundredCharts()
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
void tst_glStripChartLists::survivesChangesAtRandom()
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

int main(int argc, char** argv)
{
    qputenv("ZORBIN_QT_STRIPCHART_TYPE", "gl");
    tst_glStripChartLists tests;
    return runTestsOrScenario(argc, argv, tests, {});
}
#include "tst_glStripChartLists.moc"
