#include "pictures.h"
#include "plainWaterfall.h"
#include "virtualSlot.h"
#include "waterfallStage.h"
#include "waterfallView.h"

#include <QApplication>
#include <QPointer>
#include <algorithm>
#include <limits>
#include <memory>
#include <type_traits>

using namespace waterfall_tests;
using namespace zorbin_qt_gui;

static const int least = std::numeric_limits<int>::min();
static const int greatest = std::numeric_limits<int>::max();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();
static const double inf = std::numeric_limits<double>::infinity();

static_assert(!std::is_copy_constructible<baseWaterfallView_t>::value, "views aren't copied");

namespace {

// A view whose subclass calls on what it overrides.
class openView_t : public baseWaterfallView_t
{
public:
    using baseWaterfallView_t::enterEvent;
};

QString pointedAt(int index, double coord)
{
    return pointedSignal(index, coord);
}

// The last virtual function of QWidget, which is protected.
struct lastOfQWidget_t : public QWidget
{
    static std::ptrdiff_t slot() { return virtualSlot(&lastOfQWidget_t::focusNextPrevChild); }
};

} // namespace

/// The view that stacks the items of a waterfall as lines: what is where, and under the pointer.
class tst_waterfallView : public waterfallTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Alone.
    void startsVerticalFromZeroToOneWithoutItems();
    void belongsToItsParent();
    void paintsAllOfItself();
    void keepsTheOrderOfItsVirtuals();
    void lacksNothingAsATypedView();
    void showsTheBackgroundWithoutModelOrRenderer();

    // What is where.
    void stacksItems_data();
    void stacksItems();
    void followsFromTheNewestItemOn();
    void mapsPointsToItems_data();
    void mapsPointsToItems();
    void mapsByTheSizeThatTheLinesHave();
    void mapsToIndicesAnIntCanHold();
    void rendersOpaqueLines();
    void leavesTheBackgroundWhereARendererPaintsNothing();
    void tellsTheRendererTheGeometry_data();
    void tellsTheRendererTheGeometry();

    // Model and renderer.
    void jumpsToTheNewestItemOfAModel();
    void keepsItsPositionWithoutAModel();
    void cutsAllConnectionsOfAnOldModel();
    void cutsAllConnectionsOfAnOldRenderer();
    void takesTheSameModelAndRendererAgain();
    void outlivesItsModel();
    void outlivesItsRenderer();
    void leavesItsModelAndRendererAlive();
    void sharesAModel();
    void rendersAnewWhenTheRendererChanges();
    void ignoresAReset();

    // Bounds, orientation, size.
    void setsAnyBounds_data();
    void setsAnyBounds();
    void turnsAlwaysAnew();
    void rendersAnewInAnotherSize();
    void survivesNoSize();
    void rendersAnewInAnotherPalette();

    // The pointer.
    void tracksThePointerWhileItIsInside();
    void tracksThePointerForASubclassThatHandlesEntering();
    void tellsWhatIsUnderThePointer();
    void tellsWhatComesUnderThePointer();
    void tellsAChangedItemUnderThePointerOnly();
    void keepsAPlaceOutside();
    void handlesNoOtherInput();
};

void tst_waterfallView::startsVerticalFromZeroToOneWithoutItems()
{
    const baseWaterfallView_t view(nullptr);
    QVERIFY(view.model() == nullptr);
    QVERIFY(view.renderer() == nullptr);
    QCOMPARE(view.position(), -1);
    QCOMPARE(view.begBound(), 0.0);
    QCOMPARE(view.endBound(), 1.0);
    QCOMPARE(view.orientation(), Qt::Vertical);
    QCOMPARE(view.minimumSizeHint(), QSize(50, 50));
    QVERIFY(!view.hasMouseTracking());
}

void tst_waterfallView::belongsToItsParent()
{
    QWidget parent;
    const baseWaterfallView_t view(&parent);
    QCOMPARE(view.parentWidget(), &parent);
}

void tst_waterfallView::paintsAllOfItself()
{
    const baseWaterfallView_t view(nullptr);
    QVERIFY(view.testAttribute(Qt::WA_OpaquePaintEvent));
}

void tst_waterfallView::keepsTheOrderOfItsVirtuals()
{
    const std::ptrdiff_t last = lastOfQWidget_t::slot();
    QCOMPARE(virtualSlot(&baseWaterfallView_t::model), last + 1);
    QCOMPARE(virtualSlot(&baseWaterfallView_t::renderer), last + 2);
}

void tst_waterfallView::lacksNothingAsATypedView()
{
    const waterfall_t waterfall(QSize(10, 10));
    countingModel_t* const model = waterfall.view.model();
    patternRenderer_t* const renderer = waterfall.view.renderer();
    QVERIFY(model == &waterfall.model);
    QVERIFY(renderer == &waterfall.renderer);
}

void tst_waterfallView::showsTheBackgroundWithoutModelOrRenderer()
{
    countingModel_t model;
    model.reset(0, 100);
    patternRenderer_t renderer;
    baseWaterfallView_t view;
    view.resize(60, 60);
    QCOMPARE(firstDifference(snapshot(view), blank(view)), QString());
    view._model(&model);
    QCOMPARE(firstDifference(snapshot(view), blank(view)), QString());
    view._model(nullptr);
    view._renderer(&renderer);
    QCOMPARE(firstDifference(snapshot(view), blank(view)), QString());
    QCOMPARE(renderer.takeCalls(), QStringList());
}

void tst_waterfallView::stacksItems_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("count");

    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        const char* const name = orientation == Qt::Vertical ? "vertical" : "horizontal";
        QTest::addRow("%s, full", name) << orientation << 0 << 500;
        QTest::addRow("%s, exactly full", name) << orientation << 0 << 60;
        QTest::addRow("%s, half full", name) << orientation << 0 << 20;
        QTest::addRow("%s, one item", name) << orientation << 0 << 1;
        QTest::addRow("%s, no item", name) << orientation << 0 << 0;
        QTest::addRow("%s, across zero", name) << orientation << -20 << 50;
        QTest::addRow("%s, below zero", name) << orientation << -500 << 100;
        QTest::addRow("%s, near the least", name) << orientation << least << 30;
        QTest::addRow("%s, near the greatest", name) << orientation << greatest - 40 << 40;
    }
}

void tst_waterfallView::stacksItems()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, begin);
    QFETCH(int, count);
    waterfall_t waterfall(QSize(60, 70), 0, orientation);
    waterfall.model.reset(begin, static_cast<unsigned>(count));
    waterfall.view._model(&waterfall.model);
    QVERIFY(waterfall.show());
    QCOMPARE(waterfall.view.position(),
             static_cast<int>(std::max<qint64>(qint64(begin) + count - 1, least)));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::followsFromTheNewestItemOn()
{
    waterfall_t waterfall(QSize(200, 100), 500);
    QCOMPARE(waterfall.view.position(), 499);
    const QImage picture = snapshot(waterfall.view);
    const baseWaterfallRenderer_t::context_t context{200, 0.0, 1.0, 200.0};
    QCOMPARE(picture.pixel(10, 0), patternRenderer_t::pixel(context, 499, 10));
    QCOMPARE(picture.pixel(10, 99), patternRenderer_t::pixel(context, 400, 10));
}

void tst_waterfallView::mapsPointsToItems_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("inside");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("coord");

    // 500 items on 200 x 100 pixels, from 10.0 to 30.0; -7.0 is what a refused coordinate keeps.
    const Qt::Orientation rows = Qt::Vertical;
    QTest::newRow("rows, newest") << rows << QPoint(10, 0) << true << 499 << 11.0;
    QTest::newRow("rows, left") << rows << QPoint(0, 40) << true << 459 << 10.0;
    QTest::newRow("rows, last pixel") << rows << QPoint(199, 99) << true << 400 << 29.9;
    QTest::newRow("rows, beyond left") << rows << QPoint(-1, 0) << false << least << -7.0;
    QTest::newRow("rows, beyond right") << rows << QPoint(200, 0) << false << least << -7.0;
    QTest::newRow("rows, above") << rows << QPoint(0, -1) << false << least << -7.0;
    QTest::newRow("rows, below") << rows << QPoint(0, 100) << false << least << -7.0;
    const Qt::Orientation columns = Qt::Horizontal;
    QTest::newRow("columns, newest") << columns << QPoint(199, 0) << true << 499 << 10.0;
    QTest::newRow("columns, oldest") << columns << QPoint(0, 50) << true << 300 << 20.0;
    QTest::newRow("columns, last pixel") << columns << QPoint(199, 99) << true << 499 << 29.8;
    QTest::newRow("columns, beyond left") << columns << QPoint(-1, 0) << false << least << -7.0;
    QTest::newRow("columns, beyond right") << columns << QPoint(200, 0) << false << least << -7.0;
    QTest::newRow("columns, below") << columns << QPoint(0, 100) << false << least << -7.0;
}

void tst_waterfallView::mapsPointsToItems()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(QPoint, point);
    waterfall_t waterfall(QSize(200, 100), 500, orientation);
    waterfall.view.bounds(10.0, 30.0);
    int index = 3;
    double coord = -7.0;
    QTEST(waterfall.view.mapToItem(point, index, coord), "inside");
    QTEST(index, "index");
    QTEST(coord, "coord");
}

// A hidden widget has a new size at once, its lines get it with the resize event.
void tst_waterfallView::mapsByTheSizeThatTheLinesHave()
{
    waterfall_t waterfall(QSize(200, 100), 500, Qt::Horizontal);
    waterfall.view.resize(400, 300);
    int index = 0;
    double coord = 0.0;
    QVERIFY(waterfall.view.mapToItem(QPoint(399, 50), index, coord));
    QCOMPARE(index, 499 + 200);
    QCOMPARE(coord, 0.5);
}

void tst_waterfallView::mapsToIndicesAnIntCanHold()
{
    waterfall_t waterfall(QSize(60, 60));
    int index = 0;
    double coord = 0.0;
    waterfall.view.position(least + 10);
    QVERIFY(waterfall.view.mapToItem(QPoint(0, 10), index, coord));
    QCOMPARE(index, least);
    QVERIFY(waterfall.view.mapToItem(QPoint(0, 11), index, coord));
    QCOMPARE(index, least);
    waterfall.view.orientation(Qt::Horizontal);
    waterfall.view.position(greatest);
    waterfall.view.resize(100, 60);
    QVERIFY(waterfall.view.mapToItem(QPoint(59, 0), index, coord));
    QCOMPARE(index, greatest);
    QVERIFY(waterfall.view.mapToItem(QPoint(60, 0), index, coord));
    QCOMPARE(index, greatest);
}

namespace {

// Paints one colour.
class flatRenderer_t : public baseWaterfallRenderer_t
{
public:
    explicit flatRenderer_t(QRgb color) : m_color(color) {}

    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t*, unsigned) override
    {
        std::fill_n(pixels, context->numPixels, m_color);
    }

private:
    const QRgb m_color;
};

} // namespace

void tst_waterfallView::rendersOpaqueLines()
{
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(20, 20), 20, orientation);
        flatRenderer_t renderer(0x00123456U); // no alpha
        waterfall.view._renderer(&renderer);
        QImage picture(20, 20, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        waterfall.view.render(&picture);
        QImage wanted(20, 20, QImage::Format_ARGB32_Premultiplied);
        wanted.fill(0xFF123456U);
        QCOMPARE(picture, wanted);
    }
}

void tst_waterfallView::leavesTheBackgroundWhereARendererPaintsNothing()
{
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 60), 100, orientation);
        QPalette palette = waterfall.view.palette();
        palette.setColor(QPalette::Window, QColor(1, 2, 3));
        waterfall.renderer.pixelsLeftAlone = 15;
        waterfall.view.setPalette(palette);
        QCOMPARE(waterfall.renderer.background, qRgb(1, 2, 3));
        QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
        QCOMPARE(snapshot(waterfall.view).pixel(59, 59), qRgb(1, 2, 3));
    }
}

void tst_waterfallView::tellsTheRendererTheGeometry_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<double>("beg");
    QTest::addColumn<double>("end");
    QTest::addColumn<QString>("call");

    QTest::newRow("rows") << Qt::Vertical << 10.0 << 30.0 << "5: 100 pixels from 10 to 30, scale 5";
    QTest::newRow("columns") << Qt::Horizontal << 10.0 << 30.0
                             << "5: 50 pixels from 10 to 30, scale 2.5";
    QTest::newRow("reversed") << Qt::Vertical << 30.0 << 10.0
                              << "5: 100 pixels from 30 to 10, scale -5";
    QTest::newRow("equal") << Qt::Vertical << 2.0 << 2.0 << "5: 100 pixels from 2 to 2, scale inf";
    QTest::newRow("NaN") << Qt::Vertical << nan_ << 2.0 << "5: 100 pixels from nan to 2, scale nan";
    QTest::newRow("infinite") << Qt::Vertical << 0.0 << inf
                              << "5: 100 pixels from 0 to inf, scale 0";
}

void tst_waterfallView::tellsTheRendererTheGeometry()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(double, beg);
    QFETCH(double, end);
    QFETCH(QString, call);
    waterfall_t waterfall(QSize(100, 50), 6, orientation);
    waterfall.view.bounds(beg, end);
    QCOMPARE(waterfall.renderer.takeCalls().value(0), call);
    QVERIFY(waterfall.renderer.lastModel == &waterfall.model);
}

void tst_waterfallView::jumpsToTheNewestItemOfAModel()
{
    waterfall_t waterfall(QSize(60, 3), 10);
    countingModel_t other;
    other.reset(100, 50);
    waterfall.view._model(&other);
    QCOMPARE(waterfall.view.position(), 149);
    QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt}); // no positionChanged()
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(149, 147));
}

void tst_waterfallView::keepsItsPositionWithoutAModel()
{
    waterfall_t waterfall(QSize(60, 60), 10);
    waterfall.view._model(nullptr);
    QVERIFY(waterfall.view.model() == nullptr);
    QCOMPARE(waterfall.view.position(), 9);
    QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt});
    QCOMPARE(firstDifference(snapshot(waterfall.view), blank(waterfall.view)), QString());
}

void tst_waterfallView::cutsAllConnectionsOfAnOldModel()
{
    waterfall_t waterfall(QSize(60, 60), 10);
    countingModel_t other;
    connect(&waterfall.model, &countingModel_t::modelReset, &waterfall.view, &QWidget::hide);
    bool told = false;
    connect(&waterfall.model, &countingModel_t::modelReset, this, [&told] { told = true; });
    QVERIFY(waterfall.show());
    waterfall.view._model(&other);
    waterfall.log->take();
    waterfall.model.add(3);
    waterfall.model.drop(1);
    waterfall.model.reset(0, 0);
    QCOMPARE(waterfall.log->take(), QStringList());
    QVERIFY(waterfall.view.isVisible()); // an application's own connection to the view is gone, too
    QVERIFY(told);                       // one to something else isn't
}

void tst_waterfallView::cutsAllConnectionsOfAnOldRenderer()
{
    waterfall_t waterfall(QSize(60, 60), 10);
    connect(&waterfall.renderer, &QObject::objectNameChanged, &waterfall.view, &QWidget::hide);
    QVERIFY(waterfall.show());
    patternRenderer_t other;
    waterfall.view._renderer(&other);
    QVERIFY(waterfall.view.renderer() == &other);
    QCOMPARE(other.takeIndices(), downwards(9, 0));
    QCOMPARE(waterfall.log->take(), QStringList());
    Q_EMIT waterfall.renderer.rendererChanged();
    waterfall.renderer.setObjectName("another");
    QCOMPARE(other.takeCalls(), QStringList());
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QVERIFY(waterfall.view.isVisible());
}

void tst_waterfallView::takesTheSameModelAndRendererAgain()
{
    waterfall_t waterfall(QSize(60, 5), 10);
    waterfall.view._model(&waterfall.model);
    waterfall.view._renderer(&waterfall.renderer);
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(9, 5) + downwards(9, 5));
    waterfall.model.add(1);
    QCOMPARE(waterfall.renderer.takeIndices(), QList<int>{10}); // once
    Q_EMIT waterfall.renderer.rendererChanged();
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(10, 6));
}

void tst_waterfallView::outlivesItsModel()
{
    waterfall_t waterfall(QSize(60, 60));
    auto model = std::make_unique<countingModel_t>();
    model->reset(0, 100);
    waterfall.view._model(model.get());
    QVERIFY(waterfall.show());
    const QImage before = shown(waterfall.view);
    model.reset();
    QVERIFY(waterfall.view.model() == nullptr);
    QCOMPARE(waterfall.view.position(), 99);
    waterfall.view.update();
    QCOMPARE(firstDifference(shown(waterfall.view), before), QString()); // lines aren't lost
    waterfall.view.addItem();
    waterfall.view.dropItem();
    QCOMPARE(firstDifference(shown(waterfall.view), before), QString());
    waterfall.view.regenAll();
    QCOMPARE(firstDifference(shown(waterfall.view), blank(waterfall.view)), QString());
    waterfall.view.position(105);
    waterfall.view._model(&waterfall.model);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
}

void tst_waterfallView::outlivesItsRenderer()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    auto renderer = std::make_unique<patternRenderer_t>();
    waterfall.view._renderer(renderer.get());
    renderer.reset();
    QVERIFY(waterfall.view.renderer() == nullptr);
    waterfall.model.add(60);
    waterfall.model.drop(1);
    QCOMPARE(firstDifference(snapshot(waterfall.view), blank(waterfall.view)), QString());
    waterfall.view._renderer(&waterfall.renderer);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::leavesItsModelAndRendererAlive()
{
    QPointer<countingModel_t> model = new countingModel_t(nullptr);
    QPointer<patternRenderer_t> renderer = new patternRenderer_t(nullptr);
    {
        view_t view;
        view._model(model);
        view._renderer(renderer);
    }
    QVERIFY(!model.isNull());
    QVERIFY(!renderer.isNull());
    model->add(1); // nobody there any more
    Q_EMIT renderer->rendererChanged();
    delete model;
    delete renderer;
}

void tst_waterfallView::sharesAModel()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    view_t second;
    second._model(&waterfall.model);
    second._renderer(&waterfall.renderer);
    second.position(50);
    waterfall.model.add(1);
    QCOMPARE(waterfall.view.position(), 100);
    QCOMPARE(second.position(), 50);
}

void tst_waterfallView::rendersAnewWhenTheRendererChanges()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    QVERIFY(waterfall.show());
    waterfall.renderer.seed = 12345;
    Q_EMIT waterfall.renderer.rendererChanged();
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(99, 40));
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::ignoresAReset()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.model.reset(1000, 100);
    QCOMPARE(waterfall.view.position(), 99);
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
}

void tst_waterfallView::setsAnyBounds_data()
{
    QTest::addColumn<double>("beg");
    QTest::addColumn<double>("end");

    QTest::newRow("others") << 10.0 << 20.0;
    QTest::newRow("the same") << 0.0 << 1.0;
    QTest::newRow("reversed") << 20.0 << 10.0;
    QTest::newRow("equal") << 5.0 << 5.0;
    QTest::newRow("NaN") << nan_ << nan_;
    QTest::newRow("infinite") << -inf << inf;
    QTest::newRow("huge") << -1e308 << 1e308;
}

void tst_waterfallView::setsAnyBounds()
{
    QFETCH(double, beg);
    QFETCH(double, end);
    waterfall_t waterfall(QSize(60, 5), 10);
    waterfall.view.bounds(beg, end);
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(9, 5));
    QCOMPARE(waterfall.log->take(), QStringList({boundsSetSignal(beg, end), nothingPointedAt}));
    QVERIFY(waterfall.log->isConsistent());
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::turnsAlwaysAnew()
{
    waterfall_t waterfall(QSize(60, 50), 100);
    QVERIFY(waterfall.show());
    for (const Qt::Orientation orientation :
         {Qt::Vertical, Qt::Horizontal, Qt::Horizontal, Qt::Vertical}) {
        waterfall.view.orientation(orientation);
        QCOMPARE(waterfall.view.orientation(), orientation);
        QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt});
        QCOMPARE(waterfall.renderer.takeIndices(),
                 downwards(99, orientation == Qt::Vertical ? 50 : 40));
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

void tst_waterfallView::rendersAnewInAnotherSize()
{
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 60), 1000, orientation);
        QVERIFY(waterfall.show());
        waterfall.model.add(33);
        waterfall.log->take();
        waterfall.renderer.takeCalls();
        waterfall.view.resize(90, 80);
        QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt});
        QCOMPARE(waterfall.renderer.takeIndices(),
                 downwards(1032, orientation == Qt::Vertical ? 953 : 943));
        for (const QSize size : {QSize(50, 90), QSize(1, 70), QSize(70, 1), QSize(61, 61)}) {
            waterfall.view.resize(size);
            QTRY_COMPARE(shown(waterfall.view).size(), size);
            QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
        }
    }
}

void tst_waterfallView::survivesNoSize()
{
    QWidget window;
    window.resize(100, 100);
    countingModel_t model;
    model.reset(0, 100);
    patternRenderer_t renderer;
    auto* const view = new view_t(&window);
    view->resize(0, 0);
    view->_model(&model);
    view->_renderer(&renderer);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    renderer.takeCalls(); // of the size that Qt gives a child at first
    for (const QSize size : {QSize(0, 0), QSize(30, 0), QSize(0, 30), QSize(0, 0)}) {
        for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
            view->resize(size);
            view->orientation(orientation);
            view->position(0);
            view->position(50);
            model.add(1);
            model.drop(1);
            view->bounds(0.0, 2.0);
            int index = 0;
            double coord = 0.0;
            QVERIFY(!view->mapToItem(QPoint(0, 0), index, coord));
            shown(window);
        }
    }
    QCOMPARE(renderer.takeCalls(), QStringList());
    view->resize(30, 30);
    QCOMPARE(renderer.takeIndices().size(), 30);
}

void tst_waterfallView::rendersAnewInAnotherPalette()
{
    waterfall_t waterfall(QSize(60, 60), 20);
    QVERIFY(waterfall.show());
    QPalette palette = waterfall.view.palette();
    palette.setColor(QPalette::Window, Qt::darkCyan);
    waterfall.view.setPalette(palette);
    QCOMPARE(waterfall.renderer.takeIndices(), downwards(19, 0));
    QCOMPARE(waterfall.log->take(), QStringList());
    const QImage picture = shown(waterfall.view);
    QCOMPARE(firstDifference(picture, waterfall.wanted()), QString());
    QCOMPARE(picture.pixel(0, 59), QColor(Qt::darkCyan).rgb());
}

void tst_waterfallView::tracksThePointerWhileItIsInside()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    QVERIFY(waterfall.show());
    QTest::mouseMove(&waterfall.view, QPoint(30, 20));
    QTRY_VERIFY(waterfall.view.hasMouseTracking());
    QTest::mouseMove(&waterfall.view, QPoint(30, 21));
    QStringList said;
    QTRY_VERIFY((said += waterfall.log->take()).contains(pointedAt(78, 0.5)));
    QCursor::setPos(1900, 1190);
    QTRY_VERIFY(!waterfall.view.hasMouseTracking());
    QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt});
}

void tst_waterfallView::tracksThePointerForASubclassThatHandlesEntering()
{
    openView_t view;
    QEnterEvent enter(QPointF(1.0, 1.0), QPointF(1.0, 1.0), QPointF(1.0, 1.0));
    view.enterEvent(&enter);
    QVERIFY(view.hasMouseTracking());
}

void tst_waterfallView::tellsWhatIsUnderThePointer()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    movePointer(waterfall.view, QPoint(30, 10));
    movePointer(waterfall.view, QPoint(30, 10)); // also when it is the same place
    leave(waterfall.view);
    leave(waterfall.view);
    QCOMPARE(waterfall.log->take(), QStringList({pointedAt(89, 0.5), pointedAt(89, 0.5),
                                                 nothingPointedAt, nothingPointedAt}));
}

void tst_waterfallView::tellsWhatComesUnderThePointer()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    movePointer(waterfall.view, QPoint(30, 10));
    waterfall.log->take();
    waterfall.model.add(1);
    QCOMPARE(waterfall.log->take(), QStringList({positionSignal(100), pointedAt(90, 0.5)}));
    waterfall.view.bounds(1.0, 2.0);
    QCOMPARE(waterfall.log->take(), QStringList({boundsSetSignal(1.0, 2.0), pointedAt(90, 1.5)}));
    waterfall.view.orientation(Qt::Horizontal);
    QCOMPARE(waterfall.log->take(), QStringList{pointedAt(71, 1.0 + 1.0 / 6.0)});
    waterfall.view._renderer(nullptr);
    QCOMPARE(waterfall.log->take(), QStringList());
    waterfall.view._model(nullptr);
    QCOMPARE(waterfall.log->take(), QStringList{pointedAt(71, 1.0 + 1.0 / 6.0)});
}

void tst_waterfallView::tellsAChangedItemUnderThePointerOnly()
{
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 60), 20, orientation);
        movePointer(waterfall.view, orientation == Qt::Vertical ? QPoint(30, 18) : QPoint(41, 30));
        QCOMPARE(waterfall.log->take(), QStringList{pointedAt(1, 0.5)});
        waterfall.model.drop(1); // beside the pointer
        QCOMPARE(waterfall.log->take(), QStringList());
        waterfall.model.drop(1);
        QCOMPARE(waterfall.log->take(), QStringList{pointedAt(1, 0.5)});
        waterfall.model.drop(1);
        QCOMPARE(waterfall.log->take(), QStringList());
    }
}

// With a button held moves come from outside, too.
void tst_waterfallView::keepsAPlaceOutside()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    movePointer(waterfall.view, QPoint(70, 10));
    QCOMPARE(waterfall.log->take(), QStringList{nothingPointedAt});
    waterfall.view.resize(80, 60);
    waterfall.view.orientation(Qt::Vertical);
    QCOMPARE(waterfall.log->take(), QStringList{pointedAt(89, 0.875)});
}

void tst_waterfallView::handlesNoOtherInput()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    QVERIFY(waterfall.show());
    const int position = waterfall.view.position();
    QTest::mouseClick(&waterfall.view, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QTest::mouseDClick(&waterfall.view, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QTest::keyClick(&waterfall.view, Qt::Key_PageDown);
    QCOMPARE(waterfall.view.position(), position);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QVERIFY(waterfall.log->take().filter("positionChanged").isEmpty());
}

ZORBIN_TEST_MAIN(tst_waterfallView, QApplication)
#include "tst_waterfallView.moc"
