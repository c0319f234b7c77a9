#include "indicator.h"
#include "pictures.h"
#include "spFbUiWrapperItem.h"
#include "testCase.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QVariant>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace zorbin_qt_gui;
using item_t = spFbUiWrapperItem_t;

static_assert(std::is_copy_constructible<item_t>::value, "items are values");
static_assert(std::is_copy_assignable<item_t>::value, "items are values");

namespace {

class derivedLineEdit_t : public QLineEdit
{
    Q_OBJECT
};

// Without a meta-object of its own it is a QSpinBox.
class plainDerivedSpinBox_t : public QSpinBox
{
};

class lamp_t : public indicator_t
{
public:
    lamp_t() { resize(20, 20); }

    QColor color() { return snapshot(*this).pixelColor(10, 10); }
    bool isOff() { return color() == palette().color(QPalette::Window); }
};

const QColor highlight()
{
    return QApplication::palette().color(QPalette::Highlight);
}

} // namespace

/// A widget bound with its setpoint, its feedback and its lamp.
class tst_spFbUiWrapperItem : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void listsTheSupportedClasses();
    void knowsTheKindOfAWidget_data();
    void knowsTheKindOfAWidget();
    void numbersTheKinds();

    void startsAsToldWithoutTouchingWidgetAndLamp();
    void takesTheColorWithoutColorModeAtItsConstruction();
    void showsTheSetpointInTheWidget_data();
    void showsTheSetpointInTheWidget();
    void resetsTheWidgetToTheFeedback_data();
    void resetsTheWidgetToTheFeedback();
    void writesNothingToUnsupportedWidgets();
    void keepsValuesBeyondTheWidgetsRange();
    void showsNoEntryForAnIndexThatThereIsNot();
    void selectsNoEntryOfAnEmptiedComboBoxOnce();
    void replacesATypedTextByTheEntry_data();
    void replacesATypedTextByTheEntry();
    void movesALineEditsCursorToTheEnd();

    void matchesByEquality_data();
    void matchesByEquality();
    void matchesDoublesWithinATolerance_data();
    void matchesDoublesWithinATolerance();
    void neverMatchesForUnsupportedWidgets();

    void showsMatchAndMismatchInColors();
    void switchesTheLampWithoutColorMode();
    void keepsTheLampsSwitchInColorMode();
    void showsWhatIsInFlight();
    void keepsTheLampUntilTheNextUpdate();

    void copiesAllFields();
    void assignsAllFields();
    void outlivesItsLampAndItsWidget();
    void takesItsOwnValuesAsNewOnes();
};

void tst_spFbUiWrapperItem::listsTheSupportedClasses()
{
    QVERIFY((item_t::supportedWidgets() ==
             std::vector<std::string>{"QCheckBox", "QComboBox", "QDoubleSpinBox", "QLineEdit",
                                      "QSpinBox", "QAbstractSlider", "QSlider", "QDial"}));
    QCOMPARE(&item_t::supportedWidgets(), &item_t::supportedWidgets());
}

void tst_spFbUiWrapperItem::knowsTheKindOfAWidget_data()
{
    QTest::addColumn<QWidget*>("widget");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("kind");
    const auto row = [](QWidget* widget, const char* name, int kind) {
        QTest::newRow(name) << widget << QByteArray(name) << kind;
    };
    row(new QCheckBox, "QCheckBox", item_t::SW_CHECK_BOX);
    row(new QComboBox, "QComboBox", item_t::SW_COMBO_BOX);
    row(new QDoubleSpinBox, "QDoubleSpinBox", item_t::SW_DOUBLE_SPIN_BOX);
    row(new QLineEdit, "QLineEdit", item_t::SW_LINE_EDIT);
    row(new QSpinBox, "QSpinBox", item_t::SW_SPIN_BOX);
    row(new QAbstractSlider, "QAbstractSlider", item_t::SW_SLIDER);
    row(new QSlider, "QSlider", item_t::SW_SLIDER);
    row(new QDial, "QDial", item_t::SW_SLIDER);
    row(new QScrollBar, "QScrollBar", item_t::SW_UNSUPPORTED);
    row(new QWidget, "QWidget", item_t::SW_UNSUPPORTED);
    row(new derivedLineEdit_t, derivedLineEdit_t::staticMetaObject.className(),
        item_t::SW_UNSUPPORTED);
    QTest::newRow("derived without Q_OBJECT") << static_cast<QWidget*>(new plainDerivedSpinBox_t)
                                              << QByteArray("QSpinBox") << int(item_t::SW_SPIN_BOX);
}

void tst_spFbUiWrapperItem::knowsTheKindOfAWidget()
{
    QFETCH(QWidget*, widget);
    QFETCH(QByteArray, name);
    QFETCH(int, kind);
    const std::unique_ptr<QWidget> owner(widget);
    QCOMPARE(item_t::widgetType(widget), name.toStdString());
    QCOMPARE(int(item_t::widgetEnumType(widget)), kind);
    QCOMPARE(item_t::isWidgetSupported(widget), kind != item_t::SW_UNSUPPORTED);
    indicator_t lamp;
    const item_t item(1, 2, &lamp, widget);
    QCOMPARE(int(item.widgetEnumType()), kind);
    QCOMPARE(item.widget(), widget);
}

void tst_spFbUiWrapperItem::numbersTheKinds()
{
    QCOMPARE(int(item_t::SW_UNSUPPORTED), 0);
    QCOMPARE(int(item_t::SW_CHECK_BOX), 1);
    QCOMPARE(int(item_t::SW_COMBO_BOX), 2);
    QCOMPARE(int(item_t::SW_DOUBLE_SPIN_BOX), 3);
    QCOMPARE(int(item_t::SW_LINE_EDIT), 4);
    QCOMPARE(int(item_t::SW_SPIN_BOX), 5);
    QCOMPARE(int(item_t::SW_SLIDER), 6);
}

void tst_spFbUiWrapperItem::startsAsToldWithoutTouchingWidgetAndLamp()
{
    lamp_t lamp;
    QSpinBox box;
    const item_t item(3, 4, &lamp, &box);
    QCOMPARE(item.setpointValue(), QVariant(3));
    QCOMPARE(item.feedbackValue(), QVariant(4));
    QCOMPARE(item.matchColor(), QColor(Qt::green));
    QCOMPARE(item.mismatchColor(), QColor(Qt::red));
    QCOMPARE(item.inFlightColor(), QColor(Qt::yellow));
    QVERIFY(item.useColor());
    QCOMPARE(box.value(), 0);
    QCOMPARE(lamp.color(), highlight());
}

void tst_spFbUiWrapperItem::takesTheColorWithoutColorModeAtItsConstruction()
{
    lamp_t lamp;
    QSpinBox box;
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::Highlight, QColor(1, 2, 3));
    QApplication::setPalette(palette);
    item_t item(3, 4, &lamp, &box);
    QApplication::setPalette(before);
    item.setUseColor(false);
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(1, 2, 3));
}

namespace {

// A widget of each kind, and how to read it.
struct specimen_t
{
    QWidget* widget;
    QVariant value; // one that it can show
    QVariant (*shown)(const QWidget*);
};

} // namespace
Q_DECLARE_METATYPE(specimen_t)

void tst_spFbUiWrapperItem::showsTheSetpointInTheWidget_data()
{
    QTest::addColumn<specimen_t>("specimen");
    QTest::newRow("check box") << specimen_t{
        new QCheckBox, true, [](const QWidget* widget) {
            return QVariant(qobject_cast<const QCheckBox*>(widget)->isChecked());
        }};
    auto* const comboBox = new QComboBox;
    comboBox->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    QTest::newRow("combo box") << specimen_t{
        comboBox, 2, [](const QWidget* widget) {
            return QVariant(qobject_cast<const QComboBox*>(widget)->currentIndex());
        }};
    QTest::newRow("double spin box")
        << specimen_t{new QDoubleSpinBox, 1.25, [](const QWidget* widget) {
                          return QVariant(qobject_cast<const QDoubleSpinBox*>(widget)->value());
                      }};
    QTest::newRow("line edit") << specimen_t{
        new QLineEdit, QStringLiteral("text"), [](const QWidget* widget) {
            return QVariant(qobject_cast<const QLineEdit*>(widget)->text());
        }};
    QTest::newRow("spin box") << specimen_t{new QSpinBox, 42, [](const QWidget* widget) {
                                                return QVariant(
                                                    qobject_cast<const QSpinBox*>(widget)->value());
                                            }};
    const auto sliderValue = [](const QWidget* widget) {
        return QVariant(qobject_cast<const QAbstractSlider*>(widget)->value());
    };
    QTest::newRow("slider") << specimen_t{new QSlider, 42, sliderValue};
    QTest::newRow("dial") << specimen_t{new QDial, 42, sliderValue};
}

void tst_spFbUiWrapperItem::showsTheSetpointInTheWidget()
{
    QFETCH(specimen_t, specimen);
    const std::unique_ptr<QWidget> owner(specimen.widget);
    lamp_t lamp;
    item_t item(QVariant(), QVariant(), &lamp, specimen.widget);
    item.setSetpointAndWidgetValue(specimen.value);
    QCOMPARE(item.setpointValue(), specimen.value);
    QCOMPARE(specimen.shown(specimen.widget), specimen.value);
    QVERIFY(!item.feedbackValue().isValid());
    QCOMPARE(lamp.color(), highlight());
}

void tst_spFbUiWrapperItem::resetsTheWidgetToTheFeedback_data()
{
    showsTheSetpointInTheWidget_data();
}

void tst_spFbUiWrapperItem::resetsTheWidgetToTheFeedback()
{
    QFETCH(specimen_t, specimen);
    const std::unique_ptr<QWidget> owner(specimen.widget);
    lamp_t lamp;
    item_t item(QVariant(), QVariant(), &lamp, specimen.widget);
    item.setFeedbackValue(specimen.value);
    QVERIFY(specimen.shown(specimen.widget) != specimen.value);
    item.reset();
    QCOMPARE(specimen.shown(specimen.widget), specimen.value);
    QVERIFY(!item.setpointValue().isValid()); // the item alone doesn't follow
    QCOMPARE(lamp.color(), highlight());
}

void tst_spFbUiWrapperItem::writesNothingToUnsupportedWidgets()
{
    lamp_t lamp;
    QScrollBar bar;
    item_t item(3, 4, &lamp, &bar);
    item.reset();
    QCOMPARE(bar.value(), 0);
    item.setSetpointAndWidgetValue(5);
    QCOMPARE(item.setpointValue(), QVariant(5));
    QCOMPARE(bar.value(), 0);
}

void tst_spFbUiWrapperItem::keepsValuesBeyondTheWidgetsRange()
{
    lamp_t lamp;
    QSpinBox box;
    item_t item(3, 4, &lamp, &box);
    item.setSetpointAndWidgetValue(1000);
    QCOMPARE(box.value(), 99);
    QCOMPARE(item.setpointValue(), QVariant(1000));
}

void tst_spFbUiWrapperItem::showsNoEntryForAnIndexThatThereIsNot()
{
    lamp_t lamp;
    QComboBox box;
    box.addItem(QStringLiteral("only"));
    item_t item(0, 0, &lamp, &box);
    item.setSetpointAndWidgetValue(7);
    QCOMPARE(box.currentIndex(), -1);
    QCOMPARE(item.setpointValue(), QVariant(7));
}

// Qt 6 tells of a change whenever an emptied box is told to select none.
void tst_spFbUiWrapperItem::selectsNoEntryOfAnEmptiedComboBoxOnce()
{
    lamp_t lamp;
    QComboBox box;
    box.addItems({QStringLiteral("a"), QStringLiteral("b")});
    item_t item(0, 0, &lamp, &box);
    box.clear();
    QSignalSpy changes(&box, qOverload<int>(&QComboBox::currentIndexChanged));
    item.setSetpointAndWidgetValue(-1);
    item.setSetpointAndWidgetValue(7); // an index that there is not
    QCOMPARE(box.currentIndex(), -1);
    QCOMPARE(changes.size(), 0);
    box.addItems({QStringLiteral("c"), QStringLiteral("d")});
    item.setSetpointAndWidgetValue(1);
    QCOMPARE(box.currentText(), QStringLiteral("d"));
}

void tst_spFbUiWrapperItem::replacesATypedTextByTheEntry_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::newRow("an entry") << 1 << QStringLiteral("b");
    QTest::newRow("none") << -1 << QString();
}

// The text alone changes: the entry is the same.
void tst_spFbUiWrapperItem::replacesATypedTextByTheEntry()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    lamp_t lamp;
    QComboBox box;
    box.setEditable(true);
    box.addItems({QStringLiteral("a"), QStringLiteral("b")});
    box.setCurrentIndex(index);
    item_t item(0, index, &lamp, &box);
    box.setEditText(QStringLiteral("typed"));
    item.setSetpointAndWidgetValue(index);
    QCOMPARE(box.currentText(), text);
    box.setEditText(QStringLiteral("typed again"));
    item.reset();
    QCOMPARE(box.currentText(), text);
    QCOMPARE(box.currentIndex(), index);
}

void tst_spFbUiWrapperItem::movesALineEditsCursorToTheEnd()
{
    lamp_t lamp;
    QLineEdit edit(QStringLiteral("text"));
    edit.setCursorPosition(1);
    item_t item(QString(), QString(), &lamp, &edit);
    item.setSetpointAndWidgetValue(QStringLiteral("text"));
    QCOMPARE(edit.cursorPosition(), 4);
}

void tst_spFbUiWrapperItem::matchesByEquality_data()
{
    QTest::addColumn<QWidget*>("widget");
    QTest::addColumn<QVariant>("setpoint");
    QTest::addColumn<QVariant>("feedback");
    QTest::addColumn<bool>("matches");
    const auto row = [](const char* name, QWidget* widget, const QVariant& setpoint,
                        const QVariant& feedback, bool matches) {
        QTest::newRow(name) << widget << setpoint << feedback << matches;
    };
    row("same bools", new QCheckBox, true, true, true);
    row("different bools", new QCheckBox, true, false, false);
    row("same indices", new QComboBox, 2, 2, true);
    row("different indices", new QComboBox, 2, 3, false);
    row("same texts", new QLineEdit, QStringLiteral("a"), QStringLiteral("a"), true);
    row("another case", new QLineEdit, QStringLiteral("a"), QStringLiteral("A"), false);
    row("same integers", new QSpinBox, 3, 3, true);
    row("an equal double", new QSpinBox, 3, 3.0, true);
    row("nearly the same", new QSpinBox, 3, 3.0000005, false); // not by the tolerance
    row("same positions", new QSlider, 3, 3, true);
    row("different positions", new QDial, 3, 4, false);
}

void tst_spFbUiWrapperItem::matchesByEquality()
{
    QFETCH(QWidget*, widget);
    QFETCH(QVariant, setpoint);
    QFETCH(QVariant, feedback);
    const std::unique_ptr<QWidget> owner(widget);
    lamp_t lamp;
    QTEST(item_t(setpoint, feedback, &lamp, widget).spFbMatch(), "matches");
}

void tst_spFbUiWrapperItem::matchesDoublesWithinATolerance_data()
{
    QTest::addColumn<double>("setpoint");
    QTest::addColumn<double>("feedback");
    QTest::addColumn<bool>("matches");
    const double nan_ = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    QTest::newRow("equal") << 1.0 << 1.0 << true;
    QTest::newRow("half the tolerance") << 1.0 << 1.0000005 << true;
    QTest::newRow("beyond the tolerance") << 1.0 << 1.0000011 << false;
    QTest::newRow("the tolerance itself") << 0.0 << 1e-6 << false;
    QTest::newRow("just below it") << 0.0 << 0.999999e-6 << true;
    QTest::newRow("below it, negative") << 0.0 << -0.999999e-6 << true;
    QTest::newRow("absolute, not relative") << 1e12 << 1e12 + 0.001 << false;
    QTest::newRow("NaN asked for") << nan_ << 1.0 << false;
    QTest::newRow("NaN reported") << 1.0 << nan_ << false;
    QTest::newRow("both NaN") << nan_ << nan_ << false;
    QTest::newRow("both infinite") << inf << inf << false; // their difference is NaN
}

void tst_spFbUiWrapperItem::matchesDoublesWithinATolerance()
{
    QFETCH(double, setpoint);
    QFETCH(double, feedback);
    lamp_t lamp;
    QDoubleSpinBox box;
    QTEST(item_t(setpoint, feedback, &lamp, &box).spFbMatch(), "matches");
}

void tst_spFbUiWrapperItem::neverMatchesForUnsupportedWidgets()
{
    lamp_t lamp;
    QScrollBar bar;
    QVERIFY(!item_t(3, 3, &lamp, &bar).spFbMatch());
}

void tst_spFbUiWrapperItem::showsMatchAndMismatchInColors()
{
    lamp_t lamp;
    QSpinBox box;
    item_t item(3, 4, &lamp, &box);
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(Qt::red));
    item.setFeedbackValue(3);
    QCOMPARE(lamp.color(), QColor(Qt::red));
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(Qt::green));
}

void tst_spFbUiWrapperItem::switchesTheLampWithoutColorMode()
{
    lamp_t lamp;
    QSpinBox box;
    item_t item(3, 3, &lamp, &box);
    item.setUseColor(false);
    item.updateIndicator();
    QVERIFY(lamp.isOff());
    item.setFeedbackValue(4);
    item.updateIndicator();
    QCOMPARE(lamp.color(), highlight());
}

void tst_spFbUiWrapperItem::keepsTheLampsSwitchInColorMode()
{
    lamp_t lamp;
    QSpinBox box;
    lamp.setOn(false);
    item_t item(3, 4, &lamp, &box);
    item.updateIndicator();
    QVERIFY(lamp.isOff());
    item.setInFlight();
    QVERIFY(lamp.isOff());
    lamp.setOn(true);
    QCOMPARE(lamp.color(), QColor(Qt::yellow));
}

void tst_spFbUiWrapperItem::showsWhatIsInFlight()
{
    lamp_t lamp;
    QSpinBox box;
    item_t item(3, 3, &lamp, &box);
    item.setInFlight();
    QCOMPARE(lamp.color(), QColor(Qt::yellow));
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(Qt::green));
    item.setUseColor(false);
    item.setInFlight(); // doesn't switch the lamp, though the values match
    QCOMPARE(lamp.color(), highlight());
}

void tst_spFbUiWrapperItem::keepsTheLampUntilTheNextUpdate()
{
    lamp_t lamp;
    QSpinBox box;
    item_t item(3, 3, &lamp, &box);
    item.updateIndicator();
    item.setMatchColor(Qt::blue);
    item.setMismatchColor(Qt::cyan);
    item.setInFlightColor(Qt::magenta);
    item.setUseColor(false);
    QCOMPARE(lamp.color(), QColor(Qt::green));
    item.setUseColor(true);
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(Qt::blue));
    item.setInFlight();
    QCOMPARE(lamp.color(), QColor(Qt::magenta));
    item.setFeedbackValue(4);
    item.updateIndicator();
    QCOMPARE(lamp.color(), QColor(Qt::cyan));
}

static void verifySame(const item_t& actual, const item_t& wanted)
{
    QCOMPARE(actual.setpointValue(), wanted.setpointValue());
    QCOMPARE(actual.feedbackValue(), wanted.feedbackValue());
    QCOMPARE(actual.widget(), wanted.widget());
    QCOMPARE(int(actual.widgetEnumType()), int(wanted.widgetEnumType()));
    QCOMPARE(actual.matchColor(), wanted.matchColor());
    QCOMPARE(actual.mismatchColor(), wanted.mismatchColor());
    QCOMPARE(actual.inFlightColor(), wanted.inFlightColor());
    QCOMPARE(actual.useColor(), wanted.useColor());
}

void tst_spFbUiWrapperItem::copiesAllFields()
{
    lamp_t lamp;
    QSpinBox box;
    item_t original(3, 4, &lamp, &box);
    original.setMatchColor(Qt::blue);
    original.setMismatchColor(Qt::cyan);
    original.setInFlightColor(Qt::magenta);
    original.setUseColor(false);
    item_t copy = original;
    verifySame(copy, original);
    copy.setFeedbackValue(5); // a value of its own
    QCOMPARE(original.feedbackValue(), QVariant(4));
    copy.setUseColor(true);
    copy.updateIndicator(); // of the same lamp
    QCOMPARE(lamp.color(), QColor(Qt::cyan));
}

void tst_spFbUiWrapperItem::assignsAllFields()
{
    lamp_t lamp;
    QSpinBox box;
    QLineEdit edit;
    item_t original(3, 4, &lamp, &box);
    original.setMatchColor(Qt::blue);
    original.setUseColor(false);
    item_t other(QString(), QString(), &lamp, &edit);
    other = original;
    verifySame(other, original);
    const item_t& itself = other;
    other = itself;
    verifySame(other, original);
}

void tst_spFbUiWrapperItem::outlivesItsLampAndItsWidget()
{
    auto lamp = std::make_unique<lamp_t>();
    auto box = std::make_unique<QSpinBox>();
    item_t item(3, 4, lamp.get(), box.get());
    lamp.reset();
    item.updateIndicator();
    item.setInFlight();
    item.setUseColor(false);
    item.updateIndicator();
    item.setInFlight();
    item.setSetpointAndWidgetValue(7);
    QCOMPARE(box->value(), 7);
    box.reset();
    QVERIFY(item.widget() == nullptr);
    QCOMPARE(int(item.widgetEnumType()), int(item_t::SW_SPIN_BOX));
    item.setSetpointAndWidgetValue(4);
    item.reset();
    QCOMPARE(item.setpointValue(), QVariant(4));
    QVERIFY(item.spFbMatch());
    const item_t copy = item;
    verifySame(copy, item);
}

void tst_spFbUiWrapperItem::takesItsOwnValuesAsNewOnes()
{
    lamp_t lamp;
    QLineEdit edit;
    item_t item(QStringLiteral("a"), QStringLiteral("b"), &lamp, &edit);
    item.setSetpointAndWidgetValue(item.feedbackValue());
    item.setSetpointAndWidgetValue(item.setpointValue());
    item.setFeedbackValue(item.feedbackValue());
    QCOMPARE(item.setpointValue(), QVariant(QStringLiteral("b")));
    QCOMPARE(edit.text(), QStringLiteral("b"));
}

ZORBIN_TEST_MAIN(tst_spFbUiWrapperItem, QApplication)
#include "tst_spFbUiWrapperItem.moc"
