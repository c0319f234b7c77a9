#include "bareChart.h"
#include "childProcess.h"
#include "deleter.h"
#include "glStripChartImpl.h"
#include "messageRecorder.h"
#include "paintLog.h"
#include "pictures.h"
#include "plainChart.h"
#include "recordingRenderer.h"
#include "simpleStripChartImpl.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "stripChartImpl.h"
#include "testCase.h"

#include <QGridLayout>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QThread>
#include <QVBoxLayout>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

using namespace strip_chart_tests;
using namespace zorbin_qt_gui;

static const double inf = std::numeric_limits<double>::infinity();

namespace {

stripChartImpl_t& implOf(stripChart_t& chart)
{
    return *chart.findChild<stripChartImpl_t*>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

/// The strip chart as a widget: its canvas, its curves, its signals, and its choice of a back end.
class tst_stripChart : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // The chart widget.
    void showsFifteenSecondsAndPlusMinusOneAtFirst();
    void isAlwaysAtLeastFiftyPixelsWideAndHigh();
    void isFilledByTheDrawingWidget();
    void takesItsBackgroundFromItsOwnPalette();
    void showsANewBackgroundAtOnce();
    void repaintsNothingForTheSameBackground();
    void repaintsItsCanvasWhateverItsLayout_data();
    void repaintsItsCanvasWhateverItsLayout();
    void mayBeDeletedBySlotsOfItsColour();
    void isReachedByStringBasedConnections();
    void relaysTheSignalsOfItsImplementation();
    void hasAnAutoscaleProperty();

    // Curves.
    void refusesNullAndDuplicateCurves();
    void refusesToRemoveNullAndUnknownCurves();
    void attachesACurvesRendererToItsWidget();
    void handsOutACopyOfItsCurves();
    void recalculatesNothingWhenCurvesComeAndGo();
    void deletesItsCurves();
    void deletesTheWidgetBeforeTheCurves();
    void leavesRemovedCurvesAlone();
    void forgetsACurveThatIsDeleted();
    void survivesDeletingInAnyOrder_data();
    void survivesDeletingInAnyOrder();
    void survivesACurveThatDeletesAnother();
    void survivesTheEndOfACurveAmidTwoOfItsPoints();
    void mayBeDeletedBySlotsOfACurvesEnd();
    void hasForgottenACurveBeforeItsEndIsAnnounced_data();
    void hasForgottenACurveBeforeItsEndIsAnnounced();
    void forgetsACurveWithoutConnections();
    void mayBeUsedBySlotsOfItsCurvesEnd_data();
    void mayBeUsedBySlotsOfItsCurvesEnd();
    void givesACurveBackAmidItsEnd();
    void mayBeDeletedBySlotsOfItsSignals_data();
    void mayBeDeletedBySlotsOfItsSignals();
    void mayBeDeletedLaterBySlotsOfItsSignals_data();
    void mayBeDeletedLaterBySlotsOfItsSignals();
    void losesACurveToSlotsOfSignalsByQt_data();
    void losesACurveToSlotsOfSignalsByQt();
    void losesACurveToSlotsOfItsSignals_data();
    void losesACurveToSlotsOfItsSignals();

    // Child processes.
    void stopsAtAMinimumRangeThatIsNotPositive_data();
    void stopsAtAMinimumRangeThatIsNotPositive();
    void choosesTheBackEndOnce_data();
    void choosesTheBackEndOnce();
    void takesOpenGlWhenToldTo();
};

void tst_stripChart::showsFifteenSecondsAndPlusMinusOneAtFirst()
{
    stripChart_t chart(nullptr);
    QCOMPARE(chart.minTimeBound(), -15.0);
    QCOMPARE(chart.maxTimeBound(), 0.0);
    QCOMPARE(chart.minValueBound(), -1.0);
    QCOMPARE(chart.maxValueBound(), 1.0);
    QVERIFY(chart.autoscaleValue());
}

void tst_stripChart::isAlwaysAtLeastFiftyPixelsWideAndHigh()
{
    stripChart_t chart(nullptr);
    QCOMPARE(chart.minimumSizeHint(), QSize(50, 50));
    chart.addCurve(new stripChartCurve_t(nullptr));
    chart.resize(300, 200);
    QCOMPARE(chart.minimumSizeHint(), QSize(50, 50));
}

void tst_stripChart::isFilledByTheDrawingWidget()
{
    stripChart_t chart(nullptr);
    const auto* const layout = qobject_cast<QVBoxLayout*>(chart.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), implOf(chart).widget());
    QCOMPARE(layout->stretch(0), 0);
    chart.resize(123, 77);
    chart.grab();
    QCOMPARE(implOf(chart).widget()->geometry(), QRect(0, 0, 123, 77));
}

void tst_stripChart::takesItsBackgroundFromItsOwnPalette()
{
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::darkCyan);
    window.setPalette(palette);
    stripChart_t chart(&window);
    chart.resize(60, 50);
    QImage wanted(60, 50, QImage::Format_RGB32);
    wanted.fill(Qt::darkCyan);
    QCOMPARE(firstDifference(snapshot(chart), wanted), QString());
}

void tst_stripChart::showsANewBackgroundAtOnce()
{
    stripChart_t chart(nullptr);
    chart.resize(60, 50);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    chart.setBackgroundColor(Qt::darkRed);
    QImage wanted(60, 50, QImage::Format_RGB32);
    wanted.fill(Qt::darkRed);
    QCOMPARE(firstDifference(shown(chart), wanted), QString());
    QCOMPARE(implOf(chart).canvasColor(), QColor(Qt::darkRed));
}

void tst_stripChart::repaintsNothingForTheSameBackground()
{
    stripChart_t chart(nullptr);
    chart.setBackgroundColor(Qt::darkRed);
    chart.resize(60, 50);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    paintLog_t paints(implOf(chart).widget());
    shown(chart);
    paints.take();
    QSignalSpy mouse(&chart, &stripChart_t::mousePos);
    chart.setBackgroundColor(Qt::darkRed);
    QCOMPARE(paints.take(), QRegion());
    QCOMPARE(mouse.size(), 0);
    chart.setBackgroundColor(Qt::red);
    QCOMPARE(paints.take(), QRegion(0, 0, 60, 50));
}

namespace {
using chartUse_t = std::function<void(stripChart_t*)>;
using curveUse_t = std::function<void(stripChartCurve_t*)>;
} // namespace
Q_DECLARE_METATYPE(chartUse_t)
Q_DECLARE_METATYPE(curveUse_t)

void tst_stripChart::repaintsItsCanvasWhateverItsLayout_data()
{
    QTest::addColumn<chartUse_t>("change");
    const auto row = [](const char* name, const chartUse_t& change) {
        QTest::newRow(name) << change;
    };
    const auto box = [](stripChart_t* chart) {
        return qobject_cast<QVBoxLayout*>(chart->layout());
    };
    row("a space above", [=](stripChart_t* chart) { box(chart)->insertSpacing(0, 10); });
    row("a stretch above", [=](stripChart_t* chart) { box(chart)->insertStretch(0); });
    row("a label above",
        [=](stripChart_t* chart) { box(chart)->insertWidget(0, new QLabel("speed")); });
    row("a layout above",
        [=](stripChart_t* chart) { box(chart)->insertLayout(0, new QHBoxLayout); });
    row("the canvas taken out", [](stripChart_t* chart) { delete chart->layout()->takeAt(0); });
    row("no layout", [](stripChart_t* chart) { delete chart->layout(); });
    row("another layout", [](stripChart_t* chart) {
        delete chart->layout();
        auto* const grid = new QGridLayout(chart);
        grid->addWidget(new QLabel("speed"), 0, 0);
        grid->addWidget(implOf(*chart).widget(), 0, 1);
    });
}

void tst_stripChart::repaintsItsCanvasWhateverItsLayout()
{
    QFETCH(chartUse_t, change);
    stripChart_t chart(nullptr);
    chart.resize(100, 80);
    change(&chart);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    shown(chart);
    QWidget* const canvas = implOf(chart).widget();
    paintLog_t paints(canvas);
    paints.take();
    chart.setBackgroundColor(Qt::darkRed);
    QCOMPARE(paints.take(), canvas->visibleRegion());
    auto* const curve = new stripChartCurve_t(nullptr);
    QVERIFY(chart.addCurve(curve));
    QCOMPARE(paints.take(), canvas->visibleRegion());
    QVERIFY(chart.removeCurve(curve));
    QCOMPARE(paints.take(), canvas->visibleRegion());
    delete curve;
}

void tst_stripChart::mayBeDeletedBySlotsOfItsColour()
{
    const QPointer<stripChart_t> chart = new stripChart_t(nullptr);
    connect(&implOf(*chart), &stripChartImpl_t::colorChanged, this, [&] { delete chart; });
    chart->setBackgroundColor(Qt::red);
    QVERIFY(!chart);
}

// Has the signals and slots that an application might connect to a chart by name.
class application_t : public QObject
{
    Q_OBJECT

public:
    QStringList heard;

Q_SIGNALS:
    void tick(double time_);
    void timeWindow(double min_, double max_);
    void range(double range_);
    void follow(bool enable_);
    void background(QColor color_);

public Q_SLOTS:
    void time(double left_, double right_) { heard << boundsSignal("time", left_, right_); }
    void value(double bottom_, double top_) { heard << boundsSignal("value", bottom_, top_); }
    void autoscale(bool enabled_) { heard << QStringLiteral("autoscale(%1)").arg(enabled_); }
    void mouse(double x_, double y_) { heard << boundsSignal("mouse", x_, y_); }
};

void tst_stripChart::isReachedByStringBasedConnections()
{
    stripChart_t chart(nullptr);
    application_t application;
    const messageRecorder_t messages;
    QVERIFY(connect(&application, SIGNAL(tick(double)), &chart, SLOT(scrollTime(double))));
    QVERIFY(connect(&application, SIGNAL(timeWindow(double, double)), &chart,
                    SLOT(timeBounds(double, double))));
    QVERIFY(connect(&application, SIGNAL(timeWindow(double, double)), &chart,
                    SLOT(valueBounds(double, double))));
    QVERIFY(connect(&application, SIGNAL(range(double)), &chart, SLOT(minValueRange(double))));
    QVERIFY(connect(&application, SIGNAL(follow(bool)), &chart, SLOT(autoscaleValue(bool))));
    QVERIFY(connect(&application, SIGNAL(background(QColor)), &chart,
                    SLOT(setBackgroundColor(QColor))));
    QVERIFY(connect(&chart, SIGNAL(timeBoundsChanged(double, double)), &application,
                    SLOT(time(double, double))));
    QVERIFY(connect(&chart, SIGNAL(valueBoundsChanged(double, double)), &application,
                    SLOT(value(double, double))));
    QVERIFY(
        connect(&chart, SIGNAL(valueAutoscaleChanged(bool)), &application, SLOT(autoscale(bool))));
    QVERIFY(connect(&chart, SIGNAL(mousePos(double, double)), &application,
                    SLOT(mouse(double, double))));
    stripChartImpl_t& impl = implOf(chart);
    QVERIFY(connect(&impl, SIGNAL(colorChanged()), &impl, SLOT(cleanupCurve())));
    QCOMPARE(messages.texts(), QStringList());

    Q_EMIT application.timeWindow(0.0, 5.0);
    Q_EMIT impl.mousePos(1.0, 2.0);
    QCOMPARE(application.heard.first(), QString("time(0, 5)"));
    QCOMPARE(application.heard.last(), QString("mouse(1, 2)"));
    QVERIFY(application.heard.contains("autoscale(0)"));
    QVERIFY(application.heard.contains("value(0, 5)"));
    Q_EMIT application.follow(true);
    QVERIFY(chart.autoscaleValue());
    Q_EMIT application.background(Qt::red);
    QCOMPARE(impl.canvasColor(), QColor(Qt::red));
}

void tst_stripChart::relaysTheSignalsOfItsImplementation()
{
    stripChart_t chart(nullptr);
    QSignalSpy time(&chart, &stripChart_t::timeBoundsChanged);
    QSignalSpy value(&chart, &stripChart_t::valueBoundsChanged);
    QSignalSpy autoscale(&chart, &stripChart_t::valueAutoscaleChanged);
    QSignalSpy mouse(&chart, &stripChart_t::mousePos);
    stripChartImpl_t& impl = implOf(chart);
    Q_EMIT impl.timeBoundsChanged(1.0, 2.0);
    Q_EMIT impl.valueBoundsChanged(3.0, 4.0);
    Q_EMIT impl.valueAutoscaleChanged(true);
    Q_EMIT impl.mousePos(5.0, 6.0);
    QCOMPARE(time, (QList<QVariantList>{{1.0, 2.0}}));
    QCOMPARE(value, (QList<QVariantList>{{3.0, 4.0}}));
    QCOMPARE(autoscale, (QList<QVariantList>{{true}}));
    QCOMPARE(mouse, (QList<QVariantList>{{5.0, 6.0}}));
}

void tst_stripChart::hasAnAutoscaleProperty()
{
    stripChart_t chart(nullptr);
    QCOMPARE(chart.property("autoscaleValue"), QVariant(true));
    QVERIFY(chart.setProperty("autoscaleValue", false));
    QVERIFY(!chart.autoscaleValue());
}

void tst_stripChart::refusesNullAndDuplicateCurves()
{
    stripChart_t chart(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    QVERIFY(!chart.addCurve(nullptr));
    QVERIFY(chart.addCurve(curve));
    QVERIFY(!chart.addCurve(curve));
    QCOMPARE(implOf(chart).curves(), std::set<stripChartCurve_t*>{curve});
}

void tst_stripChart::refusesToRemoveNullAndUnknownCurves()
{
    stripChart_t chart(nullptr);
    stripChartCurve_t unknown;
    QVERIFY(!chart.removeCurve(nullptr));
    QVERIFY(!chart.removeCurve(&unknown));
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    QVERIFY(!chart.removeCurve(&unknown));
    QVERIFY(chart.removeCurve(curve));
    QVERIFY(!chart.removeCurve(curve));
    QVERIFY(implOf(chart).curves().empty());
    delete curve;
}

void tst_stripChart::attachesACurvesRendererToItsWidget()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    recordingRenderer_t* const renderer = recordingRenderer_t::attach(*curve, 10);
    impl.addCurve(curve);
    QCOMPARE(renderer->widget, impl.widget());
    renderer->widget = nullptr;
    impl.addCurve(curve);
    QCOMPARE(renderer->widget, nullptr);
    impl.removeCurve(curve); // doesn't detach
    QCOMPARE(renderer->widget, nullptr);
    delete curve;
}

void tst_stripChart::handsOutACopyOfItsCurves()
{
    bareChartImpl_t impl;
    auto* const curve = new stripChartCurve_t(nullptr);
    impl.addCurve(curve);
    std::set<stripChartCurve_t*> copy = impl.curves();
    copy.clear();
    QCOMPARE(impl.curves(), std::set<stripChartCurve_t*>{curve});
}

void tst_stripChart::recalculatesNothingWhenCurvesComeAndGo()
{
    bareChartImpl_t impl;
    impl.updateSize(10, 106);
    auto* const curve = new stripChartCurve_t(nullptr);
    curve->addPoint(-1.0, 50.0);
    signalLog_t<stripChartImpl_t> log(&impl);
    impl.addCurve(curve);
    QCOMPARE(log.take(), QStringList());
    impl.recalculateBounds();
    QCOMPARE(log.take(), QStringList{boundsSignal("valueBoundsChanged", 48.728, 51.272)});
    impl.removeCurve(curve);
    impl.addCurve(curve);
    delete curve; // leaves through cleanupCurve()
    QVERIFY(impl.curves().empty());
    QCOMPARE(log.take(), QStringList());
    impl.recalculateBounds();
    QCOMPARE(impl.maxValueBound(), 1.272);
}

void tst_stripChart::deletesItsCurves()
{
    auto chart = std::make_unique<stripChart_t>(nullptr);
    const QPointer<stripChartCurve_t> first = new stripChartCurve_t(nullptr);
    const QPointer<stripChartCurve_t> second = new stripChartCurve_t(nullptr);
    chart->addCurve(first);
    chart->addCurve(second);
    chart.reset();
    QVERIFY(!first);
    QVERIFY(!second);
}

void tst_stripChart::deletesTheWidgetBeforeTheCurves()
{
    auto chart = std::make_unique<stripChart_t>(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart->addCurve(curve);
    QStringList destroyed;
    connect(curve, &QObject::destroyed, this, [&] { destroyed << "curve"; });
    connect(implOf(*chart).widget(), &QObject::destroyed, this, [&] { destroyed << "widget"; });
    connect(&implOf(*chart), &QObject::destroyed, this, [&] { destroyed << "implementation"; });
    connect(chart.get(), &QObject::destroyed, this, [&] { destroyed << "chart"; });
    chart.reset();
    QCOMPARE(destroyed, (QStringList{"widget", "curve", "implementation", "chart"}));
}

void tst_stripChart::leavesRemovedCurvesAlone()
{
    auto chart = std::make_unique<stripChart_t>(nullptr);
    const std::unique_ptr<stripChartCurve_t> owned(new stripChartCurve_t(nullptr));
    const QPointer<stripChartCurve_t> curve = owned.get();
    chart->addCurve(curve);
    chart->removeCurve(curve);
    chart.reset();
    QVERIFY(curve);
    curve->addPoint(1.0, 2.0); // its renderer's chart is gone
    QCOMPARE(curve->timeMax(), 1.0);
}

void tst_stripChart::forgetsACurveThatIsDeleted()
{
    stripChart_t chart(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    auto* const other = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    chart.addCurve(other);
    curve->addPoints({{-9.0, -1.0, Qt::red}, {-8.0, 1.0, Qt::red}});
    chart.resize(80, 60);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart, patienceMs()));
    delete curve;
    QCOMPARE(implOf(chart).curves(), std::set<stripChartCurve_t*>{other});
    chart.update();
    QCOMPARE(firstDifference(shown(chart), blank(chart)), QString());
}

void tst_stripChart::survivesDeletingInAnyOrder_data()
{
    QTest::addColumn<QString>("order"); // A, B: charts; c: a curve, in A first and then in B
    for (const char* const order : {"ABc", "AcB", "BAc", "BcA", "cAB", "cBA"})
        QTest::newRow(order) << order;
}

void tst_stripChart::survivesDeletingInAnyOrder()
{
    QFETCH(QString, order);
    QPointer<stripChart_t> a = new stripChart_t(nullptr);
    QPointer<stripChart_t> b = new stripChart_t(nullptr);
    QPointer<stripChartCurve_t> curve = new stripChartCurve_t(nullptr);
    a->addCurve(curve);
    curve->addPoint(-2.0, 1.0);
    b->addCurve(curve);
    curve->addPoint(-1.0, 2.0);
    bool curveIsGone = false;
    for (const QChar what : order) {
        if (what == u'A')
            delete a;
        else if (what == u'B')
            delete b;
        else
            delete curve;
        curveIsGone = curveIsGone || what != u'A'; // B, its last chart, deletes it
        QCOMPARE(!curve, curveIsGone);
        if (curve)
            curve->addPoint(curve->timeMax() + 1.0, 3.0);
        if (a)
            snapshot(*a);
        if (b)
            snapshot(*b);
    }
}

void tst_stripChart::survivesACurveThatDeletesAnother()
{
    auto chart = std::make_unique<stripChart_t>(nullptr);
    QPointer<stripChartCurve_t> first = new stripChartCurve_t(nullptr);
    QPointer<stripChartCurve_t> second = new stripChartCurve_t(nullptr);
    chart->addCurve(first);
    chart->addCurve(second);
    connect(first, &QObject::destroyed, this, [&] { delete second; });
    connect(second, &QObject::destroyed, this, [&] { delete first; });
    chart.reset();
    QVERIFY(!first);
    QVERIFY(!second);
}

void tst_stripChart::survivesTheEndOfACurveAmidTwoOfItsPoints()
{
    stripChart_t chart(nullptr);
    QPointer<stripChartCurve_t> curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    int changes = 0;
    connect(&chart, &stripChart_t::valueBoundsChanged, this, [&] {
        if (++changes == 1)
            curve->addPoint(-1.0, 1e6);
        else
            delete curve;
    });
    curve->addPoint(-2.0, 1e3);
    QCOMPARE(changes, 2);
    QVERIFY(!curve);
    QVERIFY(implOf(chart).curves().empty());
}

void tst_stripChart::mayBeDeletedBySlotsOfACurvesEnd()
{
    QPointer<stripChart_t> chart = new stripChart_t(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    const QPointer<stripChartCurve_t> other = new stripChartCurve_t(nullptr);
    chart->addCurve(curve);
    chart->addCurve(other);
    connect(curve, &QObject::destroyed, this, [&] { delete chart; });
    delete curve;
    QVERIFY(!chart);
    QVERIFY(!other);
}

// The slot is connected before the chart knows the curve, so it runs before the chart's own.
void tst_stripChart::hasForgottenACurveBeforeItsEndIsAnnounced_data()
{
    QTest::addColumn<chartUse_t>("use");
    const auto row = [](const char* name, const chartUse_t& use) { QTest::newRow(name) << use; };
    row("other bounds", [](stripChart_t* chart) { chart->timeBounds(0.0, 10.0); });
    row("a repaint", [](stripChart_t* chart) { chart->repaint(); });
    row("a picture", [](stripChart_t* chart) { chart->grab(); });
    row("deleted", [](stripChart_t* chart) { delete chart; });
}

void tst_stripChart::hasForgottenACurveBeforeItsEndIsAnnounced()
{
    QFETCH(chartUse_t, use);
    const QPointer<stripChart_t> chart = new stripChart_t(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    const QPointer<stripChartCurve_t> other = new stripChartCurve_t(nullptr);
    int uses = 0;
    connect(curve, &QObject::destroyed, this, [&] {
        ++uses;
        use(chart);
    });
    chart->addCurve(curve);
    chart->addCurve(other);
    for (stripChartCurve_t* const fed : {curve, other.data()})
        fed->addPoints({{-10.0, 1.0, Qt::red}, {-5.0, 2.0, Qt::red}});
    delete curve;
    QCOMPARE(uses, 1);
    QCOMPARE(chart.isNull(), other.isNull());
    delete chart;
}

void tst_stripChart::forgetsACurveWithoutConnections()
{
    stripChart_t chart(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    curve->disconnect();
    delete curve;
    QVERIFY(implOf(chart).curves().empty());
    chart.timeBounds(0.0, 1.0);
}

void tst_stripChart::mayBeUsedBySlotsOfItsCurvesEnd_data()
{
    QTest::addColumn<chartUse_t>("use");
    const auto row = [](const char* name, const chartUse_t& use) { QTest::newRow(name) << use; };
    row("another colour", [](stripChart_t* chart) { chart->setBackgroundColor(Qt::red); });
    row("scrolled", [](stripChart_t* chart) { chart->scrollTime(5.0); });
    row("another curve", [](stripChart_t* chart) {
        stripChartCurve_t curve(nullptr);
        QVERIFY(!chart->addCurve(&curve)); // it couldn't be drawn any more
    });
}

void tst_stripChart::mayBeUsedBySlotsOfItsCurvesEnd()
{
    QFETCH(chartUse_t, use);
    auto* const chart = new stripChart_t(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart->addCurve(curve);
    int uses = 0;
    connect(curve, &QObject::destroyed, this, [&] {
        ++uses;
        use(chart);
    });
    delete chart;
    QCOMPARE(uses, 1);
}

void tst_stripChart::givesACurveBackAmidItsEnd()
{
    auto* const chart = new stripChart_t(nullptr);
    const QPointer<stripChartCurve_t> first = new stripChartCurve_t(nullptr);
    const QPointer<stripChartCurve_t> second = new stripChartCurve_t(nullptr);
    chart->addCurve(first);
    chart->addCurve(second);
    connect(first, &QObject::destroyed, this, [&] { QVERIFY(chart->removeCurve(second)); });
    connect(second, &QObject::destroyed, this, [&] { QVERIFY(chart->removeCurve(first)); });
    delete chart;
    QVERIFY(first.isNull() != second.isNull());
    disconnect(first ? first : second, nullptr, this, nullptr);
    delete (first ? first : second);
}

void tst_stripChart::mayBeDeletedBySlotsOfItsSignals_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<chartUse_t>("use");
    const auto row = [](const char* name, const char* signal, const chartUse_t& use) {
        QTest::newRow(name) << QByteArray(signal) << use;
    };
    const char* const time = SIGNAL(timeBoundsChanged(double, double));
    const char* const value = SIGNAL(valueBoundsChanged(double, double));
    const char* const autoscale = SIGNAL(valueAutoscaleChanged(bool));
    row("time bounds", time, [](stripChart_t* chart) { chart->timeBounds(0.0, 3.0); });
    row("scrolling on", time, [](stripChart_t* chart) { chart->scrollTime(3.0); });
    row("scrolling back", time, [](stripChart_t* chart) { chart->scrollTime(-90.0); });
    row("value bounds", value, [](stripChart_t* chart) { chart->valueBounds(0.0, 3.0); });
    row("value bounds, at the mode", autoscale,
        [](stripChart_t* chart) { chart->valueBounds(0.0, 3.0); });
    row("mode", autoscale, [](stripChart_t* chart) { chart->autoscaleValue(false); });
    row("minimum range", value, [](stripChart_t* chart) { chart->minValueRange(500.0); });
    row("time bounds, at the value bounds", value,
        [](stripChart_t* chart) { chart->timeBounds(-12.0, -8.0); });
    const chartUse_t feed = [](stripChart_t* chart) {
        (*implOf(*chart).curves().begin())->addPoint(-1.0, 1000.0);
    };
    row("a point", value, feed);
    row("clearing", value,
        [](stripChart_t* chart) { (*implOf(*chart).curves().begin())->clear(); });
}

void tst_stripChart::mayBeDeletedBySlotsOfItsSignals()
{
    QFETCH(QByteArray, signal);
    QFETCH(chartUse_t, use);
    const QPointer<stripChart_t> chart = new stripChart_t(nullptr);
    auto* const curve = new stripChartCurve_t(nullptr);
    chart->addCurve(curve);
    curve->addPoints({{-10.0, 100.0, Qt::red}, {-5.0, 200.0, Qt::red}});
    deleter_t deleter(chart);
    connect(chart, signal.constData(), &deleter, SLOT(deleteIt()));
    use(chart);
    QVERIFY(!chart);
}

// What makes Qt have a chart send signals while it is at work on it.
static void causesOfSignals()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<chartUse_t>("use");
    QTest::addColumn<bool>("isShown"); // before the use
    const QByteArray mouse = SIGNAL(mousePos(double, double));
    const QByteArray value = SIGNAL(valueBoundsChanged(double, double));
    const chartUse_t show = [](stripChart_t* chart) { chart->window()->show(); };
    const auto canvas = [](stripChart_t* chart) { return implOf(*chart).widget(); };
    QTest::newRow("the first repaint") << mouse << show << false;
    QTest::newRow("the first size") << value << show << false;
    const auto row = [](const char* name, const QByteArray& signal, const chartUse_t& use) {
        QTest::newRow(name) << signal << use << true;
    };
    row("scrolling", mouse, [](stripChart_t* chart) { chart->scrollTime(3.0); });
    row("a jump", mouse, [](stripChart_t* chart) { chart->scrollTime(90.0); });
    row("a repaint at once", mouse, [=](stripChart_t* chart) { canvas(chart)->repaint(); });
    row("a picture", mouse, [](stripChart_t* chart) { chart->grab(); });
    row("the pointer", mouse, [=](stripChart_t* chart) {
        QMouseEvent move(QEvent::MouseMove, QPointF(60, 20),
                         canvas(chart)->mapToGlobal(QPoint(60, 20)), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(canvas(chart), &move);
    });
    row("the pointer's leaving", mouse, [=](stripChart_t* chart) {
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(canvas(chart), &leave);
    });
    row("another size", value, [](stripChart_t* chart) { chart->window()->resize(200, 400); });
}

void tst_stripChart::mayBeDeletedLaterBySlotsOfItsSignals_data()
{
    causesOfSignals();
}

void tst_stripChart::mayBeDeletedLaterBySlotsOfItsSignals()
{
    QFETCH(QByteArray, signal);
    QFETCH(chartUse_t, use);
    QFETCH(bool, isShown);
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

void tst_stripChart::losesACurveToSlotsOfSignalsByQt_data()
{
    causesOfSignals();
}

void tst_stripChart::losesACurveToSlotsOfSignalsByQt()
{
    QFETCH(QByteArray, signal);
    QFETCH(chartUse_t, use);
    QFETCH(bool, isShown);
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

void tst_stripChart::losesACurveToSlotsOfItsSignals_data()
{
    QTest::addColumn<curveUse_t>("use");
    QTest::newRow("a point") << curveUse_t([](stripChartCurve_t* c) { c->addPoint(-1.0, 1e3); });
    QTest::newRow("a batch") << curveUse_t([](stripChartCurve_t* c) {
        c->addPoints({{-2.0, 1e3, Qt::red}, {-1.0, 1e4, Qt::red}});
    });
    QTest::newRow("clearing") << curveUse_t([](stripChartCurve_t* c) { c->clear(); });
}

void tst_stripChart::losesACurveToSlotsOfItsSignals()
{
    QFETCH(curveUse_t, use);
    stripChart_t chart(nullptr);
    const QPointer<stripChartCurve_t> curve = new stripChartCurve_t(nullptr);
    chart.addCurve(curve);
    curve->addPoints({{-10.0, 100.0, Qt::red}, {-5.0, 200.0, Qt::red}});
    connect(&chart, &stripChart_t::valueBoundsChanged, this, [&] { delete curve; });
    use(curve);
    QVERIFY(!curve);
    QVERIFY(implOf(chart).curves().empty());
}

void tst_stripChart::stopsAtAMinimumRangeThatIsNotPositive_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<bool>("stops");
    QTest::newRow("zero") << "minValueRange 0" << true;
    QTest::newRow("minus zero") << "minValueRange -0" << true;
    QTest::newRow("negative") << "minValueRange -1" << true;
    QTest::newRow("NaN") << "minValueRange nan" << true;
    QTest::newRow("smallest") << "minValueRange 5e-324" << false;
    QTest::newRow("infinite") << "minValueRange inf" << false;
}

void tst_stripChart::stopsAtAMinimumRangeThatIsNotPositive()
{
    QFETCH(QString, scenario);
    QFETCH(bool, stops);
    const childOutcome_t child = runChild(scenario);
    QCOMPARE(child.crashed, stops);
    QCOMPARE(child.said,
             stops ? QStringList{"fatal: stripChart_t::minValueRange: Range must be positive"}
                   : QStringList{"survived"});
}

void tst_stripChart::choosesTheBackEndOnce_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QStringList>("message");
    const QString name = "ZORBIN_QT_STRIPCHART_TYPE";
    QTest::newRow("unset") << name << QStringList();
    QTest::newRow("simple") << name + "=simple" << QStringList();
    QTest::newRow("empty") << name + "=" << QStringList{"debug: ZORBIN_QT_STRIPCHART () invalid!"};
    QTest::newRow("upper case") << name + "=GL"
                                << QStringList{"debug: ZORBIN_QT_STRIPCHART (GL) invalid!"};
    QTest::newRow("junk") << name + "=junk"
                          << QStringList{"debug: ZORBIN_QT_STRIPCHART (junk) invalid!"};
    QTest::newRow("space around") << name + "= simple"
                                  << QStringList{"debug: ZORBIN_QT_STRIPCHART ( simple) invalid!"};
    QTest::newRow("printf directives")
        << name + "=%s%n" << QStringList{"debug: ZORBIN_QT_STRIPCHART (%s%n) invalid!"};
}

void tst_stripChart::choosesTheBackEndOnce()
{
    QFETCH(QString, variable);
    QFETCH(QStringList, message);
    // Asked first by a chart, by a curve, and by several threads at once.
    for (const char* const scenario : {"chart first", "curve first", "threads first"}) {
        const childOutcome_t child = runChild(scenario, {variable});
        QVERIFY(!child.crashed);
        QCOMPARE(child.said, (message + QStringList{"simple", "painter", "simple", "painter"}));
    }
}

void tst_stripChart::takesOpenGlWhenToldTo()
{
    const childOutcome_t child = runChild("chart first", {"ZORBIN_QT_STRIPCHART_TYPE=gl"});
    QVERIFY(!child.crashed);
    // Whether there is a usable context is another matter, of which a warning may tell.
    const QStringList said = child.said.filter(QRegularExpression("^(?!warning: )"));
    QCOMPARE(said, (QStringList{"gl", "OpenGL", "gl", "OpenGL"}));
}

static int minValueRange(double range)
{
    stripChart_t chart(nullptr);
    chart.minValueRange(range);
    std::puts("survived");
    std::fflush(stdout); // a leak check may end the process without
    return 0;
}

// Prints the back end chosen, and that of a chart made, before and after the variable changes.
static int printBackEnd()
{
    for (const char* const value : {"", "gl"}) {
        if (*value)
            qputenv("ZORBIN_QT_STRIPCHART_TYPE", value);
        std::puts(stripChartImpl_t::implementationType().c_str());
        stripChart_t chart(nullptr);
        std::puts(chart.findChild<simpleStripChartImpl_t*>() ? "painter"
                  : chart.findChild<glStripChartImpl_t*>()   ? "OpenGL"
                                                             : "neither");
        std::fflush(stdout);
    }
    return 0;
}

int main(int argc, char** argv)
{
    childScenarios_t scenarios;
    for (const char* const range : {"0", "-0", "-1", "nan", "5e-324", "inf"})
        scenarios.insert(QStringLiteral("minValueRange %1").arg(QLatin1String(range)),
                         [range] { return minValueRange(std::strtod(range, nullptr)); });
    scenarios.insert("chart first", [] {
        const stripChart_t chart(nullptr);
        return printBackEnd();
    });
    scenarios.insert("curve first", [] {
        const stripChartCurve_t curve(nullptr);
        return printBackEnd();
    });
    scenarios.insert("threads first", [] {
        std::vector<std::unique_ptr<QThread>> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back(
                QThread::create([] { (void)stripChartImpl_t::implementationType(); }));
            threads.back()->start();
        }
        for (const auto& thread : threads)
            thread->wait();
        return printBackEnd();
    });
    tst_stripChart tests;
    return runTestsOrScenario(argc, argv, tests, scenarios);
}
#include "tst_stripChart.moc"
