#include "childProcess.h"
#include "paintLog.h"
#include "pictures.h"
#include "plainWaterfall.h"
#include "randomNumbers.h"
#include "testCase.h"
#include "virtualSlot.h"
#include "waterfallView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <type_traits>

using namespace zorbin_qt_gui;

static const int least = std::numeric_limits<int>::min();
static const int greatest = std::numeric_limits<int>::max();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();
static const double inf = std::numeric_limits<double>::infinity();

static_assert(!std::is_copy_constructible<baseWaterfallView_t>::value, "views aren't copied");

namespace {

// A typed view, as an application derives it.
class view_t : public baseWaterfallView_t
{
public:
    using baseWaterfallView_t::baseWaterfallView_t;

    countingModel_t* model() const override
    {
        return static_cast<countingModel_t*>(baseWaterfallView_t::model());
    }

    patternRenderer_t* renderer() const override
    {
        return static_cast<patternRenderer_t*>(baseWaterfallView_t::renderer());
    }
};

// A view whose subclass calls on what it overrides.
class openView_t : public baseWaterfallView_t
{
public:
    using baseWaterfallView_t::enterEvent;
};

// Everything that a view announces, in order, and whether the view was at it by then.
class viewLog_t
{
public:
    explicit viewLog_t(baseWaterfallView_t& view)
    {
        QObject::connect(&view, &baseWaterfallView_t::boundsChanged, &view,
                         [this, &view](double beg, double end) {
                             m_texts.append(boundsSetSignal(beg, end));
                             const auto same = [](double a, double b) {
                                 return a == b || (std::isnan(a) && std::isnan(b));
                             };
                             m_consistent &= same(view.begBound(), beg);
                             m_consistent &= same(view.endBound(), end);
                         });
        QObject::connect(&view, &baseWaterfallView_t::positionChanged, &view,
                         [this, &view](int index) {
                             m_texts.append(positionSignal(index));
                             m_consistent &= view.position() == index;
                         });
        QObject::connect(
            &view, &baseWaterfallView_t::pointedItemChanged, &view,
            [this](int index, double coord) { m_texts.append(pointedSignal(index, coord)); });
    }

    QStringList take() { return std::exchange(m_texts, QStringList()); }
    bool isConsistent() const { return m_consistent; }

private:
    QStringList m_texts;
    bool m_consistent = true;
};

const QString nothingPointedAt = QStringLiteral("pointedItemChanged(-2147483648, nan)");

// A view of a model and a renderer; the geometry is settled, nothing is logged yet.
struct waterfall_t
{
    explicit waterfall_t(const QSize& size, int items = 0,
                         Qt::Orientation orientation = Qt::Vertical)
    {
        view.resize(size);
        view.orientation(orientation); // takes the size over although the view isn't shown
        model.reset(0, static_cast<unsigned>(items));
        view._model(&model);
        view._renderer(&renderer);
        log = std::make_unique<viewLog_t>(view);
        renderer.takeCalls();
    }

    /// Shows the view and forgets what that did.
    bool show()
    {
        view.show();
        if (!QTest::qWaitForWindowExposed(&view, patienceMs()))
            return false;
        paints = std::make_unique<paintLog_t>(&view);
        shown(view);
        paints->take();
        log->take();
        renderer.takeCalls();
        return true;
    }

    /// What is to be seen: every pixel by itself.
    QImage wanted() const
    {
        QImage picture = blank(view);
        const bool isVertical = view.orientation() == Qt::Vertical;
        const int length = isVertical ? picture.width() : picture.height();
        const baseWaterfallRenderer_t::context_t context{
            static_cast<unsigned>(length), view.begBound(), view.endBound(),
            length / (view.endBound() - view.begBound())};
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int back = isVertical ? y : picture.width() - 1 - x;
                const qint64 index = static_cast<qint64>(view.position()) - back;
                const int k = isVertical ? x : y;
                if (index >= model.begin() && index < model.end() &&
                    k < length - static_cast<int>(renderer.pixelsLeftAlone))
                    picture.setPixel(x, y,
                                     patternRenderer_t::pixel(context, static_cast<int>(index),
                                                              static_cast<unsigned>(k),
                                                              renderer.seed));
            }
        }
        return picture;
    }

    countingModel_t model;
    patternRenderer_t renderer;
    view_t view;
    std::unique_ptr<viewLog_t> log;
    std::unique_ptr<paintLog_t> paints;
};

// The indices from first down to last.
QList<int> downwards(int first, int last)
{
    QList<int> indices;
    for (int i = first; i >= last; --i)
        indices.append(i);
    return indices;
}

void movePointer(QWidget& widget, const QPoint& to)
{
    QEnterEvent enter(to, to, widget.mapToGlobal(to)); // else Qt keeps the move from the widget
    QApplication::sendEvent(&widget, &enter);
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

void leave(QWidget& widget)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

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

/// The view that stacks the items of a waterfall as lines and scrolls as they arrive.
class tst_waterfallView : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

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

    // Moving.
    void staysSilentAtTheSamePosition();
    void rendersWhatComesIntoView_data();
    void rendersWhatComesIntoView();
    void announcesPositionThenPointedItem();
    void scrollsOverItemsThatAreNotThere();
    void movesToTheEndsOfAnInt();

    // Following.
    void scrollsByANewItem();
    void staysWhenScrolledBack();
    void rendersAVisibleNewItemInPlace();
    void blanksADroppedItem();
    void ignoresADroppedItemOutOfSight();
    void takesSlotsWithoutAModel();
    void followsToTheGreatestIndex();
    void takesAModelAtTheLeastIndex();

    // Damage.
    void repaintsOnlyTheUncoveredStrip_data();
    void repaintsOnlyTheUncoveredStrip();
    void repaintsOnlyAChangedLine_data();
    void repaintsOnlyAChangedLine();
    void repaintsEverythingAfterAJump();
    void repaintsEverythingForOtherLines_data();
    void repaintsEverythingForOtherLines();

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

    // Anything.
    void survivesARendererThatChangesIt_data();
    void survivesARendererThatChangesIt();
    void fillsWhatNoImageCanHold();
    void paintsOnlyTheLinesThatItHas();
    void survivesSlotsThatDeleteIt_data();
    void survivesSlotsThatDeleteIt();
    void showsAndSaysWhatThePlainOneDoes_data();
    void showsAndSaysWhatThePlainOneDoes();
    void staysExactOverALongRun();
    void staysExactOnDenseDisplays();
};

void tst_waterfallView::setUp()
{
    QCursor::setPos(1900, 1190); // away from all windows
}

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

void tst_waterfallView::staysSilentAtTheSamePosition()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(waterfall.view.position());
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
}

void tst_waterfallView::rendersWhatComesIntoView_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<QList<int>>("rendered");

    // 10 lines of 1000 items; the newest shown is 500.
    QTest::newRow("one on") << 1 << downwards(501, 501);
    QTest::newRow("three on") << 3 << downwards(503, 501);
    QTest::newRow("nine on") << 9 << downwards(509, 501);
    QTest::newRow("ten on, a jump") << 10 << downwards(510, 501);
    QTest::newRow("eleven on, a jump") << 11 << downwards(511, 502);
    QTest::newRow("one back") << -1 << downwards(490, 490);
    QTest::newRow("three back") << -3 << downwards(490, 488);
    QTest::newRow("nine back") << -9 << downwards(490, 482);
    QTest::newRow("ten back, a jump") << -10 << downwards(490, 481);
    QTest::newRow("far on") << 499 << downwards(999, 990);
    QTest::newRow("beyond the end") << 505 << downwards(999, 996);
    QTest::newRow("beyond the begin") << -497 << downwards(3, 0);
    QTest::newRow("out of everything") << 100000 << QList<int>();
}

void tst_waterfallView::rendersWhatComesIntoView()
{
    QFETCH(int, distance);
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        const QSize size = orientation == Qt::Vertical ? QSize(60, 10) : QSize(10, 60);
        waterfall_t waterfall(size, 1000, orientation);
        QVERIFY(waterfall.show());
        waterfall.view.position(500);
        shown(waterfall.view);
        waterfall.renderer.takeCalls();
        waterfall.view.position(500 + distance);
        QTEST(waterfall.renderer.takeIndices(), "rendered");
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

void tst_waterfallView::announcesPositionThenPointedItem()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(96);
    waterfall.view.position(1000);
    QCOMPARE(waterfall.log->take(), QStringList({positionSignal(96), nothingPointedAt,
                                                 positionSignal(1000), nothingPointedAt}));
    QVERIFY(waterfall.log->isConsistent());
}

void tst_waterfallView::scrollsOverItemsThatAreNotThere()
{
    waterfall_t waterfall(QSize(60, 60), 30);
    QVERIFY(waterfall.show());
    for (const int position : {40, 10, -20, -29, -31, -90, -60, 5, 29}) {
        waterfall.view.position(position);
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

void tst_waterfallView::movesToTheEndsOfAnInt()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(greatest - 10, 10);
    waterfall.view.position(greatest);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(greatest - 5);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(least);
    waterfall.view.position(least + 3);
    waterfall.model.reset(least, 3);
    waterfall.view.regenAll();
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(greatest);
    QCOMPARE(waterfall.view.position(), greatest);
    QVERIFY(waterfall.log->isConsistent());
}

void tst_waterfallView::scrollsByANewItem()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    QVERIFY(waterfall.show());
    waterfall.model.add(1);
    QCOMPARE(waterfall.view.position(), 100);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList{"100: 60 pixels from 0 to 1, scale 60"});
    QCOMPARE(waterfall.log->take(), QStringList({positionSignal(100), nothingPointedAt}));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::staysWhenScrolledBack()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(98);
    QVERIFY(waterfall.show());
    waterfall.model.add(70);
    QCOMPARE(waterfall.view.position(), 98);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.paints->take(), QRegion());
}

// The view is ahead of the model: the items arrive in lines that it shows already.
void tst_waterfallView::rendersAVisibleNewItemInPlace()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(120);
    QVERIFY(waterfall.show());
    waterfall.model.add(3);
    QCOMPARE(waterfall.view.position(), 120);
    QCOMPARE(waterfall.renderer.takeIndices(), QList<int>({100, 101, 102}));
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.paints->take(), QRegion(0, 18, 60, 3));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::blanksADroppedItem()
{
    waterfall_t waterfall(QSize(60, 60), 30);
    QVERIFY(waterfall.show());
    waterfall.model.drop(2);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QCOMPARE(waterfall.log->take(), QStringList());
    const QImage picture = shown(waterfall.view);
    QCOMPARE(firstDifference(picture, waterfall.wanted()), QString());
    QCOMPARE(picture.pixel(5, 29), blank(waterfall.view).pixel(0, 0));
}

void tst_waterfallView::ignoresADroppedItemOutOfSight()
{
    waterfall_t waterfall(QSize(60, 60), 61);
    QVERIFY(waterfall.show());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion(0, 59, 60, 1));
}

void tst_waterfallView::takesSlotsWithoutAModel()
{
    baseWaterfallView_t view;
    viewLog_t log(view);
    view.addItem();
    view.dropItem();
    view.regenAll();
    QCOMPARE(log.take(), QStringList());
    view.position(7);
    QCOMPARE(view.position(), 7);
}

void tst_waterfallView::followsToTheGreatestIndex()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(greatest - 5, 2);
    waterfall.view._model(&waterfall.model);
    waterfall.model.add(10); // only three more can be counted
    QCOMPARE(waterfall.view.position(), greatest - 1);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::takesAModelAtTheLeastIndex()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(least, 0);
    waterfall.view._model(&waterfall.model);
    QCOMPARE(waterfall.view.position(), least); // the item before that has no index
    waterfall.view.addItem();
    waterfall.view.dropItem();
    waterfall.model.add(2);
    QCOMPARE(waterfall.view.position(), least + 1);
    waterfall.model.drop(1);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::repaintsOnlyTheUncoveredStrip_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("distance");
    QTest::addColumn<QRect>("strip");

    QTest::newRow("rows, an item") << Qt::Vertical << 1 << QRect(0, 0, 100, 1);
    QTest::newRow("rows, on") << Qt::Vertical << 7 << QRect(0, 0, 100, 7);
    QTest::newRow("rows, back") << Qt::Vertical << -7 << QRect(0, 53, 100, 7);
    QTest::newRow("rows, nearly all") << Qt::Vertical << 59 << QRect(0, 0, 100, 59);
    QTest::newRow("columns, an item") << Qt::Horizontal << 1 << QRect(99, 0, 1, 60);
    QTest::newRow("columns, on") << Qt::Horizontal << 7 << QRect(93, 0, 7, 60);
    QTest::newRow("columns, back") << Qt::Horizontal << -7 << QRect(0, 0, 7, 60);
    QTest::newRow("columns, back by an item") << Qt::Horizontal << -1 << QRect(0, 0, 1, 60);
    QTest::newRow("columns, nearly all") << Qt::Horizontal << 99 << QRect(1, 0, 99, 60);
}

void tst_waterfallView::repaintsOnlyTheUncoveredStrip()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, distance);
    QFETCH(QRect, strip);
    waterfall_t waterfall(QSize(100, 60), 1000, orientation);
    QVERIFY(waterfall.show());
    waterfall.view.position(500);
    waterfall.paints->take();
    waterfall.view.position(500 + distance);
    QCOMPARE(waterfall.paints->take(), QRegion(strip));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::repaintsOnlyAChangedLine_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<QRect>("line");

    QTest::newRow("row") << Qt::Vertical << QRect(0, 29, 100, 1);
    QTest::newRow("column") << Qt::Horizontal << QRect(70, 0, 1, 60);
}

void tst_waterfallView::repaintsOnlyAChangedLine()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(QRect, line);
    waterfall_t waterfall(QSize(100, 60), 30, orientation);
    QVERIFY(waterfall.show());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion(line));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::repaintsEverythingAfterAJump()
{
    waterfall_t waterfall(QSize(100, 60), 1000);
    QVERIFY(waterfall.show());
    waterfall.view.position(999 - 60);
    QCOMPARE(waterfall.paints->take(), QRegion(0, 0, 100, 60));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallView::repaintsEverythingForOtherLines_data()
{
    QTest::addColumn<int>("operation");
    const char* const names[] = {"model", "renderer", "bounds", "regenAll"};
    for (int i = 0; i < 4; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_waterfallView::repaintsEverythingForOtherLines()
{
    QFETCH(int, operation);
    waterfall_t waterfall(QSize(100, 60), 1000);
    QVERIFY(waterfall.show());
    waterfall.model.add(17); // the ring is turned by now
    shown(waterfall.view);
    waterfall.paints->take();
    const std::function<void()> operations[] = {
        [&] { waterfall.view._model(&waterfall.model); },
        [&] { waterfall.view._renderer(&waterfall.renderer); },
        [&] { waterfall.view.bounds(2.0, 5.0); },
        [&] { waterfall.view.regenAll(); },
    };
    operations[operation]();
    QCOMPARE(waterfall.paints->take(), QRegion(0, 0, 100, 60));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
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

namespace {

// Does something else when it is first asked for a line.
class meddlingRenderer_t : public patternRenderer_t
{
public:
    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                unsigned int index) override
    {
        if (meddle)
            std::exchange(meddle, nullptr)();
        patternRenderer_t::render(context, pixels, model, index);
    }

    std::function<void()> meddle;
};

// Keeps its lines whatever its size.
class stubbornView_t : public view_t
{
protected:
    void resizeEvent(QResizeEvent* /*event*/) override {}
};

using viewUse_t = std::function<void(view_t&)>;

// What a view paints on red, the background left out.
QImage paintedOnRed(QWidget& view, const QRect& part)
{
    QImage picture(part.size(), QImage::Format_RGB32);
    picture.fill(Qt::red);
    view.render(&picture, QPoint(), part, QWidget::RenderFlags());
    return picture;
}

} // namespace
Q_DECLARE_METATYPE(viewUse_t)

void tst_waterfallView::survivesARendererThatChangesIt_data()
{
    QTest::addColumn<viewUse_t>("meddle");
    const auto row = [](const char* name, const viewUse_t& use) { QTest::newRow(name) << use; };
    row("turned", [](view_t& view) { view.orientation(Qt::Horizontal); });
    row("other bounds", [](view_t& view) { view.bounds(0.0, 3.0); });
    row("on by one", [](view_t& view) { view.position(100); });
    row("back by one", [](view_t& view) { view.position(98); });
    row("back by more than fit", [](view_t& view) { view.position(50); });
}

void tst_waterfallView::survivesARendererThatChangesIt()
{
    QFETCH(viewUse_t, meddle);
    waterfall_t waterfall(QSize(60, 40), 100);
    QVERIFY(waterfall.show()); // a hidden one renders everything anew for a picture
    view_t& view = waterfall.view;
    meddlingRenderer_t renderer;
    view._renderer(&renderer);
    renderer.meddle = [&] { meddle(view); };
    view.bounds(0.0, 2.0);
    QVERIFY(!renderer.meddle);
    QCOMPARE(firstDifference(snapshot(view), waterfall.wanted()), QString());
}

static int paintWhatNoImageCanHold()
{
    waterfall_t waterfall(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX), 100);
    QImage wanted(20, 10, QImage::Format_RGB32);
    wanted.fill(waterfall.view.palette().color(QPalette::Window));
    const bool isFilled = paintedOnRed(waterfall.view, QRect(0, 0, 20, 10)) == wanted;
    const bool isStill = waterfall.renderer.takeCalls().isEmpty();
    return isFilled && isStill && waterfall.view.position() == 99 ? 0 : 1;
}

void tst_waterfallView::fillsWhatNoImageCanHold()
{
    // Else the sanitizer would end the program for asking that much.
    const QByteArray options = qgetenv("ASAN_OPTIONS") + ":allocator_may_return_null=1";
    const childOutcome_t child =
        runChild("what no image can hold", {"ASAN_OPTIONS=" + QString::fromLatin1(options)});
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
}

void tst_waterfallView::paintsOnlyTheLinesThatItHas()
{
    stubbornView_t view;
    const QSize lines = view.size();
    view.resize(lines + QSize(100, 100));
    QImage red(10, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    QImage corner = red;
    QPainter(&corner).fillRect(0, 0, 4, 3, view.palette().color(QPalette::Window));
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        const QRect outside(lines.width() + 5, lines.height() + 5, 10, 10);
        QCOMPARE(firstDifference(paintedOnRed(view, outside), red), QString());
        const QRect across(lines.width() - 4, lines.height() - 3, 10, 10);
        QCOMPARE(firstDifference(paintedOnRed(view, across), corner), QString());
        view.resize(lines);
        view.orientation(orientation == Qt::Vertical ? Qt::Horizontal : Qt::Vertical);
        view.resize(lines + QSize(100, 100));
    }
}

void tst_waterfallView::survivesSlotsThatDeleteIt_data()
{
    QTest::addColumn<int>("operation");
    const char* const names[] = {"bounds",      "position", "jump", "added item",
                                 "orientation", "model",    "move", "leave"};
    for (int i = 0; i < 8; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_waterfallView::survivesSlotsThatDeleteIt()
{
    QFETCH(int, operation);
    countingModel_t model;
    model.reset(0, 100);
    patternRenderer_t renderer;
    auto* const view = new view_t;
    const QPointer<view_t> guard(view);
    view->_model(&model);
    view->_renderer(&renderer);
    const auto destroy = [view, guard] {
        if (guard != nullptr)
            delete view;
    };
    connect(view, &view_t::boundsChanged, this, destroy);
    connect(view, &view_t::positionChanged, this, destroy);
    connect(view, &view_t::pointedItemChanged, this, destroy);
    const std::function<void()> operations[] = {
        [&] { view->bounds(0.0, 2.0); },
        [&] { view->position(90); },
        [&] { view->position(100000); },
        [&] { model.add(1); },
        [&] { view->orientation(Qt::Horizontal); },
        [&] { view->_model(nullptr); },
        [&] { movePointer(*view, QPoint(3, 3)); },
        [&] { leave(*view); },
    };
    operations[operation]();
    QVERIFY(guard.isNull());
}

void tst_waterfallView::showsAndSaysWhatThePlainOneDoes_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");

    QTest::newRow("vertical") << Qt::Vertical;
    QTest::newRow("horizontal") << Qt::Horizontal;
}

void tst_waterfallView::showsAndSaysWhatThePlainOneDoes()
{
    QFETCH(Qt::Orientation, orientation);
    random_t random;
    waterfall_t waterfall(QSize(90, 70), 0, orientation);
    patternRenderer_t plainRenderer;
    plainWaterfall_t plain;
    plain.resize(90, 70);
    plain.move(0, 500);
    waterfall.view.move(0, 0);
    plain.setOrientation(orientation);
    plain.setModel(&waterfall.model);
    plain.setRenderer(&plainRenderer);
    plain.show();
    QVERIFY(waterfall.show());
    QVERIFY(QTest::qWaitForWindowExposed(&plain, patienceMs()));
    shown(plain);
    plain.takeSignals();
    plainRenderer.takeCalls();

    for (int step = 0; step < 600; ++step) {
        const int operations = random.integer(1, 3); // some before the next painting
        for (int i = 0; i < operations; ++i) {
            const int choice = random.integer(0, 99);
            if (choice < 40) {
                waterfall.model.add(random.integer(1, 5));
            } else if (choice < 55) {
                waterfall.model.drop(random.integer(1, 5));
            } else if (choice < 75) {
                const int to = plain.position() + random.integer(-100, 100);
                waterfall.view.position(to);
                plain.setPosition(to);
            } else if (choice < 80) {
                const int to = waterfall.model.end() - 1;
                waterfall.view.position(to);
                plain.setPosition(to);
            } else if (choice < 84) {
                const double beg = random.integer(-3, 3);
                const double end = random.integer(-3, 3);
                waterfall.view.bounds(beg, end);
                plain.setBounds(beg, end);
            } else if (choice < 87) {
                const QSize size(random.integer(1, 120), random.integer(1, 100));
                waterfall.view.resize(size);
                plain.resize(size);
            } else if (choice < 89) {
                const Qt::Orientation other = random.chance(0.5) ? Qt::Vertical : Qt::Horizontal;
                waterfall.view.orientation(other);
                plain.setOrientation(other);
            } else if (choice < 91) {
                waterfall.model.reset(random.integer(-300, 300),
                                      static_cast<unsigned>(random.integer(0, 200)));
            } else if (choice < 93) {
                waterfall.renderer.seed = plainRenderer.seed =
                    static_cast<unsigned>(random.integer(0, 1000000));
                Q_EMIT waterfall.renderer.rendererChanged();
                Q_EMIT plainRenderer.rendererChanged();
            } else if (choice < 95) {
                countingModel_t* const model = random.chance(0.3) ? nullptr : &waterfall.model;
                waterfall.view._model(model);
                plain.setModel(model);
            } else if (choice < 99) {
                const QPoint to(random.integer(-5, 100), random.integer(-5, 100));
                movePointer(waterfall.view, to);
                movePointer(plain, to);
            } else {
                leave(waterfall.view);
                leave(plain);
            }
        }
        // Both have their sizes by now, whatever the window system does meanwhile.
        const QImage actual = shown(waterfall.view);
        const QImage wanted = shown(plain);
        QCOMPARE(waterfall.view.position(), plain.position());
        QCOMPARE(waterfall.renderer.takeCalls(), plainRenderer.takeCalls());
        QCOMPARE(waterfall.log->take(), plain.takeSignals());
        QCOMPARE(firstDifference(actual, wanted), QString());
    }
}

// ZORBIN_SOAK_LINES makes it longer.
void tst_waterfallView::staysExactOverALongRun()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("ZORBIN_SOAK_LINES", &isNumber);
    const int lines = isNumber ? wanted : 10000;
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 50), 0, orientation);
        QVERIFY(waterfall.show());
        for (int i = 1; i <= lines; ++i) {
            waterfall.model.add(1);
            if (waterfall.model.itemCount() > 55)
                waterfall.model.drop(1);
            if (i % 7 == 0)
                QCoreApplication::processEvents();
            if (i % 1000 == 0) {
                QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
                waterfall.log->take();
                waterfall.renderer.takeCalls();
            }
        }
        QCOMPARE(waterfall.view.position(), lines - 1);
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

// On a display with so many device pixels to a pixel every line is as thick as they are, without
// seams and wherever it has been scrolled to.
static int scrollOnDenseDisplay()
{
    const int ratio = qRound(qApp->devicePixelRatio());
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 50), 0, orientation);
        if (!waterfall.show())
            return EXIT_FAILURE;
        for (int i = 1; i <= 3000; ++i) {
            waterfall.model.add(1);
            if (i % 3 == 0)
                QCoreApplication::processEvents();
            if (i % 250 == 0) {
                waterfall.view.position(waterfall.view.position() - 20);
                shown(waterfall.view);
                waterfall.view.position(waterfall.model.end() - 1);
            }
            if (i % 100 != 0)
                continue;
            const QImage wanted = waterfall.wanted().scaled(QSize(60, 50) * ratio);
            const QString difference = firstDifference(shown(waterfall.view), wanted);
            if (!difference.isEmpty()) {
                std::printf("after %d lines: %s\n", i, qPrintable(difference));
                return EXIT_FAILURE;
            }
        }
    }
    std::printf("ratio %d\n", ratio);
    return EXIT_SUCCESS;
}

void tst_waterfallView::staysExactOnDenseDisplays()
{
    const childOutcome_t child = runChild("scrollOnDenseDisplay", {"QT_SCALE_FACTOR=2"});
    QCOMPARE(child.said, QStringList{"ratio 2"});
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, EXIT_SUCCESS);
}

int main(int argc, char** argv)
{
    tst_waterfallView tests;
    return runTestsOrScenario(argc, argv, tests,
                              {{"scrollOnDenseDisplay", scrollOnDenseDisplay},
                               {"what no image can hold", paintWhatNoImageCanHold}});
}

#include "tst_waterfallView.moc"
