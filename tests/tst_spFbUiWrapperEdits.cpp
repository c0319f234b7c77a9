#include "controlPanel.h"
#include "messageRecorder.h"
#include "randomNumbers.h"
#include "spFbUiWrapper.h"

#include <QComboBox>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <vector>

using namespace binder_tests;
using namespace zorbin_qt_gui;

namespace {

// The signals of a binder in their order: whose, and whether widgets follow then.
class signalLog_t
{
public:
    explicit signalLog_t(const spFbUiWrapper_t& binder)
    {
        QObject::connect(&binder, &spFbUiWrapper_t::valueChanged, &m_receiver,
                         [this, &binder](int id) { add("changed", binder, id); });
        QObject::connect(&binder, &spFbUiWrapper_t::setpointEdited, &m_receiver,
                         [this, &binder](int id) { add("edited", binder, id); });
    }

    QStringList texts() const { return m_texts; }

private:
    void add(const char* name, const spFbUiWrapper_t& binder, int id)
    {
        m_texts << QStringLiteral("%1 %2%3").arg(
            QLatin1String(name), QString::number(id),
            QLatin1String(binder.isFollowing() ? ", following" : ""));
    }

    QStringList m_texts;
    QObject m_receiver;
};

using loss_t = void (*)(QComboBox&);
using inFlight_t = void (*)(spFbUiWrapper_t&);

} // namespace
Q_DECLARE_METATYPE(loss_t)
Q_DECLARE_METATYPE(inFlight_t)

/// What a binder makes of edits and of reports, until the equipment has taken what was edited.
class tst_spFbUiWrapperEdits : public panelTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void takesEditsAsSetpoints_data();
    void takesEditsAsSetpoints();
    void announcesEachEditOnceAfterStoringIt_data();
    void announcesEachEditOnceAfterStoringIt();
    void announcesChangesByTheProgramToo();
    void putsALineEditsCursorAtTheEndOnEdits();
    void takesTheLossOfAComboBoxsSelection_data();
    void takesTheLossOfAComboBoxsSelection();
    void letsWidgetsInStepFollowTheFeedback_data();
    void letsWidgetsInStepFollowTheFeedback();
    void leavesPendingEditsAlone();
    void endsAnEditThatTheEquipmentHasTaken();
    void announcesAnEditAfterTheChange_data();
    void announcesAnEditAfterTheChange();
    void announcesNoEditOfAWidgetThatFollows_data();
    void announcesNoEditOfAWidgetThatFollows();
    void announcesNoEditOfAReset();
    void countsWhatSlotsOfAReportChangeAsFollowing();
    void takesEditsInAnEventLoopOfASlotOfAReport();
    void announcesAnEditInASlotOfAnEditForEach();
    void takesTheReportThatASlotOfAnEditBrings();
    void announcesNoEditOfAnItemThatIsRemoved();
    void sendsNothingBackToEquipmentThatChangesByItself();
    void takesWhatTheWidgetShowsForFeedbackBeyondItsRange();
    void keepsFeedbackThatTheWidgetCannotShowWhereNothingChanges();
    void roundsTheSetpointAsTheWidgetDoes();
    void takesNanAsFeedback();
    void initializesFromTheWidgets();
    void resetsToTheFeedback();

    void comparesAllItems();
    void putsItemsInFlight();
    void staysInFlightThroughReportsThatDiffer();
    void showsTheOutcomeWhenTheTimeIsOver_data();
    void showsTheOutcomeWhenTheTimeIsOver();
    void keepsAnEditThatGoesBackWhileInFlight();
    void endsTheTimeWithAnEdit();
    void endsTheTimeWithAnInitialization();
    void replacesTheTime();
    void replacesTheTimeByNone_data();
    void replacesTheTimeByNone();
    void timesEachItemByItself();
    void staysInFlightWithoutColorMode();
    void endsTheTimeOfARemovedItem();
    void survivesDeletionsWhileInFlight_data();
    void survivesDeletionsWhileInFlight();
    void actsAsThePlainBinderDoes();
};

void tst_spFbUiWrapperEdits::takesEditsAsSetpoints_data()
{
    addIds();
}

void tst_spFbUiWrapperEdits::takesEditsAsSetpoints()
{
    QFETCH(int, id);
    m_panel->edit(id);
    QCOMPARE(m_panel->binder.setpointValue(id), editedValue(id));
    QVERIFY(!m_panel->binder.spFbMatch(id));
    QCOMPARE(m_panel->lamps[id / 10 - 1].color(), QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::announcesEachEditOnceAfterStoringIt_data()
{
    addIds();
}

void tst_spFbUiWrapperEdits::announcesEachEditOnceAfterStoringIt()
{
    QFETCH(int, id);
    QVariant stored;
    QColor color;
    connect(&m_panel->binder, &spFbUiWrapper_t::valueChanged, this, [&](int changed) {
        stored = m_panel->binder.setpointValue(changed);
        color = m_panel->lamps[changed / 10 - 1].color();
    });
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    m_panel->edit(id);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes[0][0].toInt(), id);
    QCOMPARE(stored, editedValue(id));
    QCOMPARE(color, QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::announcesChangesByTheProgramToo()
{
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    m_panel->binder.updateFeedback(50, 8);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes[0][0].toInt(), 50);
    m_panel->binder.updateFeedback(50, 8); // the widget stays as it is
    QCOMPARE(changes.size(), 1);
}

// Deliberate: an edit is written back, which takes the cursor to the end of the text.
void tst_spFbUiWrapperEdits::putsALineEditsCursorAtTheEndOnEdits()
{
    m_panel->lineEdit.setText(QStringLiteral("abc"));
    m_panel->lineEdit.setCursorPosition(1);
    QTest::keyClicks(&m_panel->lineEdit, QStringLiteral("x"));
    QCOMPARE(m_panel->lineEdit.text(), QStringLiteral("axbc"));
    QCOMPARE(m_panel->lineEdit.cursorPosition(), 4);
}

void tst_spFbUiWrapperEdits::takesTheLossOfAComboBoxsSelection_data()
{
    QTest::addColumn<loss_t>("loseSelection");
    const auto row = [](const char* name, loss_t loss) { QTest::newRow(name) << loss; };
    row("selects none", [](QComboBox& box) { box.setCurrentIndex(-1); });
    row("is emptied", [](QComboBox& box) { box.clear(); });
    row("is emptied while editable", [](QComboBox& box) {
        box.setEditable(true);
        box.clear();
    });
    row("is emptied with a mask, which leaves a text", [](QComboBox& box) {
        box.setEditable(true);
        box.lineEdit()->setInputMask(QStringLiteral("99-99"));
        box.clear();
    });
    row("loses its rows", [](QComboBox& box) { box.model()->removeRows(0, box.count()); });
}

void tst_spFbUiWrapperEdits::takesTheLossOfAComboBoxsSelection()
{
    QFETCH(loss_t, loseSelection);
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    loseSelection(m_panel->comboBox);
    QCOMPARE(m_panel->comboBox.currentIndex(), -1);
    QCOMPARE(m_panel->binder.setpointValue(20), QVariant(-1));
    QCOMPARE(m_panel->lamps[1].color(), QColor(Qt::red));
    QCOMPARE(changes.size(), 1);
}

void tst_spFbUiWrapperEdits::letsWidgetsInStepFollowTheFeedback_data()
{
    addIds();
}

void tst_spFbUiWrapperEdits::letsWidgetsInStepFollowTheFeedback()
{
    QFETCH(int, id);
    m_panel->binder.updateFeedback(static_cast<unsigned>(id), editedValue(id));
    QCOMPARE(m_panel->binder.setpointValue(id), editedValue(id));
    QCOMPARE(m_panel->binder.lookupWrapperItem(id).feedbackValue(), editedValue(id));
    QCOMPARE(m_panel->lamps[id / 10 - 1].color(), QColor(Qt::green));
    QVERIFY(m_panel->binder.allSpFbMatch());
    m_panel->binder.initGui(); // takes what the widgets show
    QCOMPARE(m_panel->binder.setpointValue(id), editedValue(id));
}

void tst_spFbUiWrapperEdits::leavesPendingEditsAlone()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.updateFeedback(50, 9);
    QCOMPARE(m_panel->spinBox.value(), 5);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(5));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::endsAnEditThatTheEquipmentHasTaken()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.setChangedItemsInFlight();
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    m_panel->binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    m_panel->binder.updateFeedback(50, 6); // in step again
    QCOMPARE(m_panel->spinBox.value(), 6);
}

void tst_spFbUiWrapperEdits::announcesAnEditAfterTheChange_data()
{
    addIds();
}

void tst_spFbUiWrapperEdits::announcesAnEditAfterTheChange()
{
    QFETCH(int, id);
    const signalLog_t signalLog(m_panel->binder);
    m_panel->edit(id);
    QCOMPARE(signalLog.texts(), (QStringList{QStringLiteral("changed %1").arg(id),
                                             QStringLiteral("edited %1").arg(id)}));
    QVERIFY(!m_panel->binder.isFollowing());
}

void tst_spFbUiWrapperEdits::announcesNoEditOfAWidgetThatFollows_data()
{
    addIds();
}

void tst_spFbUiWrapperEdits::announcesNoEditOfAWidgetThatFollows()
{
    QFETCH(int, id);
    spFbUiWrapper_t& binder = m_panel->binder;
    const signalLog_t signalLog(binder);
    binder.updateFeedback(static_cast<unsigned>(id), editedValue(id));
    const QString followed = QStringLiteral("changed %1, following").arg(id);
    QCOMPARE(signalLog.texts(), QStringList{followed});
    QVERIFY(!binder.isFollowing());
    binder.updateFeedback(static_cast<unsigned>(id), editedValue(id)); // which the widget shows
    QCOMPARE(signalLog.texts(), QStringList{followed});
}

void tst_spFbUiWrapperEdits::announcesNoEditOfAReset()
{
    m_panel->spinBox.setValue(5);
    const signalLog_t signalLog(m_panel->binder);
    m_panel->binder.resetGui();
    QCOMPARE(signalLog.texts(), QStringList{QStringLiteral("changed 50, following")});
    QVERIFY(!m_panel->binder.isFollowing());
}

void tst_spFbUiWrapperEdits::countsWhatSlotsOfAReportChangeAsFollowing()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    connect(&m_panel->spinBox, qOverload<int>(&QSpinBox::valueChanged), &m_panel->slider,
            &QSlider::setValue); // shows the same quantity
    const signalLog_t signalLog(binder);
    binder.updateFeedback(50, 5);
    QStringList wanted = {QStringLiteral("changed 50, following"),
                          QStringLiteral("changed 60, following")};
    QCOMPARE(signalLog.texts(), wanted);
    QCOMPARE(binder.setpointValue(60), QVariant(5));
    connect(&m_panel->slider, &QSlider::valueChanged, this, [&binder] {
        binder.updateFeedback(70, 7); // brings following to an end, for itself only
        QVERIFY(binder.isFollowing());
    });
    binder.updateFeedback(50, 6);
    wanted << QStringLiteral("changed 50, following") << QStringLiteral("changed 60, following")
           << QStringLiteral("changed 70, following");
    QCOMPARE(signalLog.texts(), wanted);
    QVERIFY(!binder.isFollowing());
}

void tst_spFbUiWrapperEdits::takesEditsInAnEventLoopOfASlotOfAReport()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    const signalLog_t signalLog(binder);
    connect(&binder, &spFbUiWrapper_t::valueChanged, this, [&](int changed) {
        if (changed != 50)
            return;
        QEventLoop dialog;
        QTimer::singleShot(0, &dialog, [&] {
            m_panel->slider.setValue(6);
            binder.updateFeedback(70, 7);
            QVERIFY(!binder.isFollowing());
            dialog.quit();
        });
        dialog.exec();
        QVERIFY(binder.isFollowing());
    });
    binder.updateFeedback(50, 5);
    QCOMPARE(signalLog.texts(),
             (QStringList{QStringLiteral("changed 50, following"), QStringLiteral("changed 60"),
                          QStringLiteral("edited 60"), QStringLiteral("changed 70, following")}));
    QVERIFY(!binder.isFollowing());
}

void tst_spFbUiWrapperEdits::announcesAnEditInASlotOfAnEditForEach()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    const signalLog_t signalLog(binder);
    connect(&binder, &spFbUiWrapper_t::valueChanged, this, [this](int changed) {
        if (changed == 50)
            m_panel->slider.setValue(m_panel->spinBox.value());
    });
    m_panel->spinBox.setValue(5);
    QCOMPARE(signalLog.texts(),
             (QStringList{QStringLiteral("changed 50"), QStringLiteral("changed 60"),
                          QStringLiteral("edited 60"), QStringLiteral("edited 50")}));
}

void tst_spFbUiWrapperEdits::takesTheReportThatASlotOfAnEditBrings()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    const signalLog_t signalLog(binder);
    connect(&binder, &spFbUiWrapper_t::setpointEdited, this, [&binder](int id) {
        QVERIFY(!binder.isFollowing());
        binder.setInFlight(id, 60000);
        binder.updateFeedback(60, 6); // follows
        binder.updateFeedback(static_cast<unsigned>(id), binder.setpointValue(id));
        QVERIFY(!binder.isFollowing());
    });
    m_panel->spinBox.setValue(5);
    QCOMPARE(signalLog.texts(),
             (QStringList{QStringLiteral("changed 50"), QStringLiteral("edited 50"),
                          QStringLiteral("changed 60, following")}));
    QVERIFY(binder.allSpFbMatch());
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::announcesNoEditOfAnItemThatIsRemoved()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    QMetaObject::Connection removal =
        connect(&binder, &spFbUiWrapper_t::valueChanged, this,
                [&binder](int changed) { binder.removeWrapper(changed); });
    QSignalSpy edits(&binder, &spFbUiWrapper_t::setpointEdited);
    m_panel->spinBox.setValue(5);
    QCOMPARE(edits.size(), 0);
    disconnect(removal);
    // The edit is written back, which moves the cursor, before it is announced.
    m_panel->lineEdit.setText(QStringLiteral("abc"));
    m_panel->lineEdit.setCursorPosition(0);
    edits.clear();
    connect(&m_panel->lineEdit, &QLineEdit::cursorPositionChanged, this,
            [&binder](int, int position) {
                if (position == 4)
                    binder.removeWrapper(40);
            });
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    QTest::keyClicks(&m_panel->lineEdit, QStringLiteral("x"));
    QVERIFY(!binder.idExists(40));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(edits.size(), 0);
}

void tst_spFbUiWrapperEdits::sendsNothingBackToEquipmentThatChangesByItself()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    std::vector<int> commands;
    connect(&binder, &spFbUiWrapper_t::setpointEdited, this, [&](int id) {
        commands.push_back(binder.setpointValue(id).toInt());
        binder.setInFlight(id, 60000);
    });
    for (int value = 1; value <= 3; ++value)
        binder.updateFeedback(50, value);
    QVERIFY(commands.empty());
    m_panel->spinBox.setValue(9);
    QVERIFY(commands == std::vector<int>{9});
    binder.updateFeedback(50, 4); // sent before the command came
    binder.updateFeedback(50, 9);
    binder.updateFeedback(50, 8);
    QVERIFY(commands == std::vector<int>{9});
    QCOMPARE(m_panel->spinBox.value(), 8);
}

void tst_spFbUiWrapperEdits::takesWhatTheWidgetShowsForFeedbackBeyondItsRange()
{
    m_panel->binder.updateFeedback(50, 1000);
    QCOMPARE(m_panel->spinBox.value(), 99);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(99));
    QVERIFY(!m_panel->binder.spFbMatch(50));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

// Deliberate: a widget that stays at its end tells of no change, so the setpoint is the report.
void tst_spFbUiWrapperEdits::keepsFeedbackThatTheWidgetCannotShowWhereNothingChanges()
{
    m_panel->binder.updateFeedback(50, 99);
    m_panel->binder.updateFeedback(50, 1000);
    QCOMPARE(m_panel->spinBox.value(), 99);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(1000));
    QVERIFY(m_panel->binder.spFbMatch(50));
}

void tst_spFbUiWrapperEdits::roundsTheSetpointAsTheWidgetDoes()
{
    m_panel->binder.updateFeedback(30, 1.234); // with two decimals
    QCOMPARE(m_panel->doubleSpinBox.value(), 1.23);
    QCOMPARE(m_panel->binder.setpointValue(30), QVariant(1.23));
    QVERIFY(!m_panel->binder.spFbMatch(30));
}

void tst_spFbUiWrapperEdits::takesNanAsFeedback()
{
    const double nan_ = std::numeric_limits<double>::quiet_NaN();
    m_panel->doubleSpinBox.setRange(-5.0, 5.0);
    m_panel->binder.updateFeedback(30, nan_);
    QVERIFY(!m_panel->binder.spFbMatch(30));
    QCOMPARE(m_panel->lamps[2].color(), QColor(Qt::red));
    QCOMPARE(m_panel->binder.setpointValue(30), QVariant(m_panel->doubleSpinBox.value()));
}

void tst_spFbUiWrapperEdits::initializesFromTheWidgets()
{
    lamp_t lamp;
    QSpinBox box;
    box.setValue(7);
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.addSpinBoxWrapper(1, 7, &lamp, 5, &box);
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    binder.initGui();
    QCOMPARE(binder.setpointValue(5), QVariant(7));
    QCOMPARE(lamp.color(), QColor(Qt::green));
    for (lamp_t& other : m_panel->lamps)
        QCOMPARE(other.color(), QColor(Qt::green));
    QCOMPARE(changes.size(), 0);
    binder.removeWrapper(5);
}

void tst_spFbUiWrapperEdits::resetsToTheFeedback()
{
    for (const int id : allIds)
        m_panel->edit(id);
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    m_panel->binder.resetGui();
    QVERIFY(m_panel->binder.allSpFbMatch());
    QVERIFY(!m_panel->checkBox.isChecked());
    QCOMPARE(m_panel->comboBox.currentIndex(), 0);
    QCOMPARE(m_panel->doubleSpinBox.value(), 0.0);
    QCOMPARE(m_panel->lineEdit.text(), QString());
    QCOMPARE(m_panel->spinBox.value(), 0);
    QCOMPARE(m_panel->slider.value(), 0);
    QCOMPARE(m_panel->dial.value(), 0);
    std::vector<int> ids;
    for (const QList<QVariant>& change : changes)
        ids.push_back(change[0].toInt());
    QVERIFY(ids == allIds); // in ascending order
    for (lamp_t& lamp : m_panel->lamps)
        QCOMPARE(lamp.color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::comparesAllItems()
{
    QVERIFY(m_panel->binder.allSpFbMatch());
    m_panel->edit(70);
    QVERIFY(!m_panel->binder.allSpFbMatch());
    QVERIFY(m_panel->binder.spFbMatch(60));
    QVERIFY(!m_panel->binder.spFbMatch(70));
}

void tst_spFbUiWrapperEdits::putsItemsInFlight()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.initGui();
    binder.setInFlight(10);
    QCOMPARE(m_panel->lamps[0].color(), QColor(Qt::yellow));
    QCOMPARE(m_panel->lamps[1].color(), QColor(Qt::green));
    binder.initGui();
    m_panel->edit(20);
    binder.setChangedItemsInFlight();
    QCOMPARE(m_panel->lamps[0].color(), QColor(Qt::green));
    QCOMPARE(m_panel->lamps[1].color(), QColor(Qt::yellow));
    binder.setAllItemsInFlight();
    for (lamp_t& lamp : m_panel->lamps)
        QCOMPARE(lamp.color(), QColor(Qt::yellow));
}

void tst_spFbUiWrapperEdits::staysInFlightThroughReportsThatDiffer()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    binder.setInFlight(50, 60000);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    for (const int value : {3, 4}) {
        binder.updateFeedback(50, value);
        QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
        QCOMPARE(m_panel->spinBox.value(), 5);
    }
    binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    binder.updateFeedback(50, 6); // in step again
    QCOMPARE(m_panel->spinBox.value(), 6);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::showsTheOutcomeWhenTheTimeIsOver_data()
{
    QTest::addColumn<int>("timeout");
    QTest::addColumn<int>("feedback");
    QTest::addColumn<QColor>("color");
    QTest::newRow("mismatch") << 1 << 3 << QColor(Qt::red);
    QTest::newRow("a match that no report brings") << 1 << 5 << QColor(Qt::green);
    QTest::newRow("no time") << 0 << 3 << QColor(Qt::red);
    QTest::newRow("less than no time") << -1 << 3 << QColor(Qt::red);
    QTest::newRow("least time") << std::numeric_limits<int>::min() << 3 << QColor(Qt::red);
}

void tst_spFbUiWrapperEdits::showsTheOutcomeWhenTheTimeIsOver()
{
    QFETCH(int, timeout);
    QFETCH(int, feedback);
    QFETCH(QColor, color);
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    const messageRecorder_t messages;
    binder.updateFeedback(50, feedback);
    binder.setInFlight(50, timeout);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    QTRY_COMPARE(m_panel->lamps[4].color(), color);
    QCOMPARE(m_panel->spinBox.value(), 5);
    QCOMPARE(messages.texts(), QStringList());
    binder.updateFeedback(50, 4);
    QVERIFY(m_panel->lamps[4].color() != QColor(Qt::yellow));
}

// The report answers the edit that has been taken back.
void tst_spFbUiWrapperEdits::keepsAnEditThatGoesBackWhileInFlight()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    connect(&binder, &spFbUiWrapper_t::setpointEdited, this,
            [&binder](int id) { binder.setInFlight(id, 60000); });
    m_panel->spinBox.setValue(5);
    m_panel->spinBox.setValue(0);
    QVERIFY(binder.spFbMatch(50));
    binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->spinBox.value(), 0);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    binder.updateFeedback(50, 0);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::endsTheTimeWithAnEdit()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    binder.setInFlight(50, 60000);
    m_panel->spinBox.setValue(6);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red)); // that was not sent
    binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
    binder.setInFlight(50, 60000);
    binder.updateFeedback(50, 4);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    binder.resetGui();
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    binder.updateFeedback(50, 7); // follows
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::endsTheTimeWithAnInitialization()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.setInFlight(50, 60000);
    m_panel->binder.initGui();
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
    m_panel->binder.updateFeedback(50, 3);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::replacesTheTime()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    m_panel->slider.setValue(6);
    binder.setInFlight(50, 0);
    binder.setInFlight(50, 60000);
    binder.setInFlight(60, 0);
    QTRY_COMPARE(m_panel->lamps[5].color(), QColor(Qt::red));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    binder.setInFlight(50, 0);
    QTRY_COMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::replacesTheTimeByNone_data()
{
    QTest::addColumn<inFlight_t>("setInFlight");
    const auto row = [](const char* name, inFlight_t set) { QTest::newRow(name) << set; };
    row("item", [](spFbUiWrapper_t& binder) { binder.setInFlight(50); });
    row("changed items", [](spFbUiWrapper_t& binder) { binder.setChangedItemsInFlight(); });
    row("all items", [](spFbUiWrapper_t& binder) { binder.setAllItemsInFlight(); });
}

void tst_spFbUiWrapperEdits::replacesTheTimeByNone()
{
    QFETCH(inFlight_t, setInFlight);
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    binder.setInFlight(50, 0);
    setInFlight(binder);
    binder.setInFlight(10, 0); // in step; its time ends after that of the other would
    QTRY_COMPARE(m_panel->lamps[0].color(), QColor(Qt::green));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    binder.updateFeedback(50, 3); // any report
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapperEdits::timesEachItemByItself()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    for (const int id : allIds) {
        m_panel->edit(id);
        binder.setInFlight(id, id == 70 ? 0 : 60000);
    }
    QTRY_COMPARE(m_panel->lamps[6].color(), QColor(Qt::red));
    binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    binder.removeWrapper(60);
    for (const int id : {10, 20, 30, 40, 60})
        QCOMPARE(m_panel->lamps[id / 10 - 1].color(), QColor(Qt::yellow));
    binder.updateFeedback(30, 1.4);
    QCOMPARE(m_panel->lamps[2].color(), QColor(Qt::yellow));
    binder.updateFeedback(30, 1.5000001);
    QCOMPARE(m_panel->lamps[2].color(), QColor(Qt::green));
}

void tst_spFbUiWrapperEdits::staysInFlightWithoutColorMode()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    lamp_t& lamp = m_panel->lamps[4];
    const QColor lit = lamp.palette().color(QPalette::Highlight);
    const QColor dark = lamp.palette().color(QPalette::Window);
    binder.setUseColor(false);
    binder.initGui();
    QCOMPARE(lamp.color(), dark);
    binder.setInFlight(50, 60000); // doesn't switch the lamp
    QCOMPARE(lamp.color(), dark);
    binder.updateFeedback(50, 3);
    QCOMPARE(lamp.color(), dark);
    binder.setInFlight(50, 0);
    QTRY_COMPARE(lamp.color(), lit);
    binder.setInFlight(50, 60000);
    binder.updateFeedback(50, 0);
    QCOMPARE(lamp.color(), dark);
}

void tst_spFbUiWrapperEdits::endsTheTimeOfARemovedItem()
{
    spFbUiWrapper_t& binder = m_panel->binder;
    m_panel->spinBox.setValue(5);
    binder.setInFlight(50, 0);
    binder.removeWrapper(50);
    QSpinBox other;
    binder.addSpinBoxWrapper(1, 2, &m_panel->lamps[4], 50, &other);
    binder.setInFlight(50);
    binder.setInFlight(10, 0);
    QTRY_COMPARE(m_panel->lamps[0].color(), QColor(Qt::green));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    binder.updateFeedback(50, 3);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
    binder.removeWrapper(50);
}

void tst_spFbUiWrapperEdits::survivesDeletionsWhileInFlight_data()
{
    QTest::addColumn<QString>("order");
    // of lamp, widget, item and binder
    for (const char* const order : {"lwib", "liwb", "wlib", "wilb", "ilwb", "bwl", "blw", "wbl"})
        QTest::newRow(order) << QString::fromLatin1(order);
}

void tst_spFbUiWrapperEdits::survivesDeletionsWhileInFlight()
{
    QFETCH(QString, order);
    for (int gone = 0; gone <= order.size(); ++gone) {
        auto lamp = std::make_unique<lamp_t>();
        auto box = std::make_unique<QSpinBox>();
        auto binder = std::make_unique<spFbUiWrapper_t>();
        binder->addSpinBoxWrapper(0, 0, lamp.get(), 7, box.get());
        box->setValue(5);
        binder->setInFlight(7, 0);
        for (const QChar thing : order.left(gone)) {
            if (thing == QLatin1Char('l'))
                lamp.reset();
            else if (thing == QLatin1Char('w'))
                box.reset();
            else if (thing == QLatin1Char('i'))
                binder->removeWrapper(7);
            else
                binder.reset();
        }
        QTimer later; // over after what was in flight
        later.setSingleShot(true);
        later.start(0);
        QTRY_VERIFY(!later.isActive());
        if (binder != nullptr && binder->idExists(7)) {
            QCOMPARE(binder->setpointValue(7), QVariant(5));
            binder->setInFlight(7, 60000);
            binder->updateFeedback(7, 3);
            binder->updateFeedback(7, 5);
            QVERIFY(binder->spFbMatch(7));
        }
        if (lamp != nullptr && gone == 0)
            QCOMPARE(lamp->color(), QColor(Qt::green));
    }
}

namespace {

// The rules for one spin box of 0 to 99, step by step.
struct plainItem_t
{
    void show(int value) // in the widget, which may tell of it
    {
        const int bounded = std::clamp(value, 0, 99);
        if (bounded == widget)
            return;
        widget = bounded;
        setpoint = bounded;
        update();
        ++changes;
    }
    void edit(int value)
    {
        const int before = changes;
        show(value);
        edits += changes - before;
    }
    void report(int value)
    {
        if (setpoint == feedback && !isTimed) {
            setpoint = value;
            show(value);
        }
        feedback = value;
        if (!isTimed || setpoint == feedback)
            update();
    }
    void update()
    {
        isTimed = false;
        color = setpoint == feedback ? Qt::green : Qt::red;
    }
    void setInFlight(bool forATime)
    {
        isTimed = forATime;
        color = Qt::yellow;
    }
    void initialize()
    {
        setpoint = widget;
        update();
    }

    int setpoint = 0;
    int feedback = 0;
    int widget = 0;
    QColor color = Qt::green;
    bool isTimed = false;
    int changes = 0; // that were announced
    int edits = 0;
};

} // namespace

void tst_spFbUiWrapperEdits::actsAsThePlainBinderDoes()
{
    random_t random;
    spFbUiWrapper_t& binder = m_panel->binder;
    binder.initGui();
    plainItem_t plain;
    QSignalSpy changes(&binder, &spFbUiWrapper_t::valueChanged);
    QSignalSpy edits(&binder, &spFbUiWrapper_t::setpointEdited);
    for (int step = 0; step < 5000; ++step) {
        // few values, so that many match, and some beyond the range
        const int value = random.chance(0.2) ? random.integer(95, 104) : random.integer(0, 2);
        const int operation = random.integer(0, 7);
        switch (operation) {
        case 0:
            m_panel->spinBox.setValue(value);
            plain.edit(value);
            break;
        case 1:
        case 2:
            binder.updateFeedback(50, value);
            plain.report(value);
            break;
        case 3:
            binder.setInFlight(50);
            plain.setInFlight(false);
            break;
        case 4:
            binder.setInFlight(50, 60000);
            plain.setInFlight(true);
            break;
        case 5: { // the time is over
            if (!plain.isTimed)
                break;
            binder.setInFlight(50, 0);
            binder.setInFlight(10, 0); // over after that
            QTRY_COMPARE(m_panel->lamps[0].color(), QColor(Qt::green));
            plain.update();
            break;
        }
        case 6:
            binder.resetGui();
            plain.show(plain.feedback);
            break;
        default:
            binder.initGui();
            plain.initialize();
        }
        const QByteArray where = QByteArray::number(step) + ", " + QByteArray::number(operation);
        QVERIFY2(m_panel->spinBox.value() == plain.widget, where);
        QVERIFY2(binder.setpointValue(50) == QVariant(plain.setpoint), where);
        QVERIFY2(binder.spFbMatch(50) == (plain.setpoint == plain.feedback), where);
        QVERIFY2(m_panel->lamps[4].color() == plain.color, where);
        QVERIFY2(changes.size() == plain.changes, where);
        QVERIFY2(edits.size() == plain.edits, where);
    }
    QVERIFY(plain.edits > 100);
    QVERIFY(plain.changes > plain.edits + 100);
}

ZORBIN_TEST_MAIN(tst_spFbUiWrapperEdits, QApplication)
#include "tst_spFbUiWrapperEdits.moc"
