#include "childProcess.h"
#include "controlPanel.h"
#include "indicator.h"
#include "spFbUiWrapper.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <memory>
#include <type_traits>
#include <vector>

using namespace binder_tests;
using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<spFbUiWrapper_t>::value, "binders aren't copied");

namespace {

class derivedSpinBox_t : public QSpinBox
{
    Q_OBJECT
};

} // namespace

/// The binder of widgets, setpoints, feedback and lamps: what is bound, and for how long.
class tst_spFbUiWrapper : public panelTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty();
    void hasTheDeclaredSignalsAndSlots();
    void keepsItemsById();
    void startsWithTheValuesTold();
    void touchesNothingAtRegistration();

    void removesAWrapper();
    void bindsAnIdAgain();
    void announcesTwiceAfterBindingAgain();
    void announcesAWidgetOfTwoIdsUnderTheLast();

    void setsTheColorsOfPresentItems();
    void setsTheColorsOfOneItem();
    void returnsInvalidColorsWithoutAnId();
    void setsTheColorModeOfPresentItems();

    void endsTheProcessOnMisuse_data();
    void endsTheProcessOnMisuse();

    void survivesTheDeletionOfLampsAndWidgets();
    void leavesWidgetsAndLampsWhenDeleted();
    void hearsNoWidgetWhileItIsDeleted();
    void survivesSlotsThatRemove_data();
    void survivesSlotsThatRemove();
    void survivesSlotsThatDeleteOtherWidgets();
    void survivesTheLaterDeletionOfTheWidgetThatChanged();
    void survivesARemovalByTheMoveOfACursor();
    void initializesWithoutAnItemRemovedMeanwhile();
    void ignoresChangesOfOtherKinds_data();
    void ignoresChangesOfOtherKinds();
};

void tst_spFbUiWrapper::startsEmpty()
{
    QObject parent;
    const auto* const binder = new spFbUiWrapper_t(&parent);
    QCOMPARE(binder->parent(), &parent);
    QVERIFY(binder->wrappers().empty());
    QVERIFY(binder->allSpFbMatch());
    QVERIFY(binder->useColor());
    QVERIFY(!binder->idExists(0));
}

void tst_spFbUiWrapper::hasTheDeclaredSignalsAndSlots()
{
    const QMetaObject& meta = spFbUiWrapper_t::staticMetaObject;
    for (const char* const signal : {"valueChanged(int)", "setpointEdited(int)"}) {
        const QMetaMethod method = meta.method(meta.indexOfSignal(signal));
        QCOMPARE(method.parameterNames(), QList<QByteArray>{"id"});
    }
    for (const char* const slot : {"handleCheckBoxChanged(int)", "handleComboBoxChanged(int)",
                                   "handleDoubleSpinBoxChanged(int)", "handleLineEditChanged(int)",
                                   "handleSpinBoxChanged(int)", "handleSliderChanged(int)"}) {
        QVERIFY2(meta.indexOfSlot(slot) >= 0, slot);
        QCOMPARE(meta.method(meta.indexOfSlot(slot)).access(), QMetaMethod::Private);
    }
}

void tst_spFbUiWrapper::keepsItemsById()
{
    const spFbUiWrapper_t& binder = m_panel->binder;
    std::vector<int> ids;
    for (const auto& entry : binder.wrappers())
        ids.push_back(entry.first);
    QVERIFY(ids == allIds);
    QCOMPARE(&binder.lookupWrapperItem(50), binder.wrappers().at(50));
    QCOMPARE(&m_panel->binder.lookupWrapperItem(50), binder.wrappers().at(50));
    QCOMPARE(binder.lookupWrapperItem(50).widget(), &m_panel->spinBox);
    QVERIFY(binder.idExists(50));
    QVERIFY(!binder.idExists(51));
}

void tst_spFbUiWrapper::startsWithTheValuesTold()
{
    lamp_t lamp;
    QSpinBox box;
    QLineEdit edit;
    m_panel->binder.addSpinBoxWrapper(3, 4, &lamp, -1, &box);
    m_panel->binder.addLineEditWrapper(QStringLiteral("a"), QStringLiteral("b"), &lamp, 0, &edit);
    QCOMPARE(m_panel->binder.setpointValue(-1), QVariant(3));
    QCOMPARE(m_panel->binder.lookupWrapperItem(-1).feedbackValue(), QVariant(4));
    QCOMPARE(m_panel->binder.setpointValue(0), QVariant(QStringLiteral("a")));
    QCOMPARE(m_panel->binder.setpointValue(10).userType(), int(QMetaType::Bool));
    QCOMPARE(m_panel->binder.setpointValue(20).userType(), int(QMetaType::Int));
    QCOMPARE(m_panel->binder.setpointValue(30).userType(), int(QMetaType::Double));
    m_panel->binder.removeWrapper(-1);
    m_panel->binder.removeWrapper(0);
}

void tst_spFbUiWrapper::touchesNothingAtRegistration()
{
    lamp_t lamp;
    const QColor before = lamp.color();
    QSpinBox box;
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    m_panel->binder.addSpinBoxWrapper(3, 4, &lamp, 80, &box);
    QCOMPARE(box.value(), 0);
    QCOMPARE(lamp.color(), before);
    QCOMPARE(changes.size(), 0);
}

void tst_spFbUiWrapper::removesAWrapper()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->edit(50);
    binder.removeWrapper(50);
    QVERIFY(!binder.idExists(50));
    QVERIFY(binder.allSpFbMatch());
    QCOMPARE(m_panel->spinBox.value(), 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    m_panel->spinBox.setValue(6);
    QCOMPARE(changes.size(), 0);
}

void tst_spFbUiWrapper::bindsAnIdAgain()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.removeWrapper(50);
    QSpinBox other;
    binder.addSpinBoxWrapper(1, 1, &m_panel->lamps[4], 50, &other);
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    other.setValue(3);
    m_panel->spinBox.setValue(9);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(binder.setpointValue(50), QVariant(3));
}

// Deliberate: the widget's connection stays when it is removed, and gets company.
void tst_spFbUiWrapper::announcesTwiceAfterBindingAgain()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.removeWrapper(50);
    binder.addSpinBoxWrapper(0, 0, &m_panel->lamps[4], 51, &m_panel->spinBox);
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    m_panel->spinBox.setValue(9);
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes[0][0].toInt(), 51);
    QCOMPARE(changes[1][0].toInt(), 51);
}

void tst_spFbUiWrapper::announcesAWidgetOfTwoIdsUnderTheLast()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.addSpinBoxWrapper(0, 0, &m_panel->lamps[4], 51, &m_panel->spinBox);
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    m_panel->spinBox.setValue(9);
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes[0][0].toInt(), 51);
    QCOMPARE(changes[1][0].toInt(), 51);
    QCOMPARE(binder.setpointValue(50), QVariant(0));
    binder.initGui(); // leaves the id alone whose widget has another one by now
    QCOMPARE(binder.setpointValue(50), QVariant(0));
    QCOMPARE(binder.setpointValue(51), QVariant(9));
    binder.removeWrapper(51);
    m_panel->spinBox.setValue(8);
    QCOMPARE(changes.size(), 2);
}

void tst_spFbUiWrapper::setsTheColorsOfPresentItems()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.initGui();
    binder.setMatchColor(Qt::blue);
    binder.setMismatchColor(Qt::cyan);
    binder.setInFlightColor(Qt::magenta);
    QCOMPARE(m_panel->lamps[0].color(), QColor(Qt::green)); // not before the next update
    for (const int id : allIds) {
        QCOMPARE(binder.matchColor(id), QColor(Qt::blue));
        QCOMPARE(binder.mismatchColor(id), QColor(Qt::cyan));
        QCOMPARE(binder.inFlightColor(id), QColor(Qt::magenta));
    }
    QSpinBox box;
    lamp_t lamp;
    binder.addSpinBoxWrapper(0, 0, &lamp, 80, &box);
    QCOMPARE(binder.matchColor(80), QColor(Qt::green));
    QCOMPARE(binder.mismatchColor(80), QColor(Qt::red));
    QCOMPARE(binder.inFlightColor(80), QColor(Qt::yellow));
}

void tst_spFbUiWrapper::setsTheColorsOfOneItem()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.setMatchColor(Qt::blue, 50);
    binder.setMismatchColor(Qt::cyan, 50);
    binder.setInFlightColor(Qt::magenta, 50);
    QCOMPARE(binder.matchColor(50), QColor(Qt::blue));
    QCOMPARE(binder.mismatchColor(50), QColor(Qt::cyan));
    QCOMPARE(binder.inFlightColor(50), QColor(Qt::magenta));
    QCOMPARE(binder.matchColor(60), QColor(Qt::green));
    m_panel->edit(50);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::cyan));
}

// Deliberate: what is set for all items is kept in the items alone.
void tst_spFbUiWrapper::returnsInvalidColorsWithoutAnId()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.setMatchColor(Qt::blue);
    binder.setMismatchColor(Qt::cyan);
    binder.setInFlightColor(Qt::magenta);
    QVERIFY(!binder.matchColor().isValid());
    QVERIFY(!binder.mismatchColor().isValid());
    QVERIFY(!binder.inFlightColor().isValid());
}

void tst_spFbUiWrapper::setsTheColorModeOfPresentItems()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.initGui();
    binder.setUseColor(false);
    QVERIFY(!binder.useColor());
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    m_panel->edit(50);
    QCOMPARE(m_panel->lamps[4].color(), m_panel->lamps[4].palette().color(QPalette::Highlight));
    m_panel->binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), m_panel->lamps[4].palette().color(QPalette::Window));
    // Deliberate: later items begin in colour mode all the same.
    QSpinBox box;
    lamp_t lamp;
    binder.addSpinBoxWrapper(0, 0, &lamp, 80, &box);
    QVERIFY(binder.lookupWrapperItem(80).useColor());
    binder.setUseColor(true);
    QVERIFY(binder.lookupWrapperItem(50).useColor());
}

void tst_spFbUiWrapper::endsTheProcessOnMisuse_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char* scenario, const char* message) {
        QTest::newRow(scenario) << QStringLiteral("fatal: spFbUiWrapper_t::%1").arg(message);
    };
    row("setpointValue", "setpointValue: id (7) is not a ui element");
    row("spFbMatch", "spFbMatch: id (7) is not a ui element");
    row("lookupWrapperItem", "lookupWrapperItem: id (7) is not a ui element");
    row("lookupWrapperItem const", "lookupWrapperItem: id (7) is not a ui element");
    row("updateFeedback", "lookupWrapperItem: id (7) is not a ui element");
    row("updateFeedback beyond int", "lookupWrapperItem: id (-1) is not a ui element");
    row("removeWrapper", "removeWrapper: id (7) is not a ui element");
    row("setInFlight", "setInFlight: id (7) is not a ui element");
    row("setInFlight for a time", "setInFlight: id (7) is not a ui element");
    row("matchColor", "getConditionColor: id (7) is not a ui element");
    row("setMatchColor", "setConditionColor: id (7) is not a ui element");
    row("id taken", "addWrapper: id (10) is already a ui element");
    row("id taken, unsupported widget", "addWrapper: id (10) is already a ui element");
    row("id taken, null widget", "addSpinBoxWrapper: Cannot add id (10) with null handle");
    row("unsupported widget", "addWrapper: Unsupported widget type");
    row("initGui of an unsupported widget", "initGui: Unsupported widget type");
    row("null check box", "addCheckBoxWrapper: Cannot add id (7) with null handle");
    row("null combo box", "addComboBoxWrapper: Cannot add id (7) with null handle");
    row("null double spin box", "addDoubleSpinBoxWrapper: Cannot add id (7) with null handle");
    row("null line edit", "addLineEditWrapper: Cannot add id (7) with null handle");
    row("null spin box", "addSpinBoxWrapper: Cannot add id (7) with null handle");
    row("null slider", "addSliderWrapper: Cannot add id (7) with null handle");
    row("null lamp", "addSpinBoxWrapper: Cannot add id (7) with null handle");
}

void tst_spFbUiWrapper::endsTheProcessOnMisuse()
{
    QFETCH(QString, message);
    const childOutcome_t child = runChild(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(child.crashed);
    QCOMPARE(child.said, QStringList{message});
}

void tst_spFbUiWrapper::survivesTheDeletionOfLampsAndWidgets()
{
    spFbUiWrapper_t binder;
    for (const bool isLampFirst : {true, false}) {
        auto lamp = std::make_unique<lamp_t>();
        auto box = std::make_unique<QSpinBox>();
        binder.addSpinBoxWrapper(1, 2, lamp.get(), 7, box.get());
        const auto useAll = [&binder] {
            binder.initGui();
            binder.setAllItemsInFlight();
            binder.setUseColor(false);
            binder.updateFeedback(7, 3);
            binder.setUseColor(true);
            binder.resetGui();
            (void)binder.allSpFbMatch();
        };
        if (isLampFirst) {
            lamp.reset();
            useAll();
            QCOMPARE(box->value(), 3); // the feedback; the lamp isn't needed for it
            box->setValue(4);
            QCOMPARE(binder.setpointValue(7), QVariant(4));
            box.reset();
        } else {
            box.reset();
            useAll();
            lamp.reset();
        }
        useAll();
        QCOMPARE(binder.lookupWrapperItem(7).feedbackValue(), QVariant(3));
        QVERIFY(binder.lookupWrapperItem(7).widget() == nullptr);
        binder.removeWrapper(7);
    }
}

void tst_spFbUiWrapper::leavesWidgetsAndLampsWhenDeleted()
{
    QSpinBox box;
    lamp_t lamp;
    {
        spFbUiWrapper_t binder;
        binder.addSpinBoxWrapper(1, 2, &lamp, 7, &box);
        box.setValue(5);
    }
    box.setValue(6);
    QCOMPARE(lamp.color(), QColor(Qt::red));
}

void tst_spFbUiWrapper::hearsNoWidgetWhileItIsDeleted()
{
    QSpinBox box;
    lamp_t lamp;
    auto binder = std::make_unique<spFbUiWrapper_t>();
    binder->addSpinBoxWrapper(1, 2, &lamp, 7, &box);
    connect(binder.get(), &QObject::destroyed, this, [&box] { box.setValue(6); });
    const QColor before = lamp.color();
    binder.reset();
    QCOMPARE(box.value(), 6);
    QCOMPARE(lamp.color(), before);
}

void tst_spFbUiWrapper::survivesSlotsThatRemove_data()
{
    addIds();
}

void tst_spFbUiWrapper::survivesSlotsThatRemove()
{
    QFETCH(int, id);
    spFbUiWrapper_t& binder = m_panel->binder;
    QMetaObject::Connection connection =
        connect(&binder, &spFbUiWrapper_t::valueChanged, this, [&](int changed) {
            if (binder.idExists(changed))
                binder.removeWrapper(changed);
        });
    m_panel->edit(id);
    QVERIFY(!binder.idExists(id));
    disconnect(connection);

    m_panel = std::make_unique<panel_t>(); // by a report of the equipment
    spFbUiWrapper_t& second = m_panel->binder;
    connect(&second, &spFbUiWrapper_t::valueChanged, this,
            [&second](int changed) { second.removeWrapper(changed); });
    second.updateFeedback(static_cast<unsigned>(id), editedValue(id));
    QVERIFY(!second.idExists(id));

    m_panel = std::make_unique<panel_t>(); // by a reset, all others at once
    spFbUiWrapper_t& third = m_panel->binder;
    m_panel->edit(id);
    connect(&third, &spFbUiWrapper_t::valueChanged, this, [&third] {
        while (!third.wrappers().empty())
            third.removeWrapper(third.wrappers().begin()->first);
    });
    third.resetGui();
    QVERIFY(third.wrappers().empty());
}

void tst_spFbUiWrapper::survivesSlotsThatDeleteOtherWidgets()
{
    spFbUiWrapper_t binder;
    std::vector<std::unique_ptr<QSpinBox>> boxes(3);
    std::vector<std::unique_ptr<lamp_t>> lamps(3);
    for (std::size_t i = 0; i < 3; ++i) {
        boxes[i] = std::make_unique<QSpinBox>();
        lamps[i] = std::make_unique<lamp_t>();
        boxes[i]->setValue(5);
        binder.addSpinBoxWrapper(5, 0, lamps[i].get(), static_cast<int>(i), boxes[i].get());
    }
    connect(&binder, &spFbUiWrapper_t::valueChanged, this, [&](int changed) {
        if (changed != 0)
            return;
        boxes[1].reset();
        for (const auto& lamp : lamps)
            lamp->deleteLater();
        for (auto& lamp : lamps)
            lamp.release();
    });
    binder.resetGui();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    binder.setAllItemsInFlight();
    QCOMPARE(boxes[2]->value(), 0);
    QCOMPARE(binder.setpointValue(1), QVariant(5)); // went with its widget
}

void tst_spFbUiWrapper::survivesTheLaterDeletionOfTheWidgetThatChanged()
{
    spFbUiWrapper_t binder;
    lamp_t lamp;
    QPointer<QCheckBox> box = new QCheckBox;
    binder.addCheckBoxWrapper(false, false, &lamp, 7, box);
    connect(&binder, &spFbUiWrapper_t::valueChanged, box, &QObject::deleteLater);
    box->click();
    QTRY_VERIFY(box == nullptr);
    QCOMPARE(binder.setpointValue(7), QVariant(true));
}

void tst_spFbUiWrapper::survivesARemovalByTheMoveOfACursor()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->lineEdit.setText(QStringLiteral("abc"));
    m_panel->lineEdit.setCursorPosition(0);
    connect(&m_panel->lineEdit, &QLineEdit::cursorPositionChanged, this, [&binder] {
        if (binder.idExists(40))
            binder.removeWrapper(40);
    });
    binder.initGui();
    QVERIFY(!binder.idExists(40));
}

void tst_spFbUiWrapper::ignoresChangesOfOtherKinds_data()
{
    QTest::addColumn<int>("id"); // of another kind than the handler's
    QTest::newRow("handleCheckBoxChanged") << 50;
    QTest::newRow("handleComboBoxChanged") << 50;
    QTest::newRow("handleDoubleSpinBoxChanged") << 50;
    QTest::newRow("handleLineEditChanged") << 50;
    QTest::newRow("handleSpinBoxChanged") << 60;
    QTest::newRow("handleSliderChanged") << 50;
}

void tst_spFbUiWrapper::ignoresChangesOfOtherKinds()
{
    QFETCH(int, id);
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.blockSignals(true);
    m_panel->spinBox.setValue(5);
    m_panel->slider.blockSignals(true);
    m_panel->slider.setValue(6);
    for (const int other : {id, 12345}) // which there isn't
        QVERIFY(QMetaObject::invokeMethod(&binder, QTest::currentDataTag(), Q_ARG(int, other)));
    QCOMPARE(binder.setpointValue(id), QVariant(0));
}

void tst_spFbUiWrapper::initializesWithoutAnItemRemovedMeanwhile()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->lineEdit.setText(QStringLiteral("abc"));
    m_panel->lineEdit.setCursorPosition(0);
    connect(&m_panel->lineEdit, &QLineEdit::cursorPositionChanged, this,
            [&binder] { binder.removeWrapper(50); });
    m_panel->slider.blockSignals(true);
    m_panel->slider.setValue(6);
    binder.initGui();
    QVERIFY(!binder.idExists(50));
    QCOMPARE(binder.setpointValue(60), QVariant(6)); // the items behind it have their turn
}

int main(int argc, char* argv[])
{
    childScenarios_t scenarios;
    const auto add = [&scenarios](const char* name, void (*misuse)(spFbUiWrapper_t&)) {
        scenarios.insert(QString::fromLatin1(name), [misuse] {
            spFbUiWrapper_t binder;
            indicator_t lamp;
            QSpinBox box;
            binder.addSpinBoxWrapper(0, 0, &lamp, 10, &box);
            misuse(binder);
            return 0;
        });
    };
    using binder_t = spFbUiWrapper_t;
    add("setpointValue", [](binder_t& binder) { binder.setpointValue(7); });
    add("spFbMatch", [](binder_t& binder) { binder.spFbMatch(7); });
    add("lookupWrapperItem", [](binder_t& binder) { binder.lookupWrapperItem(7); });
    add("lookupWrapperItem const", [](binder_t& binder) {
        const binder_t& constant = binder;
        constant.lookupWrapperItem(7);
    });
    add("updateFeedback", [](binder_t& binder) { binder.updateFeedback(7, 1); });
    add("updateFeedback beyond int",
        [](binder_t& binder) { binder.updateFeedback(4294967295U, 1); });
    add("removeWrapper", [](binder_t& binder) { binder.removeWrapper(7); });
    add("setInFlight", [](binder_t& binder) { binder.setInFlight(7); });
    add("setInFlight for a time", [](binder_t& binder) { binder.setInFlight(7, 1000); });
    add("matchColor", [](binder_t& binder) { binder.matchColor(7); });
    add("setMatchColor", [](binder_t& binder) { binder.setMatchColor(Qt::red, 7); });
    add("id taken", [](binder_t& binder) {
        QSpinBox box;
        binder.addSpinBoxWrapper(0, 0, new indicator_t(&box), 10, &box);
    });
    add("id taken, unsupported widget", [](binder_t& binder) {
        derivedSpinBox_t box;
        binder.addSpinBoxWrapper(0, 0, new indicator_t(&box), 10, &box);
    });
    add("id taken, null widget",
        [](binder_t& binder) { binder.addSpinBoxWrapper(0, 0, nullptr, 10, nullptr); });
    add("unsupported widget", [](binder_t& binder) {
        derivedSpinBox_t box;
        binder.addSpinBoxWrapper(0, 0, new indicator_t(&box), 7, &box);
    });
    add("initGui of an unsupported widget", [](binder_t& binder) {
        QWidget plain;
        indicator_t lamp;
        binder.lookupWrapperItem(10) = spFbUiWrapperItem_t(0, 0, &lamp, &plain);
        binder.initGui();
    });
    add("null check box", [](binder_t& binder) {
        indicator_t present;
        binder.addCheckBoxWrapper(false, false, &present, 7, nullptr);
    });
    add("null combo box", [](binder_t& binder) {
        indicator_t present;
        binder.addComboBoxWrapper(0, 0, &present, 7, nullptr);
    });
    add("null double spin box", [](binder_t& binder) {
        indicator_t present;
        binder.addDoubleSpinBoxWrapper(0, 0, &present, 7, nullptr);
    });
    add("null line edit", [](binder_t& binder) {
        indicator_t present;
        binder.addLineEditWrapper(QString(), QString(), &present, 7, nullptr);
    });
    add("null spin box", [](binder_t& binder) {
        indicator_t present;
        binder.addSpinBoxWrapper(0, 0, &present, 7, nullptr);
    });
    add("null slider", [](binder_t& binder) {
        indicator_t present;
        binder.addSliderWrapper(0, 0, &present, 7, nullptr);
    });
    add("null lamp", [](binder_t& binder) {
        QSpinBox box;
        binder.addSpinBoxWrapper(0, 0, nullptr, 7, &box);
    });
    tst_spFbUiWrapper tests;
    return runTestsOrScenario(argc, argv, tests, scenarios);
}
#include "tst_spFbUiWrapper.moc"
