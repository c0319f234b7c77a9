#include "childProcess.h"
#include "indicator.h"
#include "messageRecorder.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "spFbUiWrapper.h"
#include "testCase.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QDoubleSpinBox>
#include <QEventLoop>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPointer>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<spFbUiWrapper_t>::value, "binders aren't copied");

namespace {

class lamp_t : public indicator_t
{
public:
    lamp_t() { resize(20, 20); }

    QColor color() { return snapshot(*this).pixelColor(10, 10); }
};

class derivedSpinBox_t : public QSpinBox
{
    Q_OBJECT
};

// A control panel with a widget of each kind, bound under 10, 20 and so on.
struct panel_t
{
    panel_t()
    {
        comboBox.addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        binder.addCheckBoxWrapper(false, false, &lamps[0], 10, &checkBox);
        binder.addComboBoxWrapper(0, 0, &lamps[1], 20, &comboBox);
        binder.addDoubleSpinBoxWrapper(0.0, 0.0, &lamps[2], 30, &doubleSpinBox);
        binder.addLineEditWrapper(QString(), QString(), &lamps[3], 40, &lineEdit);
        binder.addSpinBoxWrapper(0, 0, &lamps[4], 50, &spinBox);
        binder.addSliderWrapper(0, 0, &lamps[5], 60, &slider);
        binder.addSliderWrapper(0, 0, &lamps[6], 70, &dial);
    }

    // Changes the widget of an id as an operator does.
    void edit(int id)
    {
        switch (id) {
        case 10:
            checkBox.click();
            break;
        case 20:
            comboBox.setCurrentIndex(2);
            break;
        case 30:
            doubleSpinBox.setValue(1.5);
            break;
        case 40:
            QTest::keyClicks(&lineEdit, QStringLiteral("x"));
            break;
        case 50:
            spinBox.setValue(5);
            break;
        case 60:
            slider.setValue(6);
            break;
        default:
            dial.setValue(7);
        }
    }

    lamp_t lamps[7];
    QCheckBox checkBox;
    QComboBox comboBox;
    QDoubleSpinBox doubleSpinBox;
    QLineEdit lineEdit;
    QSpinBox spinBox;
    QSlider slider;
    QDial dial;
    spFbUiWrapper_t binder;
};

QVariant editedValue(int id)
{
    switch (id) {
    case 10:
        return true;
    case 20:
        return 2;
    case 30:
        return 1.5;
    case 40:
        return QStringLiteral("x");
    case 50:
        return 5;
    case 60:
        return 6;
    default:
        return 7;
    }
}

const std::vector<int> allIds = {10, 20, 30, 40, 50, 60, 70};

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

/// The binder of widgets, setpoints, feedback and lamps.
class tst_spFbUiWrapper : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_panel.reset(); }

private Q_SLOTS:
    void startsEmpty();
    void hasTheDeclaredSignalsAndSlots();
    void keepsItemsById();
    void startsWithTheValuesTold();
    void touchesNothingAtRegistration();

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

private:
    std::unique_ptr<panel_t> m_panel;
};

void tst_spFbUiWrapper::setUp()
{
    m_panel = std::make_unique<panel_t>();
}

static void addIds()
{
    QTest::addColumn<int>("id");
    const char* const names[] = {
        "check box", "combo box", "double spin box", "line edit", "spin box", "slider", "dial"};
    for (int i = 0; i < 7; ++i)
        QTest::newRow(names[i]) << 10 * (i + 1);
}

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

void tst_spFbUiWrapper::takesEditsAsSetpoints_data()
{
    addIds();
}

void tst_spFbUiWrapper::takesEditsAsSetpoints()
{
    QFETCH(int, id);
    m_panel->edit(id);
    QCOMPARE(m_panel->binder.setpointValue(id), editedValue(id));
    QVERIFY(!m_panel->binder.spFbMatch(id));
    QCOMPARE(m_panel->lamps[id / 10 - 1].color(), QColor(Qt::red));
}

void tst_spFbUiWrapper::announcesEachEditOnceAfterStoringIt_data()
{
    addIds();
}

void tst_spFbUiWrapper::announcesEachEditOnceAfterStoringIt()
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

void tst_spFbUiWrapper::announcesChangesByTheProgramToo()
{
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    m_panel->binder.updateFeedback(50, 8);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes[0][0].toInt(), 50);
    m_panel->binder.updateFeedback(50, 8); // the widget stays as it is
    QCOMPARE(changes.size(), 1);
}

// Deliberate: an edit is written back, which takes the cursor to the end of the text.
void tst_spFbUiWrapper::putsALineEditsCursorAtTheEndOnEdits()
{
    m_panel->lineEdit.setText(QStringLiteral("abc"));
    m_panel->lineEdit.setCursorPosition(1);
    QTest::keyClicks(&m_panel->lineEdit, QStringLiteral("x"));
    QCOMPARE(m_panel->lineEdit.text(), QStringLiteral("axbc"));
    QCOMPARE(m_panel->lineEdit.cursorPosition(), 4);
}

void tst_spFbUiWrapper::takesTheLossOfAComboBoxsSelection_data()
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

void tst_spFbUiWrapper::takesTheLossOfAComboBoxsSelection()
{
    QFETCH(loss_t, loseSelection);
    QSignalSpy changes(&m_panel->binder, &spFbUiWrapper_t::valueChanged);
    loseSelection(m_panel->comboBox);
    QCOMPARE(m_panel->comboBox.currentIndex(), -1);
    QCOMPARE(m_panel->binder.setpointValue(20), QVariant(-1));
    QCOMPARE(m_panel->lamps[1].color(), QColor(Qt::red));
    QCOMPARE(changes.size(), 1);
}

void tst_spFbUiWrapper::letsWidgetsInStepFollowTheFeedback_data()
{
    addIds();
}

void tst_spFbUiWrapper::letsWidgetsInStepFollowTheFeedback()
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

void tst_spFbUiWrapper::leavesPendingEditsAlone()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.updateFeedback(50, 9);
    QCOMPARE(m_panel->spinBox.value(), 5);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(5));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapper::endsAnEditThatTheEquipmentHasTaken()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.setChangedItemsInFlight();
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::yellow));
    m_panel->binder.updateFeedback(50, 5);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::green));
    m_panel->binder.updateFeedback(50, 6); // in step again
    QCOMPARE(m_panel->spinBox.value(), 6);
}

void tst_spFbUiWrapper::announcesAnEditAfterTheChange_data()
{
    addIds();
}

void tst_spFbUiWrapper::announcesAnEditAfterTheChange()
{
    QFETCH(int, id);
    const signalLog_t signalLog(m_panel->binder);
    m_panel->edit(id);
    QCOMPARE(signalLog.texts(), (QStringList{QStringLiteral("changed %1").arg(id),
                                             QStringLiteral("edited %1").arg(id)}));
    QVERIFY(!m_panel->binder.isFollowing());
}

void tst_spFbUiWrapper::announcesNoEditOfAWidgetThatFollows_data()
{
    addIds();
}

void tst_spFbUiWrapper::announcesNoEditOfAWidgetThatFollows()
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

void tst_spFbUiWrapper::announcesNoEditOfAReset()
{
    m_panel->spinBox.setValue(5);
    const signalLog_t signalLog(m_panel->binder);
    m_panel->binder.resetGui();
    QCOMPARE(signalLog.texts(), QStringList{QStringLiteral("changed 50, following")});
    QVERIFY(!m_panel->binder.isFollowing());
}

void tst_spFbUiWrapper::countsWhatSlotsOfAReportChangeAsFollowing()
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

void tst_spFbUiWrapper::takesEditsInAnEventLoopOfASlotOfAReport()
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

void tst_spFbUiWrapper::announcesAnEditInASlotOfAnEditForEach()
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

void tst_spFbUiWrapper::takesTheReportThatASlotOfAnEditBrings()
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

void tst_spFbUiWrapper::announcesNoEditOfAnItemThatIsRemoved()
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

void tst_spFbUiWrapper::sendsNothingBackToEquipmentThatChangesByItself()
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

void tst_spFbUiWrapper::takesWhatTheWidgetShowsForFeedbackBeyondItsRange()
{
    m_panel->binder.updateFeedback(50, 1000);
    QCOMPARE(m_panel->spinBox.value(), 99);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(99));
    QVERIFY(!m_panel->binder.spFbMatch(50));
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

// Deliberate: a widget that stays at its end tells of no change, so the setpoint is the report.
void tst_spFbUiWrapper::keepsFeedbackThatTheWidgetCannotShowWhereNothingChanges()
{
    m_panel->binder.updateFeedback(50, 99);
    m_panel->binder.updateFeedback(50, 1000);
    QCOMPARE(m_panel->spinBox.value(), 99);
    QCOMPARE(m_panel->binder.setpointValue(50), QVariant(1000));
    QVERIFY(m_panel->binder.spFbMatch(50));
}

void tst_spFbUiWrapper::roundsTheSetpointAsTheWidgetDoes()
{
    m_panel->binder.updateFeedback(30, 1.234); // with two decimals
    QCOMPARE(m_panel->doubleSpinBox.value(), 1.23);
    QCOMPARE(m_panel->binder.setpointValue(30), QVariant(1.23));
    QVERIFY(!m_panel->binder.spFbMatch(30));
}

void tst_spFbUiWrapper::takesNanAsFeedback()
{
    const double nan_ = std::numeric_limits<double>::quiet_NaN();
    m_panel->doubleSpinBox.setRange(-5.0, 5.0);
    m_panel->binder.updateFeedback(30, nan_);
    QVERIFY(!m_panel->binder.spFbMatch(30));
    QCOMPARE(m_panel->lamps[2].color(), QColor(Qt::red));
    QCOMPARE(m_panel->binder.setpointValue(30), QVariant(m_panel->doubleSpinBox.value()));
}

void tst_spFbUiWrapper::initializesFromTheWidgets()
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

void tst_spFbUiWrapper::resetsToTheFeedback()
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

namespace {

} // namespace

void tst_spFbUiWrapper::comparesAllItems()
{
    QVERIFY(m_panel->binder.allSpFbMatch());
    m_panel->edit(70);
    QVERIFY(!m_panel->binder.allSpFbMatch());
    QVERIFY(m_panel->binder.spFbMatch(60));
    QVERIFY(!m_panel->binder.spFbMatch(70));
}

void tst_spFbUiWrapper::putsItemsInFlight()
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

void tst_spFbUiWrapper::staysInFlightThroughReportsThatDiffer()
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

void tst_spFbUiWrapper::showsTheOutcomeWhenTheTimeIsOver_data()
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

void tst_spFbUiWrapper::showsTheOutcomeWhenTheTimeIsOver()
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
void tst_spFbUiWrapper::keepsAnEditThatGoesBackWhileInFlight()
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

void tst_spFbUiWrapper::endsTheTimeWithAnEdit()
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

void tst_spFbUiWrapper::endsTheTimeWithAnInitialization()
{
    m_panel->spinBox.setValue(5);
    m_panel->binder.setInFlight(50, 60000);
    m_panel->binder.initGui();
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
    m_panel->binder.updateFeedback(50, 3);
    QCOMPARE(m_panel->lamps[4].color(), QColor(Qt::red));
}

void tst_spFbUiWrapper::replacesTheTime()
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

void tst_spFbUiWrapper::replacesTheTimeByNone_data()
{
    QTest::addColumn<inFlight_t>("setInFlight");
    const auto row = [](const char* name, inFlight_t set) { QTest::newRow(name) << set; };
    row("item", [](spFbUiWrapper_t& binder) { binder.setInFlight(50); });
    row("changed items", [](spFbUiWrapper_t& binder) { binder.setChangedItemsInFlight(); });
    row("all items", [](spFbUiWrapper_t& binder) { binder.setAllItemsInFlight(); });
}

void tst_spFbUiWrapper::replacesTheTimeByNone()
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

void tst_spFbUiWrapper::timesEachItemByItself()
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

void tst_spFbUiWrapper::staysInFlightWithoutColorMode()
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

void tst_spFbUiWrapper::endsTheTimeOfARemovedItem()
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

void tst_spFbUiWrapper::survivesDeletionsWhileInFlight_data()
{
    QTest::addColumn<QString>("order");
    // of lamp, widget, item and binder
    for (const char* const order : {"lwib", "liwb", "wlib", "wilb", "ilwb", "bwl", "blw", "wbl"})
        QTest::newRow(order) << QString::fromLatin1(order);
}

void tst_spFbUiWrapper::survivesDeletionsWhileInFlight()
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

void tst_spFbUiWrapper::actsAsThePlainBinderDoes()
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
