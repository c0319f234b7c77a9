#include "plainWaterfall.h"
#include "testCase.h"
#include "virtualSlot.h"

#include <QPointer>
#include <QSignalSpy>
#include <cstddef>
#include <limits>
#include <type_traits>

using namespace zorbin_qt_gui;

static const int least = std::numeric_limits<int>::min();
static const int greatest = std::numeric_limits<int>::max();

static_assert(!std::is_copy_constructible<baseWaterfallModel_t>::value, "models aren't copied");
static_assert(std::is_abstract<baseWaterfallRenderer_t>::value, "a renderer must render");
static_assert(
    std::is_same<decltype(baseWaterfallRenderer_t::context_t::numPixels), unsigned>::value,
    "pixels are counted unsigned");

namespace {

// The last virtual function of QObject, which is protected.
struct lastOfQObject_t : public QObject
{
    static std::ptrdiff_t slot() { return virtualSlot(&lastOfQObject_t::disconnectNotify); }
};

// Holds numbers, as an application's model would, and says what a signal finds.
class numbersModel_t : public baseWaterfallModel_t
{
public:
    void append(int number)
    {
        numbers.append(number);
        _addItem();
    }

    bool dropItem() override
    {
        if (numbers.isEmpty())
            return false;
        numbers.removeFirst();
        _dropItem();
        return true;
    }

    QList<int> numbers;
};

// The signals of a model with the range that each of them finds, e.g. "itemAdded 0..1".
class modelLog_t
{
public:
    explicit modelLog_t(baseWaterfallModel_t& model)
    {
        log(model, "itemAdded", &baseWaterfallModel_t::itemAdded);
        log(model, "itemDropped", &baseWaterfallModel_t::itemDropped);
        log(model, "modelReset", &baseWaterfallModel_t::modelReset);
    }

    QStringList take() { return std::exchange(m_texts, QStringList()); }

private:
    template <typename signal_t>
    void log(baseWaterfallModel_t& model, const char* name, signal_t signal)
    {
        QObject::connect(&model, signal, &model, [this, &model, name] {
            m_texts.append(
                QStringLiteral("%1 %2..%3").arg(name).arg(model.begin()).arg(model.end()));
        });
    }

    QStringList m_texts;
};

} // namespace

/// What counts the items of a waterfall and what colours them.
class tst_waterfallModel : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutItems();
    void belongsToItsParent();
    void addsItemsAtTheEnd();
    void dropsItemsAtTheBegin();
    void dropsNothingWithoutItems();
    void resetsToAnyRange_data();
    void resetsToAnyRange();
    void resetsAlsoToTheSameRange();
    void goesOnFromAReset();
    void addsAndDropsOverAllIndices();
    void stopsAtTheGreatestIndex();
    void dropsNothingByItself();
    void letsSubclassesDropTheirItems();
    void announcesInTheCallersThreadAtOnce();
    void keepsTheOrderOfItsVirtuals();
    void makesRenderersThatBelongToTheirParent();
    void announcesChangesOfARenderer();
};

void tst_waterfallModel::startsWithoutItems()
{
    const baseWaterfallModel_t model(nullptr);
    QCOMPARE(model.begin(), 0);
    QCOMPARE(model.end(), 0);
    QCOMPARE(model.itemCount(), 0U);
}

void tst_waterfallModel::belongsToItsParent()
{
    QObject parent;
    const baseWaterfallModel_t model(&parent);
    QCOMPARE(model.parent(), &parent);
}

void tst_waterfallModel::addsItemsAtTheEnd()
{
    baseWaterfallModel_t model;
    modelLog_t log(model);
    model._addItem();
    model._addItem();
    QCOMPARE(log.take(), QStringList({"itemAdded 0..1", "itemAdded 0..2"}));
    QCOMPARE(model.itemCount(), 2U);
}

void tst_waterfallModel::dropsItemsAtTheBegin()
{
    baseWaterfallModel_t model;
    model.reset(10, 2);
    modelLog_t log(model);
    model._dropItem();
    model._dropItem();
    QCOMPARE(log.take(), QStringList({"itemDropped 11..12", "itemDropped 12..12"}));
    QCOMPARE(model.itemCount(), 0U);
}

void tst_waterfallModel::dropsNothingWithoutItems()
{
    baseWaterfallModel_t model;
    model.reset(7, 0);
    modelLog_t log(model);
    model._dropItem();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(model.begin(), 7);
    QCOMPARE(model.end(), 7);
}

void tst_waterfallModel::resetsToAnyRange_data()
{
    QTest::addColumn<int>("begin");
    QTest::addColumn<unsigned>("count");
    QTest::addColumn<int>("end");
    QTest::addColumn<unsigned>("held");

    QTest::newRow("empty") << 0 << 0U << 0 << 0U;
    QTest::newRow("empty at 100") << 100 << 0U << 100 << 0U;
    QTest::newRow("some") << 5 << 3U << 8 << 3U;
    QTest::newRow("negative") << -5 << 3U << -2 << 3U;
    QTest::newRow("across 0") << -5 << 10U << 5 << 10U;
    QTest::newRow("at the least index") << least << 1U << least + 1 << 1U;
    QTest::newRow("empty at the least") << least << 0U << least << 0U;
    QTest::newRow("empty at the greatest") << greatest << 0U << greatest << 0U;
    QTest::newRow("up to the greatest") << greatest - 3 << 3U << greatest << 3U;
    QTest::newRow("all that an int can count") << least << 4294967295U << greatest << 4294967295U;
    QTest::newRow("one too many") << greatest - 3 << 4U << greatest << 3U;
    QTest::newRow("far too many") << 1 << 4294967295U << greatest << 2147483646U;
}

void tst_waterfallModel::resetsToAnyRange()
{
    QFETCH(int, begin);
    QFETCH(unsigned, count);
    QFETCH(int, end);
    QFETCH(unsigned, held);
    baseWaterfallModel_t model;
    model._addItem();
    modelLog_t log(model);
    model.reset(begin, count);
    QCOMPARE(log.take(), QStringList{QStringLiteral("modelReset %1..%2").arg(begin).arg(end)});
    QCOMPARE(model.itemCount(), held);
}

void tst_waterfallModel::resetsAlsoToTheSameRange()
{
    baseWaterfallModel_t model;
    QSignalSpy resets(&model, &baseWaterfallModel_t::modelReset);
    model.reset(0, 0);
    model.reset(0, 0);
    QCOMPARE(resets.size(), 2);
}

void tst_waterfallModel::goesOnFromAReset()
{
    baseWaterfallModel_t model;
    model.reset(5, 3);
    model._addItem();
    model._addItem();
    QCOMPARE(model.itemCount(), 5U);
    QCOMPARE(model.end(), 10);
}

void tst_waterfallModel::addsAndDropsOverAllIndices()
{
    baseWaterfallModel_t model;
    for (const int around : {least + 4, 0, greatest - 4}) {
        model.reset(around - 3, 0);
        for (int i = 0; i < 6; ++i)
            model._addItem();
        model._dropItem();
        QCOMPARE(model.begin(), around - 2);
        QCOMPARE(model.end(), around + 3);
    }
}

void tst_waterfallModel::stopsAtTheGreatestIndex()
{
    baseWaterfallModel_t model;
    model.reset(greatest - 1, 0);
    modelLog_t log(model);
    model._addItem();
    model._addItem();
    QCOMPARE(log.take(),
             QStringList{QStringLiteral("itemAdded %1..%2").arg(greatest - 1).arg(greatest)});
}

void tst_waterfallModel::dropsNothingByItself()
{
    baseWaterfallModel_t model;
    model.reset(0, 2);
    modelLog_t log(model);
    QVERIFY(!model.dropItem());
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(model.itemCount(), 2U);
}

void tst_waterfallModel::letsSubclassesDropTheirItems()
{
    numbersModel_t numbers;
    numbers.append(4);
    numbers.append(5);
    baseWaterfallModel_t& model = numbers;
    QVERIFY(model.dropItem());
    QCOMPARE(numbers.numbers, QList<int>{5});
    QCOMPARE(model.begin(), 1);
    QVERIFY(model.dropItem());
    QVERIFY(!model.dropItem());
    QCOMPARE(model.begin(), 2);
}

void tst_waterfallModel::announcesInTheCallersThreadAtOnce()
{
    numbersModel_t model;
    int held = -1;
    connect(&model, &baseWaterfallModel_t::itemAdded, this,
            [&] { held = static_cast<int>(model.numbers.size()); });
    model.append(1);
    QCOMPARE(held, 1);
}

void tst_waterfallModel::keepsTheOrderOfItsVirtuals()
{
    QCOMPARE(virtualSlot(&baseWaterfallModel_t::dropItem), lastOfQObject_t::slot() + 1);
    QCOMPARE(virtualSlot(&baseWaterfallRenderer_t::render), lastOfQObject_t::slot() + 1);
}

void tst_waterfallModel::makesRenderersThatBelongToTheirParent()
{
    QPointer<patternRenderer_t> renderer;
    {
        QObject parent;
        renderer = new patternRenderer_t(&parent);
        QCOMPARE(renderer->parent(), &parent);
    }
    QVERIFY(renderer.isNull());
}

void tst_waterfallModel::announcesChangesOfARenderer()
{
    patternRenderer_t renderer;
    QSignalSpy changes(&renderer, &baseWaterfallRenderer_t::rendererChanged);
    Q_EMIT renderer.rendererChanged();
    QCOMPARE(changes.size(), 1);
    QVERIFY(changes.takeFirst().isEmpty());
}

ZORBIN_TEST_MAIN(tst_waterfallModel, QApplication)

#include "tst_waterfallModel.moc"
