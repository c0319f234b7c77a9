#include "latLonEditor.h"
#include "testCase.h"

#include "support/messageRecorder.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QStringListModel>
#include <QValidator>
#include <clocale>
#include <limits>
#include <type_traits>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<latLonEditor_t>::value, "editors aren't copied");
static_assert(!std::is_copy_constructible<coordFormatSelector_t>::value, "nor are selectors");

Q_DECLARE_METATYPE(latLonEditor_t::coordFormat_t)
Q_DECLARE_METATYPE(latLonEditor_t::latLonMode_t)
Q_DECLARE_METATYPE(QValidator::State)

using boxChange_t = void (*)(QComboBox* box);
Q_DECLARE_METATYPE(boxChange_t)
using editorChange_t = void (*)(latLonEditor_t* editor);
Q_DECLARE_METATYPE(editorChange_t)
using selectorChange_t = void (*)(coordFormatSelector_t* selector);
Q_DECLARE_METATYPE(selectorChange_t)

static constexpr auto CF_D = latLonEditor_t::CF_D;
static constexpr auto CF_DM = latLonEditor_t::CF_DM;
static constexpr auto CF_DMS = latLonEditor_t::CF_DMS;
static constexpr auto LLM_LATITUDE = latLonEditor_t::LLM_LATITUDE;
static constexpr auto LLM_LONGITUDE = latLonEditor_t::LLM_LONGITUDE;
static constexpr double NOTHING = std::numeric_limits<double>::quiet_NaN();

static QLineEdit* lineEdit(const latLonEditor_t& editor)
{
    return editor.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

static QComboBox* hemisphere(const latLonEditor_t& editor)
{
    return editor.findChild<QComboBox*>(QString(), Qt::FindDirectChildrenOnly);
}

static coordFormatSelector_t* ownSelector(const latLonEditor_t& editor)
{
    return editor.findChild<coordFormatSelector_t*>();
}

static QComboBox* comboBox(const coordFormatSelector_t& selector)
{
    return selector.findChild<QComboBox*>();
}

static int choice(const coordFormatSelector_t& selector)
{
    return comboBox(selector)->currentIndex();
}

// Magnitude and hemisphere, as shown.
static QString shownText(const latLonEditor_t& editor)
{
    return lineEdit(editor)->text() + hemisphere(editor)->currentText();
}

static double valueOf(const latLonEditor_t& editor)
{
    double value = 0.0;
    return editor.value(value) ? value : NOTHING;
}

// What a signal said, oldest first: numbers, or 1 and 0.
static QList<double> arguments(const QSignalSpy& spy)
{
    QList<double> all;
    for (const QVariantList& one : spy)
        all.append(one.first().toDouble());
    return all;
}

static QList<int> formats(const QSignalSpy& spy)
{
    QList<int> all;
    for (const QVariantList& one : spy)
        all.append(one.first().value<latLonEditor_t::coordFormat_t>());
    return all;
}

static void type(const latLonEditor_t& editor, int cursor, const QString& keys)
{
    lineEdit(editor)->setCursorPosition(cursor);
    QTest::keyClicks(lineEdit(editor), keys);
}

static void paste(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
}

// Returns how many entries of the menu paste.
static int pasteFromMenu(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(edit, &event);
    const QPointer<QMenu> menu = edit->findChild<QMenu*>();
    int count = 0;
    const QList<QAction*> actions = menu->actions();
    for (QAction* const action : actions) {
        if (!action->text().contains(QStringLiteral("Paste")))
            continue;
        ++count;
        action->trigger();
    }
    if (!menu.isNull())
        menu->close();
    return count;
}

// Where a click leaves the cursor where it is.
static QPoint placeOfCursor(QLineEdit* edit)
{
    QPoint place(1, edit->height() / 2);
    while (place.x() < edit->width() && edit->cursorPositionAt(place) != edit->cursorPosition())
        ++place.rx();
    return place;
}

static void pasteSelection(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text, QClipboard::Selection);
    QTest::mouseClick(edit, Qt::MiddleButton, Qt::NoModifier, placeOfCursor(edit));
}

// Returns whether it was taken.
static bool drop(QLineEdit* edit, const QString& text)
{
    const QPoint place = placeOfCursor(edit);
    QMimeData dropped;
    dropped.setText(text);
    QDragEnterEvent enter(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &enter);
    QDropEvent event(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &event);
    return event.isAccepted();
}

// A way of a text into a field, where its cursor is.
struct way_t
{
    const char* name;
    void (*put)(QLineEdit* edit, const QString& text);
};

static constexpr way_t ways[] = {
    {"key", paste},
    {"menu", [](QLineEdit* edit, const QString& text) { pasteFromMenu(edit, text); }},
    {"middle button", pasteSelection},
    {"drop", [](QLineEdit* edit, const QString& text) { drop(edit, text); }},
};

// Picks the item below, as the user does.
static void chooseNext(QComboBox* box)
{
    const QPointer<QComboBox> guard(box);
    box->showPopup();
    QAbstractItemView* const view = box->view();
    QTest::keyClick(view, Qt::Key_Down);
    QTest::keyClick(view, Qt::Key_Enter);
    QVERIFY(!guard.isNull()); // Qt has gone on using it
}

// Tells how many follow it.
class countingSelector_t : public coordFormatSelector_t
{
public:
    int followers() const
    {
        return receivers(SIGNAL(selectionChanged(latLonEditor_t::coordFormat_t)));
    }
};

/// The entry fields for latitudes and longitudes, and the selector of their notation.
class tst_latLonEditor : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void numbersNotationsAndKinds();
    void startsAtZeroInDegrees_data();
    void startsAtZeroInDegrees();
    void startsValid();
    void laysItsWidgetsOutTightly();
    void takesItsKindFromItsClass();

    void showsValuesInEachNotation_data();
    void showsValuesInEachNotation();
    void announcesTheHemisphereBeforeTheMagnitude();
    void announcesNothingWhenTheTextStays();
    void announcesValuesThatStayTheSame();
    void showsZeroAsNorthAndEast();
    void reportsWhatIsNoCoordinateOnce();
    void emptiesTheFieldForWhatDoesNotFit_data();
    void emptiesTheFieldForWhatDoesNotFit();
    void leavesTheValueAloneWhenThereIsNone();
    void negatesTheValueWithTheHemisphere();
    void readsTheTextAloneWithoutAHemisphere();

    void changesTheNotation();
    void masksTheFieldByNotation_data();
    void masksTheFieldByNotation();
    void announcesTheValueLastWhenTheNotationChanges();
    void keepsTheNotationOfWhatIsNoCoordinate();
    void changesTheNotationInASlot();
    void judgesTexts_data();
    void judgesTexts();
    void acceptsAnyDegreesThatAreWholeNumbers();
    void takesAnyCharacterForThePoint();
    void takesDigitsOfOtherScripts();

    void takesTypedDigits();
    void refusesTypedMinutesAndSecondsOf60();
    void refusesTypedDegreesFarBeyondTheLimit();
    void takesTypedDegreesBeyondTheLimitAsInvalid();

    void typesOverWhatIsSelected();
    void convertsWhatIsPasted_data();
    void convertsWhatIsPasted();
    void convertsPositionsForEachKind_data();
    void convertsPositionsForEachKind();
    void typesDigitsAndSignsOfTheMask_data();
    void typesDigitsAndSignsOfTheMask();
    void refusesWhatItDoesNotUnderstand_data();
    void refusesWhatItDoesNotUnderstand();
    void refusesDigitsThatTheFieldRefuses_data();
    void refusesDigitsThatTheFieldRefuses();
    void pastesFromTheMenu();
    void pastesTheSelectionByKey();
    void pastesNothingWhenReadOnly();
    void pastesNothingOutOfNothing();
    void pastesTheSelectionWithTheMiddleButton_data();
    void pastesTheSelectionWithTheMiddleButton();
    void convertsWhatIsDropped_data();
    void convertsWhatIsDropped();

    void showsARefusalByItsBase();
    void putsTheBaseBack_data();
    void putsTheBaseBack();
    void refusesTwiceInARow();
    void endsTheFlashBeforeValidityChanges();
    void mayBeDeletedDuringTheFlash();

    void setsBothOfAPair_data();
    void setsBothOfAPair();
    void setsOneOfAPairWithoutPartner();
    void leavesAPartnerAloneThatMayNotBeEdited();
    void refusesToPairTheSameKind();
    void pairsWithAnother();
    void survivesTheEndOfAPartner();

    void mayBeDeletedBySlots_data();
    void mayBeDeletedBySlots();
    void leavesNothingBehindWhenDeletedBySlots();

    void showsItsSelectorWhenAsked();
    void followsItsOwnSelector();
    void followsOtherSelectors();
    void followsASelectorOnce();
    void drivesASelectorInBothDirections();
    void ceasesToDriveASelector();
    void survivesASelectorThatIsNone();
    void survivesTheEndOfASelector();

    void startsTheSelectorWithMinutes();
    void namesTheNotations();
    void announcesAChoiceOnce();
    void announcesAChangeTwice();
    void announcesNoChangeToTheSame();
    void mayBeDeletedBySlotsOfASelector_data();
    void mayBeDeletedBySlotsOfASelector();
    void announcesNoLossOfTheChoice_data();
    void announcesNoLossOfTheChoice();
    void ignoresChoicesThatAreNoNotation_data();
    void ignoresChoicesThatAreNoNotation();
    void keepsTheNotationWithoutAChoice();
    void announcesOnceBetweenSelectorsWithoutItems();
    void ignoresWhatIsNoNotation();

    void connectsByNames();
    void readsPointsInAnyLocale();
};

void tst_latLonEditor::initTestCase()
{
    qRegisterMetaType<latLonEditor_t::coordFormat_t>("latLonEditor_t::coordFormat_t");
}

void tst_latLonEditor::numbersNotationsAndKinds()
{
    QCOMPARE(static_cast<int>(CF_D), 0);
    QCOMPARE(static_cast<int>(CF_DM), 1);
    QCOMPARE(static_cast<int>(CF_DMS), 2);
    QCOMPARE(static_cast<int>(LLM_LATITUDE), 0);
    QCOMPARE(static_cast<int>(LLM_LONGITUDE), 1);
}

void tst_latLonEditor::startsAtZeroInDegrees_data()
{
    QTest::addColumn<latLonEditor_t::latLonMode_t>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("hemispheres");
    QTest::newRow("latitude") << LLM_LATITUDE << QStringLiteral("00.00000000°N")
                              << QStringList{QStringLiteral("N"), QStringLiteral("S")};
    QTest::newRow("longitude") << LLM_LONGITUDE << QStringLiteral("000.00000000°E")
                               << QStringList{QStringLiteral("E"), QStringLiteral("W")};
}

void tst_latLonEditor::startsAtZeroInDegrees()
{
    QFETCH(latLonEditor_t::latLonMode_t, kind);
    const latLonEditor_t editor(kind, nullptr);
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(choice(*ownSelector(editor)), static_cast<int>(CF_D));
    QTEST(shownText(editor), "text");
    QCOMPARE(valueOf(editor), 0.0);
    QVERIFY(lineEdit(editor)->hasAcceptableInput());
    QStringList hemispheres;
    for (int i = 0; i < hemisphere(editor)->count(); ++i)
        hemispheres.append(hemisphere(editor)->itemText(i));
    QTEST(hemispheres, "hemispheres");
    QCOMPARE(hemisphere(editor)->currentIndex(), 0);
}

void tst_latLonEditor::startsValid()
{
    latitudeEditor_t editor;
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    editor.setValue(12.0);
    QCOMPARE(validity.count(), 0); // it was valid before
    editor.setValue(95.0);
    QCOMPARE(arguments(validity), QList<double>{0.0});
}

void tst_latLonEditor::laysItsWidgetsOutTightly()
{
    const latitudeEditor_t editor;
    const auto* const layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget(), static_cast<QWidget*>(lineEdit(editor)));
    QCOMPARE(layout->itemAt(1)->widget(), static_cast<QWidget*>(hemisphere(editor)));
    QCOMPARE(layout->itemAt(2)->widget(), static_cast<QWidget*>(ownSelector(editor)));
    QCOMPARE(lineEdit(editor)->sizePolicy().horizontalPolicy(), QSizePolicy::MinimumExpanding);
    QCOMPARE(lineEdit(editor)->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(lineEdit(editor)->alignment(), Qt::AlignRight);
    QCOMPARE(hemisphere(editor)->minimumContentsLength(), 2);
    QCOMPARE(ownSelector(editor)->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(ownSelector(editor)->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QVERIFY(ownSelector(editor)->isHidden());
}

void tst_latLonEditor::takesItsKindFromItsClass()
{
    QWidget parent;
    const QPointer<latitudeEditor_t> latitude = new latitudeEditor_t(&parent);
    const QPointer<longitudeEditor_t> longitude = new longitudeEditor_t(&parent);
    QCOMPARE(hemisphere(*latitude)->currentText(), QStringLiteral("N"));
    QCOMPARE(hemisphere(*longitude)->currentText(), QStringLiteral("E"));
    QCOMPARE(latitude->parentWidget(), &parent);
    QCOMPARE(longitude->parentWidget(), &parent);
}

void tst_latLonEditor::showsValuesInEachNotation_data()
{
    QTest::addColumn<latLonEditor_t::latLonMode_t>("kind");
    QTest::addColumn<latLonEditor_t::coordFormat_t>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("latitude, D") << LLM_LATITUDE << CF_D << 12.26
                                 << QStringLiteral("12.26000000°N");
    QTest::newRow("latitude, DM") << LLM_LATITUDE << CF_DM << 12.26
                                  << QStringLiteral("12° 15.600000'N");
    QTest::newRow("latitude, DMS")
        << LLM_LATITUDE << CF_DMS << 12.26 << QStringLiteral("12° 15' 36.0000\"N");
    QTest::newRow("longitude, D") << LLM_LONGITUDE << CF_D << -12.26
                                  << QStringLiteral("012.26000000°W");
    QTest::newRow("longitude, DM")
        << LLM_LONGITUDE << CF_DM << -12.26 << QStringLiteral("012° 15.600000'W");
    QTest::newRow("longitude, DMS")
        << LLM_LONGITUDE << CF_DMS << -12.26 << QStringLiteral("012° 15' 36.0000\"W");
    QTest::newRow("the pole") << LLM_LATITUDE << CF_DMS << -90.0
                              << QStringLiteral("90° 00' 00.0000\"S");
    QTest::newRow("the date line")
        << LLM_LONGITUDE << CF_DM << 180.0 << QStringLiteral("180° 00.000000'E");
    QTest::newRow("carried") << LLM_LATITUDE << CF_DMS << 9.99999999999
                             << QStringLiteral("10° 00' 00.0000\"N");
}

void tst_latLonEditor::showsValuesInEachNotation()
{
    QFETCH(latLonEditor_t::latLonMode_t, kind);
    QFETCH(latLonEditor_t::coordFormat_t, format);
    QFETCH(double, value);
    latLonEditor_t editor(kind, nullptr);
    editor.setCoordinateFormat(format);
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    editor.setValue(value);
    QTEST(shownText(editor), "text");
    QVERIFY(qAbs(valueOf(editor) - value) < 1e-10);
    QCOMPARE(values.last().first().toDouble(), valueOf(editor));
}

void tst_latLonEditor::announcesTheHemisphereBeforeTheMagnitude()
{
    latitudeEditor_t editor;
    editor.setValue(10.0);
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    editor.setValue(20.0);
    QCOMPARE(arguments(values), QList<double>{20.0});
    values.clear();
    editor.setValue(-30.0);
    QCOMPARE(arguments(values), (QList<double>{-20.0, -30.0}));
    QCOMPARE(validity.count(), 0);
}

void tst_latLonEditor::announcesNothingWhenTheTextStays()
{
    latitudeEditor_t editor;
    editor.setValue(10.0);
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    editor.setValue(10.0);
    editor.setValue(10.0 + 1e-12);
    QCOMPARE(values.count(), 0);
}

void tst_latLonEditor::announcesValuesThatStayTheSame()
{
    latitudeEditor_t editor;
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    hemisphere(editor)->setCurrentIndex(1);
    hemisphere(editor)->setCurrentIndex(0);
    QCOMPARE(arguments(values), (QList<double>{0.0, 0.0})); // 0 degrees south, and north
}

void tst_latLonEditor::showsZeroAsNorthAndEast()
{
    latitudeEditor_t latitude;
    latitude.setValue(-5.0);
    latitude.setValue(-0.0);
    QCOMPARE(shownText(latitude), QStringLiteral("00.00000000°N"));
    longitudeEditor_t longitude;
    longitude.setValue(-5.0);
    longitude.setValue(-1e-9);
    QCOMPARE(shownText(longitude), QStringLiteral("000.00000000°E"));
}

void tst_latLonEditor::reportsWhatIsNoCoordinateOnce()
{
    latitudeEditor_t editor;
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    editor.setValue(95.0);
    editor.setValue(96.0);
    QCOMPARE(shownText(editor), QStringLiteral("96.00000000°N"));
    QVERIFY(!lineEdit(editor)->hasAcceptableInput());
    QCOMPARE(values.count(), 0);
    QCOMPARE(arguments(validity), QList<double>{0.0});
    bool wasValidFirst = false;
    connect(&editor, &latLonEditor_t::valueChanged, this,
            [&] { wasValidFirst = validity.count() == 2; });
    editor.setValue(45.0);
    QCOMPARE(arguments(validity), (QList<double>{0.0, 1.0}));
    QCOMPARE(arguments(values), QList<double>{45.0});
    QVERIFY(wasValidFirst);
}

void tst_latLonEditor::emptiesTheFieldForWhatDoesNotFit_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("NaN") << NOTHING;
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    QTest::newRow("-infinity") << -std::numeric_limits<double>::infinity();
    QTest::newRow("too many digits") << 123.5;
}

void tst_latLonEditor::emptiesTheFieldForWhatDoesNotFit()
{
    QFETCH(double, value);
    latitudeEditor_t editor;
    editor.setValue(45.0);
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    editor.setValue(value);
    QCOMPARE(lineEdit(editor)->text(), QStringLiteral(".°")); // what is left of the mask
    QCOMPARE(arguments(validity), QList<double>{0.0});
    editor.setValue(-45.0);
    QCOMPARE(shownText(editor), QStringLiteral("45.00000000°S"));
    QCOMPARE(arguments(validity), (QList<double>{0.0, 1.0}));
}

void tst_latLonEditor::leavesTheValueAloneWhenThereIsNone()
{
    latitudeEditor_t editor;
    editor.setValue(95.0);
    double value = 7.0;
    QVERIFY(!editor.value(value));
    QCOMPARE(value, 7.0);
}

void tst_latLonEditor::negatesTheValueWithTheHemisphere()
{
    latitudeEditor_t editor;
    editor.setValue(12.5);
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    QTest::keyClick(hemisphere(editor), Qt::Key_S);
    QCOMPARE(arguments(values), QList<double>{-12.5});
    QCOMPARE(valueOf(editor), -12.5);
    hemisphere(editor)->setCurrentIndex(0);
    QCOMPARE(arguments(values), (QList<double>{-12.5, 12.5}));
}

void tst_latLonEditor::readsTheTextAloneWithoutAHemisphere()
{
    latitudeEditor_t editor;
    editor.setValue(12.5);
    hemisphere(editor)->setCurrentIndex(-1);
    QCOMPARE(valueOf(editor), 12.5); // the text alone is a coordinate, too
    editor.setValue(-12.5);
    QCOMPARE(shownText(editor), QStringLiteral("12.50000000°S"));
}

void tst_latLonEditor::changesTheNotation()
{
    longitudeEditor_t editor;
    editor.setValue(-12.26);
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    QCOMPARE(shownText(editor), QStringLiteral("012° 15' 36.0000\"W"));
    QCOMPARE(choice(*ownSelector(editor)), static_cast<int>(CF_DMS));
    editor.setCoordinateFormat(CF_DM);
    QCOMPARE(shownText(editor), QStringLiteral("012° 15.600000'W"));
    editor.setCoordinateFormat(CF_D);
    QCOMPARE(shownText(editor), QStringLiteral("012.26000000°W"));
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    editor.setCoordinateFormat(CF_D);
    QCOMPARE(values.count(), 0);
}

void tst_latLonEditor::masksTheFieldByNotation_data()
{
    QTest::addColumn<latLonEditor_t::coordFormat_t>("format");
    QTest::addColumn<QString>("latitudeMask");
    QTest::addColumn<QString>("longitudeMask");
    QTest::newRow("D") << CF_D << QStringLiteral("99.99999999°") << QStringLiteral("999.99999999°");
    QTest::newRow("DM") << CF_DM << QStringLiteral("99° 99.999999'")
                        << QStringLiteral("999° 99.999999'");
    QTest::newRow("DMS") << CF_DMS << QStringLiteral("99° 99' 99.9999\"")
                         << QStringLiteral("999° 99' 99.9999\"");
}

void tst_latLonEditor::masksTheFieldByNotation()
{
    QFETCH(latLonEditor_t::coordFormat_t, format);
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.setCoordinateFormat(format);
    longitude.setCoordinateFormat(format);
    QTEST(lineEdit(latitude)->inputMask(), "latitudeMask");
    QTEST(lineEdit(longitude)->inputMask(), "longitudeMask");
}

void tst_latLonEditor::announcesTheValueLastWhenTheNotationChanges()
{
    for (const double value : {12.5, -12.5, 0.0, 89.999}) {
        latitudeEditor_t editor;
        editor.setValue(value);
        for (const auto format : {CF_DM, CF_DMS, CF_D, CF_DMS, CF_DM, CF_D}) {
            QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
            QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
            editor.setCoordinateFormat(format);
            QVERIFY(values.count() > 0);
            QVERIFY(qAbs(values.last().first().toDouble() - value) < 1e-8);
            QVERIFY(validity.isEmpty() || validity.last().first().toBool());
        }
    }
}

void tst_latLonEditor::keepsTheNotationOfWhatIsNoCoordinate()
{
    latitudeEditor_t editor;
    editor.setValue(95.0);
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(shownText(editor), QStringLiteral("95.00000000°N"));
    QCOMPARE(choice(*ownSelector(editor)), static_cast<int>(CF_D));
    // The user's choice in the selector isn't taken back.
    comboBox(*ownSelector(editor))->setCurrentIndex(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(choice(*ownSelector(editor)), static_cast<int>(CF_DMS));
    editor.setValue(45.0);
    QCOMPARE(editor.selectedFormat(), CF_D);
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_DMS);
}

void tst_latLonEditor::changesTheNotationInASlot()
{
    latitudeEditor_t editor;
    editor.setValue(12.26);
    connect(&editor, &latLonEditor_t::valueChanged, this,
            [&] { editor.setCoordinateFormat(CF_DMS); }); // at an intermediate value
    editor.setCoordinateFormat(CF_DM);
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    QCOMPARE(shownText(editor), QStringLiteral("12° 15' 36.0000\"N"));
    QCOMPARE(lineEdit(editor)->inputMask(), QStringLiteral("99° 99' 99.9999\""));
    QVERIFY(lineEdit(editor)->hasAcceptableInput());
    QCOMPARE(valueOf(editor), 12.26);
}

void tst_latLonEditor::judgesTexts_data()
{
    QTest::addColumn<latLonEditor_t::latLonMode_t>("kind");
    QTest::addColumn<latLonEditor_t::coordFormat_t>("format");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QValidator::State>("verdict");

    const auto row = [](const char* name, latLonEditor_t::latLonMode_t kind,
                        latLonEditor_t::coordFormat_t format, const QString& text,
                        QValidator::State verdict) {
        QTest::newRow(name) << kind << format << text << verdict;
    };
    const auto accepted = QValidator::Acceptable;
    const auto intermediate = QValidator::Intermediate;
    const auto invalid = QValidator::Invalid;
    row("D, in range", LLM_LATITUDE, CF_D, QStringLiteral("12.50000000°"), accepted);
    row("D, at the pole", LLM_LATITUDE, CF_D, QStringLiteral("90.00000000°"), accepted);
    row("D, beyond the pole", LLM_LATITUDE, CF_D, QStringLiteral("90.00000001°"), intermediate);
    row("D, 95", LLM_LATITUDE, CF_D, QStringLiteral("95.00000000°"), intermediate);
    row("D, just below 100", LLM_LATITUDE, CF_D, QStringLiteral("99.99999999°"), intermediate);
    row("D, 100", LLM_LATITUDE, CF_D, QStringLiteral("100.00000000°"), invalid);
    row("D, nothing yet", LLM_LATITUDE, CF_D, QString(), accepted);
    row("D, a digit", LLM_LATITUDE, CF_D, QStringLiteral("9"), accepted);
    row("D, two digits", LLM_LATITUDE, CF_D, QStringLiteral("99"), intermediate);
    row("D, no mark yet", LLM_LATITUDE, CF_D, QStringLiteral("12.50000000"), accepted);
    row("D, a blank", LLM_LATITUDE, CF_D, QStringLiteral("1 .50000000°"), invalid);
    row("D, the mask's blanks", LLM_LATITUDE, CF_D, QStringLiteral("  .        °"), invalid);
    row("D, another mark", LLM_LATITUDE, CF_D, QStringLiteral("12.50000000'"), invalid);
    row("D, too long", LLM_LATITUDE, CF_D, QStringLiteral("12.50000000°0"), invalid);
    row("D, longitude in range", LLM_LONGITUDE, CF_D, QStringLiteral("095.00000000°"), accepted);
    row("D, date line", LLM_LONGITUDE, CF_D, QStringLiteral("180.00000000°"), accepted);
    row("D, beyond it", LLM_LONGITUDE, CF_D, QStringLiteral("180.00000001°"), intermediate);
    row("D, just below 200", LLM_LONGITUDE, CF_D, QStringLiteral("199.99999999°"), intermediate);
    row("D, 200", LLM_LONGITUDE, CF_D, QStringLiteral("200.00000000°"), invalid);
    row("D, 200 so far", LLM_LONGITUDE, CF_D, QStringLiteral("200"), invalid);
    row("DM, in range", LLM_LATITUDE, CF_DM, QStringLiteral("12° 34.500000'"), accepted);
    row("DM, below 60", LLM_LATITUDE, CF_DM, QStringLiteral("12° 59.999999'"), accepted);
    row("DM, 60", LLM_LATITUDE, CF_DM, QStringLiteral("12° 60.000000'"), invalid);
    row("DM, 60 so far", LLM_LATITUDE, CF_DM, QStringLiteral("12° 60"), invalid);
    row("DM, no minutes yet", LLM_LATITUDE, CF_DM, QStringLiteral("12° "), accepted);
    row("DM, blank minutes", LLM_LATITUDE, CF_DM, QStringLiteral("12°   .      '"), invalid);
    row("DM, longitude", LLM_LONGITUDE, CF_DM, QStringLiteral("012° 59.999999'"), accepted);
    row("DM, longitude, 60", LLM_LONGITUDE, CF_DM, QStringLiteral("012° 60.000000'"), invalid);
    row("DM, latitude for longitude", LLM_LONGITUDE, CF_DM, QStringLiteral("12° 00.000000'"),
        invalid);
    row("DMS, in range", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 00' 30.0000\""), accepted);
    row("DMS, below 60", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 59' 59.9999\""), accepted);
    row("DMS, 60 minutes", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 60' 00.0000\""), invalid);
    row("DMS, 60 minutes so far", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 60"), invalid);
    row("DMS, 60 seconds", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 00' 60.0000\""), invalid);
    row("DMS, 60 seconds so far", LLM_LATITUDE, CF_DMS, QStringLiteral("45° 00' 60"), invalid);
    row("DMS, longitude", LLM_LONGITUDE, CF_DMS, QStringLiteral("145° 59' 59.9999\""), accepted);
    row("DMS, longitude, 60", LLM_LONGITUDE, CF_DMS, QStringLiteral("145° 59' 60.0000\""), invalid);
}

void tst_latLonEditor::judgesTexts()
{
    QFETCH(latLonEditor_t::latLonMode_t, kind);
    QFETCH(latLonEditor_t::coordFormat_t, format);
    QFETCH(QString, text);
    latLonEditor_t editor(kind, nullptr);
    editor.setCoordinateFormat(format);
    const QString before = text;
    int cursor = 0;
    QTEST(lineEdit(editor)->validator()->validate(text, cursor), "verdict");
    QCOMPARE(text, before);
}

// Whole degrees aren't looked at, so that not even a second's 360th of a degree shows.
void tst_latLonEditor::acceptsAnyDegreesThatAreWholeNumbers()
{
    latitudeEditor_t editor;
    editor.setCoordinateFormat(CF_DM);
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    type(editor, 0, QStringLiteral("95"));
    QCOMPARE(shownText(editor), QStringLiteral("95° 00.000000'N"));
    QVERIFY(lineEdit(editor)->hasAcceptableInput());
    QCOMPARE(valueOf(editor), NOTHING); // the parser has the last word
    QCOMPARE(arguments(validity), QList<double>{0.0});

    longitudeEditor_t longitude;
    longitude.setCoordinateFormat(CF_DMS);
    type(longitude, 0, QStringLiteral("999"));
    QCOMPARE(shownText(longitude), QStringLiteral("999° 00' 00.0000\"E"));
    QVERIFY(lineEdit(longitude)->hasAcceptableInput());
    QCOMPARE(valueOf(longitude), NOTHING);
}

void tst_latLonEditor::takesAnyCharacterForThePoint()
{
    const latitudeEditor_t editor;
    int cursor = 0;
    QString text = QStringLiteral("12x50000000°");
    QCOMPARE(lineEdit(editor)->validator()->validate(text, cursor), QValidator::Acceptable);
    text = QStringLiteral("95x50000000°"); // but the number ends there
    QCOMPARE(lineEdit(editor)->validator()->validate(text, cursor), QValidator::Intermediate);
    text = QStringLiteral("12150000000°"); // or goes on
    QCOMPARE(lineEdit(editor)->validator()->validate(text, cursor), QValidator::Invalid);
}

// The mask lets them pass, so the pattern does, too. They make no coordinate.
void tst_latLonEditor::takesDigitsOfOtherScripts()
{
    latitudeEditor_t editor;
    int cursor = 0;
    QString arabic =
        QStringLiteral("\u0661\u0662.\u0663\u0664\u0665\u0666\u0667\u0668\u0669\u0660°");
    QCOMPARE(lineEdit(editor)->validator()->validate(arabic, cursor), QValidator::Acceptable);
    QString half = QStringLiteral("\u00BD2.34567890°"); // a number, no digit
    QCOMPARE(lineEdit(editor)->validator()->validate(half, cursor), QValidator::Invalid);
    QString lines = QStringLiteral("12\n34567890°");
    QCOMPARE(lineEdit(editor)->validator()->validate(lines, cursor), QValidator::Acceptable);

    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    for (const auto format : {CF_D, CF_DM, CF_DMS}) {
        editor.setCoordinateFormat(format);
        editor.setValue(0.0);
        validity.clear();
        lineEdit(editor)->setCursorPosition(0);
        for (const char16_t digit : {u'\u0661', u'\u096F'}) { // Arabic, Devanagari
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(digit)));
            QCoreApplication::sendEvent(lineEdit(editor), &key);
        }
        QCOMPARE(lineEdit(editor)->text().left(2), QStringLiteral("\u0661\u096F"));
        QCOMPARE(valueOf(editor), NOTHING);
        QCOMPARE(arguments(validity), QList<double>{0.0});
        editor.setValue(0.0);
    }
}

void tst_latLonEditor::takesTypedDigits()
{
    latitudeEditor_t editor;
    type(editor, 0, QStringLiteral("1234567890"));
    QCOMPARE(shownText(editor), QStringLiteral("12.34567890°N"));
    editor.setCoordinateFormat(CF_DM);
    type(editor, 0, QStringLiteral("2030123456"));
    QCOMPARE(shownText(editor), QStringLiteral("20° 30.123456'N"));
    editor.setCoordinateFormat(CF_DMS);
    type(editor, 0, QStringLiteral("2131411234"));
    QCOMPARE(shownText(editor), QStringLiteral("21° 31' 41.1234\"N"));
    type(editor, 0, QStringLiteral("x")); // no digit
    QCOMPARE(shownText(editor), QStringLiteral("21° 31' 41.1234\"N"));
}

void tst_latLonEditor::refusesTypedMinutesAndSecondsOf60()
{
    latitudeEditor_t editor;
    editor.setCoordinateFormat(CF_DMS);
    editor.setValue(12.0);
    type(editor, 4, QStringLiteral("6"));
    QCOMPARE(shownText(editor), QStringLiteral("12° 00' 00.0000\"N"));
    type(editor, 8, QStringLiteral("6"));
    QCOMPARE(shownText(editor), QStringLiteral("12° 00' 00.0000\"N"));
    type(editor, 4, QStringLiteral("5"));
    QCOMPARE(shownText(editor), QStringLiteral("12° 50' 00.0000\"N"));
}

void tst_latLonEditor::refusesTypedDegreesFarBeyondTheLimit()
{
    longitudeEditor_t editor;
    type(editor, 0, QStringLiteral("2"));
    QCOMPARE(shownText(editor), QStringLiteral("000.00000000°E"));
    type(editor, 0, QStringLiteral("199"));
    QCOMPARE(shownText(editor), QStringLiteral("199.00000000°E"));
    QCOMPARE(valueOf(editor), NOTHING);
}

void tst_latLonEditor::takesTypedDegreesBeyondTheLimitAsInvalid()
{
    latitudeEditor_t editor;
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    QSignalSpy validity(&editor, &latLonEditor_t::valueValidityChanged);
    type(editor, 0, QStringLiteral("95"));
    QCOMPARE(arguments(values), QList<double>{90.0});
    QCOMPARE(arguments(validity), QList<double>{0.0});
    QVERIFY(!lineEdit(editor)->hasAcceptableInput());
    type(editor, 1, QStringLiteral("0"));
    QCOMPARE(arguments(values), (QList<double>{90.0, 90.0}));
    QCOMPARE(arguments(validity), (QList<double>{0.0, 1.0}));
}

void tst_latLonEditor::typesOverWhatIsSelected()
{
    latitudeEditor_t editor;
    editor.setValue(12.5);
    lineEdit(editor)->selectAll();
    QTest::keyClicks(lineEdit(editor), QStringLiteral("34"));
    QCOMPARE(shownText(editor), QStringLiteral("34.50000000°N"));
    lineEdit(editor)->setSelection(3, 2);
    QTest::keyClicks(lineEdit(editor), QStringLiteral("7"));
    QCOMPARE(shownText(editor), QStringLiteral("34.70000000°N"));
}

void tst_latLonEditor::convertsWhatIsPasted_data()
{
    QTest::addColumn<latLonEditor_t::coordFormat_t>("format");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("whole");   // pasted over everything, 20 degrees south
    QTest::addColumn<QString>("inFront"); // pasted at the start
    const QString converted = QStringLiteral("12° 34.500000'");
    const QString north = converted + QLatin1Char('N');
    const QString south = converted + QLatin1Char('S');
    QTest::newRow("letter") << CF_DM << QStringLiteral("12°34.5'N") << north << north;
    QTest::newRow("sign") << CF_DM << QStringLiteral("-12.575") << south << south;
    QTest::newRow("packed") << CF_DM << QStringLiteral("+1234.5") << north << north;
    QTest::newRow("pair") << CF_DM << QStringLiteral("12.575, -45.2") << north << north;
    QTest::newRow("no hemisphere") << CF_DM << QStringLiteral("12 34 30") << south << south;
    QTest::newRow("a number") << CF_DM << QStringLiteral("12.575") << south
                              << QStringLiteral("12° 00.575000'S");
    QTest::newRow("own notation") << CF_DM << converted << south << south;
    QTest::newRow("degrees") << CF_D << QStringLiteral("12 34 30 N")
                             << QStringLiteral("12.57500000°N") << QStringLiteral("12.57500000°N");
    QTest::newRow("seconds") << CF_DMS << QStringLiteral("12.575N")
                             << QStringLiteral("12° 34' 30.0000\"N")
                             << QStringLiteral("12° 34' 30.0000\"N");
    QTest::newRow("no coordinate")
        << CF_DM << QStringLiteral("depth") << QStringLiteral("20° 00.000000'S")
        << QStringLiteral("20° 00.000000'S");
}

void tst_latLonEditor::convertsWhatIsPasted()
{
    QFETCH(latLonEditor_t::coordFormat_t, format);
    QFETCH(QString, text);
    QApplication::clipboard()->setText(text);
    latitudeEditor_t editor;
    editor.setCoordinateFormat(format);
    editor.setValue(-20.0);
    lineEdit(editor)->selectAll();
    QTest::keyClick(lineEdit(editor), Qt::Key_V, Qt::ControlModifier);
    QTEST(shownText(editor), "whole");
    editor.setValue(-20.0);
    lineEdit(editor)->setCursorPosition(0);
    QTest::keyClick(lineEdit(editor), Qt::Key_V, Qt::ControlModifier);
    QTEST(shownText(editor), "inFront");
}

void tst_latLonEditor::convertsPositionsForEachKind_data()
{
    QTest::addColumn<QString>("text");
    for (const char* const text :
         {"22-00.5S 017-56.5W", "22\u201300.5S, 017\u201356.5W",
          "lat -22.0083333333 lon -17.9416666667", "LON: 17 56.5 W, LAT: 22 00.5 S",
          "geo:-22.00833333333,-17.94166666667", "POINT(-17.94166666667 -22.00833333333)",
          "22d00.5mS 17d56.5mW", "22d00m30sS 17d56m30sW", "22\u00B000.5'S 017\u00B056.5'W",
          "-22.0083333333, -17.9416666667", "S22 00.5 W17 56.5\n"})
        QTest::newRow(text) << QString::fromUtf8(text);
}

// By all ways into the field, of which only a number's place matters.
void tst_latLonEditor::convertsPositionsForEachKind()
{
    QFETCH(QString, text);
    for (const way_t& way : ways) {
        latitudeEditor_t latitude;
        longitudeEditor_t longitude;
        for (latLonEditor_t* const editor :
             {static_cast<latLonEditor_t*>(&latitude), static_cast<latLonEditor_t*>(&longitude)}) {
            editor->setCoordinateFormat(CF_DM);
            editor->setValue(11.5);
            QSignalSpy refusals(editor, &latLonEditor_t::pasteRefused);
            lineEdit(*editor)->setCursorPosition(4);
            way.put(lineEdit(*editor), text);
            QCOMPARE(refusals.count(), 0);
        }
        QCOMPARE(shownText(latitude), QStringLiteral("22° 00.500000'S"));
        QCOMPARE(shownText(longitude), QStringLiteral("017° 56.500000'W"));
    }
}

void tst_latLonEditor::typesDigitsAndSignsOfTheMask_data()
{
    QTest::addColumn<latLonEditor_t::coordFormat_t>("format");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown"); // over 20 degrees south
    const auto row = [](const char* name, latLonEditor_t::coordFormat_t format, int cursor,
                        const QString& text, const QString& shown) {
        QTest::newRow(name) << format << cursor << text << shown;
    };
    row("a digit", CF_D, 1, QStringLiteral("4"), QStringLiteral("24.00000000°S"));
    row("across the point", CF_D, 1, QStringLiteral("456"), QStringLiteral("24.56000000°S"));
    row("all digits", CF_D, 0, QStringLiteral("1234567890"), QStringLiteral("12.34567890°S"));
    row("with the point", CF_D, 0, QStringLiteral("12.5"), QStringLiteral("12.50000000°S"));
    row("blanks around", CF_DM, 0, QStringLiteral(" 12\n"), QStringLiteral("12° 00.000000'S"));
    row("minutes", CF_DM, 4, QStringLiteral("34.5"), QStringLiteral("20° 34.500000'S"));
    row("minutes with mark", CF_DM, 4, QStringLiteral("34.5'"), QStringLiteral("20° 34.500000'S"));
    row("minutes, seconds", CF_DMS, 4, QStringLiteral("34' 30"),
        QStringLiteral("20° 34' 30.0000\"S"));
    row("too many", CF_D, 9, QStringLiteral("123456"), QStringLiteral("20.00000012°S"));
    row("other script", CF_D, 0, QStringLiteral("\u0661"), QStringLiteral("\u06610.00000000°S"));
    row("beyond the pole", CF_D, 0, QStringLiteral("95.00000000°"),
        QStringLiteral("95.00000000°S"));
}

void tst_latLonEditor::typesDigitsAndSignsOfTheMask()
{
    QFETCH(latLonEditor_t::coordFormat_t, format);
    QFETCH(int, cursor);
    QFETCH(QString, text);
    for (const way_t& way : ways) {
        latitudeEditor_t editor;
        lineEdit(editor)->resize(300, 30);
        editor.setCoordinateFormat(format);
        editor.setValue(-20.0);
        QSignalSpy refusals(&editor, &latLonEditor_t::pasteRefused);
        lineEdit(editor)->setCursorPosition(cursor);
        way.put(lineEdit(editor), text);
        QFETCH(QString, shown);
        QVERIFY2(shownText(editor) == shown, way.name);
        QCOMPARE(refusals.count(), 0);
    }
    // What is selected is typed over, as by keys.
    latitudeEditor_t editor;
    editor.setCoordinateFormat(format);
    editor.setValue(-20.0);
    lineEdit(editor)->setSelection(cursor, 2);
    paste(lineEdit(editor), text);
    QTEST(shownText(editor), "shown");
}

void tst_latLonEditor::refusesWhatItDoesNotUnderstand_data()
{
    QTest::addColumn<QString>("text");
    for (const char* const text : {"depth 12.5",
                                   "depth",
                                   "12.5 m",
                                   "12,5",
                                   "12\u00B034.5'E",
                                   "22 00.5 W",
                                   "geo:95,45",
                                   "geo:12,45;crs=other",
                                   "lon 17.5",
                                   "POINT EMPTY",
                                   "12N 13N",
                                   "2026-12-24",
                                   "-12-34.5",
                                   "12 - 34.5",
                                   "N",
                                   "-",
                                   "12.5 45.2 m",
                                   "-95",
                                   "12 34 30 40N",
                                   "\u221E"})
        QTest::newRow(text) << QString::fromUtf8(text);
    QTest::newRow("long") << QString(100000, QLatin1Char('x'));
    QTest::newRow("blanks around") << QStringLiteral("\t12.5 m \n");
}

void tst_latLonEditor::refusesWhatItDoesNotUnderstand()
{
    QFETCH(QString, text);
    for (const auto format : {CF_D, CF_DM, CF_DMS}) {
        for (const way_t& way : ways) {
            latitudeEditor_t editor;
            editor.setCoordinateFormat(format);
            editor.setValue(-20.0);
            const QString before = shownText(editor);
            QSignalSpy refusals(&editor, &latLonEditor_t::pasteRefused);
            QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
            for (const bool isWhole : {false, true}) {
                lineEdit(editor)->setCursorPosition(0);
                if (isWhole)
                    lineEdit(editor)->selectAll();
                way.put(lineEdit(editor), text);
                QVERIFY2(shownText(editor) == before, way.name);
            }
            QCOMPARE(values.count(), 0);
            QCOMPARE(refusals.count(), 2);
            QCOMPARE(refusals.first().first().toString(), text); // as it came
        }
    }
}

void tst_latLonEditor::refusesDigitsThatTheFieldRefuses_data()
{
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("text");
    QTest::newRow("60 minutes") << 4 << QStringLiteral("60");
    QTest::newRow("no place left") << 17 << QStringLiteral("1");
}

// All of them or none.
void tst_latLonEditor::refusesDigitsThatTheFieldRefuses()
{
    QFETCH(int, cursor);
    QFETCH(QString, text);
    latitudeEditor_t editor;
    editor.setCoordinateFormat(CF_DMS);
    editor.setValue(-20.0);
    QSignalSpy refusals(&editor, &latLonEditor_t::pasteRefused);
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    lineEdit(editor)->setCursorPosition(cursor);
    paste(lineEdit(editor), text);
    QCOMPARE(shownText(editor), QStringLiteral("20° 00' 00.0000\"S"));
    for (const double value : arguments(values))
        QCOMPARE(value, -20.0);
    QCOMPARE(refusals.count(), 1);
    QCOMPARE(refusals.first().first().toString(), text);
}

void tst_latLonEditor::pastesFromTheMenu()
{
    latitudeEditor_t editor;
    QCOMPARE(pasteFromMenu(lineEdit(editor), QStringLiteral("12°34.5'S")), 1);
    QCOMPARE(shownText(editor), QStringLiteral("12.57500000°S"));
}

void tst_latLonEditor::pastesTheSelectionByKey()
{
    QApplication::clipboard()->setText(QStringLiteral("12S"));
    QApplication::clipboard()->setText(QStringLiteral("34S"), QClipboard::Selection);
    latitudeEditor_t editor;
    QTest::keyClick(lineEdit(editor), Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(shownText(editor), QStringLiteral("12.00000000°S"));
    QTest::keyClick(lineEdit(editor), Qt::Key_Insert, Qt::ShiftModifier | Qt::ControlModifier);
    QCOMPARE(shownText(editor), QStringLiteral("34.00000000°S"));
}

void tst_latLonEditor::pastesNothingWhenReadOnly()
{
    for (const auto& text : {QStringLiteral("12°34.5'S"), QStringLiteral("depth")}) {
        for (const way_t& way : ways) {
            latitudeEditor_t editor;
            QSignalSpy refusals(&editor, &latLonEditor_t::pasteRefused);
            lineEdit(editor)->setReadOnly(true);
            way.put(lineEdit(editor), text);
            QVERIFY2(shownText(editor) == QStringLiteral("00.00000000°N"), way.name);
            QCOMPARE(refusals.count(), 0);
        }
    }
}

void tst_latLonEditor::pastesNothingOutOfNothing()
{
    for (const auto& text : {QString(), QStringLiteral(" \n")}) {
        for (const way_t& way : ways) {
            latitudeEditor_t editor;
            QSignalSpy refusals(&editor, &latLonEditor_t::pasteRefused);
            lineEdit(editor)->selectAll();
            way.put(lineEdit(editor), text);
            QVERIFY2(shownText(editor) == QStringLiteral("00.00000000°N"), way.name);
            QCOMPARE(refusals.count(), 0);
        }
    }
}

void tst_latLonEditor::pastesTheSelectionWithTheMiddleButton_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<QString>("shown");
    QTest::newRow("other form") << "12°34.5'S" << false << "12.57500000°S";
    QTest::newRow("own form") << "12.50000000°" << false << "12.50000000°N";
    QTest::newRow("read-only") << "12°34.5'S" << true << "00.00000000°N";
}

void tst_latLonEditor::pastesTheSelectionWithTheMiddleButton()
{
    QFETCH(QString, text);
    QFETCH(bool, isReadOnly);
    QVERIFY(QApplication::clipboard()->supportsSelection());
    latitudeEditor_t editor;
    editor.resize(400, 40);
    lineEdit(editor)->setReadOnly(isReadOnly);
    pasteSelection(lineEdit(editor), text);
    QTEST(shownText(editor), "shown");
    // Another button pastes nothing.
    latitudeEditor_t other;
    QTest::mouseClick(lineEdit(other), Qt::LeftButton);
    QCOMPARE(shownText(other), QStringLiteral("00.00000000°N"));
}

void tst_latLonEditor::convertsWhatIsDropped_data()
{
    pastesTheSelectionWithTheMiddleButton_data();
}

void tst_latLonEditor::convertsWhatIsDropped()
{
    QFETCH(QString, text);
    QFETCH(bool, isReadOnly);
    latitudeEditor_t editor;
    editor.resize(400, 40);
    lineEdit(editor)->setReadOnly(isReadOnly);
    QCOMPARE(drop(lineEdit(editor), text), !isReadOnly);
    QTEST(shownText(editor), "shown");
}

void tst_latLonEditor::showsARefusalByItsBase()
{
    latitudeEditor_t editor;
    editor.resize(400, 40);
    QLineEdit* const field = lineEdit(editor);
    const QColor highlight = field->palette().color(QPalette::Highlight);
    QColor baseInSlot;
    connect(&editor, &latLonEditor_t::pasteRefused, this,
            [&] { baseInSlot = field->palette().color(QPalette::Base); });
    const QPalette before = field->palette();
    paste(field, QStringLiteral("depth"));
    QCOMPARE(baseInSlot, before.color(QPalette::Base)); // an application may save it there
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(field->palette().color(group, QPalette::Base),
                 before.color(group, QPalette::Highlight));
    QCOMPARE(field->grab().toImage().pixelColor(20, field->height() / 2), highlight);
    const auto* const timer = field->findChild<QTimer*>();
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 200);
    QTRY_COMPARE(field->palette(), before);
    QVERIFY(!timer->isActive());
    QCOMPARE(field->grab().toImage().pixelColor(20, field->height() / 2),
             before.color(QPalette::Base));
}

void tst_latLonEditor::putsTheBaseBack_data()
{
    QTest::addColumn<QColor>("own");     // the field's base before; invalid if it hasn't any
    QTest::addColumn<QString>("change"); // during the flash
    QTest::addColumn<QColor>("wanted");  // afterwards
    const QColor none;
    const QColor base = QApplication::palette().color(QPalette::Base);
    QTest::newRow("nobody's") << none << "" << base;
    QTest::newRow("its own") << QColor(Qt::yellow) << "" << QColor(Qt::yellow);
    QTest::newRow("changed") << none << "field" << QColor(Qt::red);
    QTest::newRow("its own, changed") << QColor(Qt::yellow) << "field" << QColor(Qt::red);
    QTest::newRow("the editor's") << none << "editor" << QColor(Qt::red);
    QTest::newRow("its own in spite of the editor's")
        << QColor(Qt::yellow) << "editor" << QColor(Qt::yellow);
    QTest::newRow("another role") << none << "text" << base;
    QTest::newRow("by validity") << none << "validity" << QColor(Qt::red);
    QTest::newRow("its own, by validity") << QColor(Qt::yellow) << "validity" << QColor(Qt::red);
    QTest::newRow("by style sheet") << none << "sheet" << base;
}

void tst_latLonEditor::putsTheBaseBack()
{
    QFETCH(QColor, own);
    QFETCH(QString, change);
    latitudeEditor_t editor;
    editor.setValue(12.5);
    QLineEdit* const field = lineEdit(editor);
    const auto setColor = [](QWidget* widget, QPalette::ColorRole role, const QColor& color) {
        QPalette palette = widget->palette();
        palette.setColor(role, color);
        widget->setPalette(palette);
    };
    if (own.isValid())
        setColor(field, QPalette::Base, own);
    connect(&editor, &latLonEditor_t::valueValidityChanged, this, [&](bool isValid) {
        if (change == QLatin1String("validity"))
            setColor(field, QPalette::Base, isValid ? Qt::green : Qt::red);
        if (change == QLatin1String("sheet"))
            field->setStyleSheet(isValid ? QString() : QStringLiteral("background: red"));
    });
    paste(field, QStringLiteral("depth"));
    QCOMPARE(field->palette().color(QPalette::Base), field->palette().color(QPalette::Highlight));
    if (change == QLatin1String("field"))
        setColor(field, QPalette::Base, Qt::red);
    else if (change == QLatin1String("editor"))
        setColor(&editor, QPalette::Base, Qt::red);
    else if (change == QLatin1String("text"))
        setColor(field, QPalette::Text, Qt::red);
    else
        editor.setValue(NOTHING);
    QTRY_VERIFY(!field->findChild<QTimer*>()->isActive());
    if (change == QLatin1String("sheet"))
        editor.setValue(12.5);
    QTEST(field->palette().color(QPalette::Base), "wanted");
    if (change == QLatin1String("text"))
        QCOMPARE(field->palette().color(QPalette::Text), QColor(Qt::red));

    if (change == QLatin1String("sheet"))
        return; // Qt itself loses track of what follows the application then
    // What nobody has set follows the application's colours again.
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, Qt::black);
    QApplication::setPalette(dark);
    QCoreApplication::processEvents(); // which tells the widgets, with Qt 6
    const QColor darkened = field->palette().color(QPalette::Base);
    QApplication::setPalette(before);
    QCoreApplication::processEvents();
    const bool isNobodys = !own.isValid() && (change.isEmpty() || change == QLatin1String("text"));
    QCOMPARE(darkened == QColor(Qt::black), isNobodys);
}

void tst_latLonEditor::refusesTwiceInARow()
{
    latitudeEditor_t editor;
    QLineEdit* const field = lineEdit(editor);
    auto* const timer = field->findChild<QTimer*>();
    const QPalette before = field->palette();
    paste(field, QStringLiteral("depth"));
    QPalette other = field->palette();
    other.setColor(QPalette::Base, Qt::red);
    field->setPalette(other);
    paste(field, QStringLiteral("depth"));
    QCOMPARE(field->palette().color(QPalette::Base), before.color(QPalette::Highlight));
    QVERIFY(timer->remainingTime() > 0);
    QTRY_COMPARE(field->palette().color(QPalette::Base), QColor(Qt::red));
}

void tst_latLonEditor::endsTheFlashBeforeValidityChanges()
{
    latitudeEditor_t editor;
    QLineEdit* const field = lineEdit(editor);
    const QPalette before = field->palette();
    QList<QPalette> seen;
    connect(&editor, &latLonEditor_t::valueValidityChanged, this,
            [&] { seen.append(field->palette()); });
    paste(field, QStringLiteral("depth"));
    editor.setValue(12.5);
    QCOMPARE(field->palette().color(QPalette::Base), before.color(QPalette::Highlight));
    editor.setValue(NOTHING);
    QCOMPARE(seen, QList<QPalette>{before});
    QCOMPARE(field->palette(), before);
    QVERIFY(!field->findChild<QTimer*>()->isActive());
}

void tst_latLonEditor::mayBeDeletedDuringTheFlash()
{
    auto editor = std::make_unique<latitudeEditor_t>();
    paste(lineEdit(*editor), QStringLiteral("depth"));
    editor.reset();
    auto* const other = new latitudeEditor_t;
    const QPointer<QLineEdit> field = lineEdit(*other);
    connect(other, &latLonEditor_t::pasteRefused, this, [&] { delete other; });
    paste(field, QStringLiteral("depth"));
    QTRY_VERIFY(field.isNull());
}

void tst_latLonEditor::setsBothOfAPair_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("decimals") << "-22.00833333333, -17.94166666667";
    QTest::newRow("letters") << "22-00.5S 017-56.5W";
    QTest::newRow("URI") << "geo:-22.00833333333,-17.94166666667";
    QTest::newRow("well-known text") << "POINT(-17.94166666667 -22.00833333333)";
}

void tst_latLonEditor::setsBothOfAPair()
{
    QFETCH(QString, text);
    for (const bool isIntoLatitude : {true, false}) {
        for (const way_t& way : ways) {
            latitudeEditor_t latitude;
            longitudeEditor_t longitude;
            latitude.setCoordinateFormat(CF_DM);
            longitude.setCoordinateFormat(CF_DMS);
            if (isIntoLatitude)
                latitude.pairWith(&longitude);
            else
                longitude.pairWith(&latitude); // which is the same
            QStringList order;
            connect(&latitude, &latLonEditor_t::valueChanged, this,
                    [&] { order.append(QStringLiteral("latitude")); });
            connect(&longitude, &latLonEditor_t::valueChanged, this,
                    [&] { order.append(QStringLiteral("longitude")); });
            const latLonEditor_t& target =
                isIntoLatitude ? static_cast<const latLonEditor_t&>(latitude) : longitude;
            way.put(lineEdit(target), text);
            QCOMPARE(shownText(latitude), QStringLiteral("22° 00.500000'S"));
            QCOMPARE(shownText(longitude), QStringLiteral("017° 56' 30.0000\"W"));
            const QString first =
                isIntoLatitude ? QStringLiteral("latitude") : QStringLiteral("longitude");
            QCOMPARE(order.count(first), 2); // hemisphere and magnitude
            QCOMPARE(order.mid(0, 2), (QStringList{first, first}));
            QCOMPARE(order.count(), 4);
        }
    }
    // One alone is for one.
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    paste(lineEdit(latitude), QStringLiteral("12-34.5S"));
    QCOMPARE(shownText(latitude), QStringLiteral("12.57500000°S"));
    QCOMPARE(shownText(longitude), QStringLiteral("000.00000000°E"));
    QSignalSpy refusals(&latitude, &latLonEditor_t::pasteRefused);
    paste(lineEdit(latitude), QStringLiteral("12-34.5W")); // the partner's
    QCOMPARE(refusals.count(), 1);
    QCOMPARE(shownText(longitude), QStringLiteral("000.00000000°E"));
}

void tst_latLonEditor::setsOneOfAPairWithoutPartner()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    longitude.pairWith(nullptr);
    for (latLonEditor_t* const editor :
         {static_cast<latLonEditor_t*>(&latitude), static_cast<latLonEditor_t*>(&longitude)}) {
        latitude.setValue(0.0);
        longitude.setValue(0.0);
        paste(lineEdit(*editor), QStringLiteral("12.5, 45.5"));
        QCOMPARE(valueOf(latitude), editor == &latitude ? 12.5 : 0.0);
        QCOMPARE(valueOf(longitude), editor == &longitude ? 45.5 : 0.0);
    }
}

void tst_latLonEditor::leavesAPartnerAloneThatMayNotBeEdited()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    longitude.setEnabled(false);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    longitude.setEnabled(true);
    lineEdit(longitude)->setReadOnly(true);
    paste(lineEdit(latitude), QStringLiteral("13.5, 45.5"));
    QCOMPARE(valueOf(latitude), 13.5);
    QCOMPARE(valueOf(longitude), 0.0);
    lineEdit(longitude)->setReadOnly(false);
    paste(lineEdit(latitude), QStringLiteral("14.5, 45.5"));
    QCOMPARE(valueOf(longitude), 45.5);
}

void tst_latLonEditor::refusesToPairTheSameKind()
{
    latitudeEditor_t latitude;
    latitudeEditor_t otherLatitude;
    longitudeEditor_t longitude;
    longitudeEditor_t otherLongitude;
    latitude.pairWith(&longitude);
    messageRecorder_t messages;
    latitude.pairWith(&otherLatitude);
    latitude.pairWith(&latitude);
    longitude.pairWith(&otherLongitude);
    const auto message = QStringLiteral("latLonEditor_t::pairWith: Failed to pair - two %1 are no "
                                        "position");
    QCOMPARE(messages.texts(), (QStringList{message.arg(QStringLiteral("latitudes")),
                                            message.arg(QStringLiteral("latitudes")),
                                            message.arg(QStringLiteral("longitudes"))}));
    QCOMPARE(messages.kinds().count(QStringLiteral("debug")), 3);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    QCOMPARE(valueOf(longitude), 45.5); // still paired
    QCOMPARE(valueOf(otherLatitude), 0.0);
}

void tst_latLonEditor::pairsWithAnother()
{
    latitudeEditor_t latitude;
    latitudeEditor_t otherLatitude;
    longitudeEditor_t longitude;
    longitudeEditor_t otherLongitude;
    latitude.pairWith(&longitude);
    otherLatitude.pairWith(&otherLongitude);
    latitude.pairWith(&otherLongitude);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    QCOMPARE(valueOf(otherLongitude), 45.5);
    QCOMPARE(valueOf(longitude), 0.0);
    paste(lineEdit(otherLatitude), QStringLiteral("13.5, 46.5"));
    QCOMPARE(valueOf(otherLongitude), 45.5); // it has lost its partner
    paste(lineEdit(longitude), QStringLiteral("14.5, 47.5"));
    QCOMPARE(valueOf(latitude), 12.5);  // so has it
    latitude.pairWith(&otherLongitude); // no change
    paste(lineEdit(otherLongitude), QStringLiteral("15.5, 48.5"));
    QCOMPARE(valueOf(latitude), 15.5);
}

void tst_latLonEditor::survivesTheEndOfAPartner()
{
    for (const bool isLatitudeFirst : {true, false}) {
        auto latitude = std::make_unique<latitudeEditor_t>();
        auto longitude = std::make_unique<longitudeEditor_t>();
        latitude->pairWith(longitude.get());
        if (isLatitudeFirst)
            latitude.reset();
        else
            longitude.reset();
        const latLonEditor_t& survivor =
            isLatitudeFirst ? static_cast<const latLonEditor_t&>(*longitude) : *latitude;
        paste(lineEdit(survivor), QStringLiteral("12.5, 45.5"));
        QCOMPARE(valueOf(survivor), isLatitudeFirst ? 45.5 : 12.5);
    }
    // In slots of the first signals, too.
    for (const bool isPartnerDeleted : {true, false}) {
        auto* const latitude = new latitudeEditor_t;
        auto* const longitude = new longitudeEditor_t;
        latitude->pairWith(longitude);
        connect(latitude, &latLonEditor_t::valueChanged, this,
                [&] { delete (isPartnerDeleted ? static_cast<QWidget*>(longitude) : latitude); });
        paste(lineEdit(*latitude), QStringLiteral("12.5, 45.5"));
        if (!isPartnerDeleted)
            QCOMPARE(valueOf(*longitude), 45.5);
        delete (isPartnerDeleted ? static_cast<QWidget*>(latitude) : longitude);
    }
}

void tst_latLonEditor::mayBeDeletedBySlots_data()
{
    QTest::addColumn<editorChange_t>("change");
    const auto row = [](const char* name, editorChange_t change) { QTest::newRow(name) << change; };
    row("value", [](latLonEditor_t* editor) { editor->setValue(12.0); });
    row("value in another hemisphere", [](latLonEditor_t* editor) { editor->setValue(-12.0); });
    row("no value", [](latLonEditor_t* editor) { editor->setValue(NOTHING); });
    row("no value and back", [](latLonEditor_t* editor) {
        const QPointer<latLonEditor_t> guard(editor);
        editor->setValue(NOTHING);
        if (!guard.isNull())
            editor->setValue(-12.0);
    });
    row("notation", [](latLonEditor_t* editor) { editor->setCoordinateFormat(CF_DMS); });
    row("typed", [](latLonEditor_t* editor) { type(*editor, 0, QStringLiteral("3")); });
    row("typed into the window", [](latLonEditor_t* editor) {
        editor->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(editor->window(), patienceMs()));
        lineEdit(*editor)->setCursorPosition(0);
        QTest::keyClick(editor->window()->windowHandle(), Qt::Key_3);
    });
    row("hemisphere by key",
        [](latLonEditor_t* editor) { QTest::keyClick(hemisphere(*editor), Qt::Key_S); });
    row("hemisphere by popup", [](latLonEditor_t* editor) { chooseNext(hemisphere(*editor)); });
    row("own selector", [](latLonEditor_t* editor) {
        editor->showFormatSelector(true);
        chooseNext(comboBox(*ownSelector(*editor)));
    });
    row("pasted", [](latLonEditor_t* editor) { paste(lineEdit(*editor), QStringLiteral("12N")); });
    row("pasted digits", [](latLonEditor_t* editor) {
        lineEdit(*editor)->setCursorPosition(0);
        paste(lineEdit(*editor), QStringLiteral("3"));
    });
    row("pasted from the menu",
        [](latLonEditor_t* editor) { pasteFromMenu(lineEdit(*editor), QStringLiteral("12S")); });
    row("middle button",
        [](latLonEditor_t* editor) { pasteSelection(lineEdit(*editor), QStringLiteral("12S")); });
    row("dropped", [](latLonEditor_t* editor) { drop(lineEdit(*editor), QStringLiteral("12S")); });
}

// At the first signal, whichever that is.
void tst_latLonEditor::mayBeDeletedBySlots()
{
    QFETCH(editorChange_t, change);
    for (const bool isWithParent : {false, true}) {
        QWidget window;
        const QPointer<QWidget> parent = new QWidget(&window);
        const QPointer<latLonEditor_t> editor = new latitudeEditor_t(parent);
        editor->setCoordinateFormat(CF_DM);
        editor->setValue(45.0);
        editor->resize(400, 40);
        window.show();
        lineEdit(*editor)->setFocus();
        int signalCount = 0;
        const auto end = [&] {
            ++signalCount;
            delete (isWithParent ? parent.data() : editor.data());
        };
        connect(editor.data(), &latLonEditor_t::valueChanged, this, end);
        connect(editor.data(), &latLonEditor_t::valueValidityChanged, this, end);
        connect(editor.data(), &latLonEditor_t::pasteRefused, this, end);
        change(editor.data());
        QVERIFY(editor.isNull());
        QCOMPARE(signalCount, 1);
    }
}

void tst_latLonEditor::leavesNothingBehindWhenDeletedBySlots()
{
    const QPointer<latLonEditor_t> editor = new latitudeEditor_t;
    const QPointer<QLineEdit> field = lineEdit(*editor);
    const QPointer<QComboBox> box = hemisphere(*editor);
    connect(editor.data(), &latLonEditor_t::valueChanged, this, [&] { delete editor; });
    type(*editor, 0, QStringLiteral("3"));
    QVERIFY(editor.isNull());
    QVERIFY(field.isNull() || !field->isVisible());
    QTRY_VERIFY(field.isNull() && box.isNull());
    // Outside of signals all goes at once.
    auto other = std::make_unique<latitudeEditor_t>();
    const QPointer<QLineEdit> otherField = lineEdit(*other);
    other->setValue(12.0);
    other.reset();
    QVERIFY(otherField.isNull());
}

void tst_latLonEditor::showsItsSelectorWhenAsked()
{
    latitudeEditor_t editor;
    editor.showFormatSelector(true);
    QVERIFY(!ownSelector(editor)->isHidden());
    editor.showFormatSelector(false);
    QVERIFY(ownSelector(editor)->isHidden());
}

void tst_latLonEditor::followsItsOwnSelector()
{
    latitudeEditor_t editor;
    editor.setValue(12.5);
    comboBox(*ownSelector(editor))->setCurrentIndex(CF_DM);
    QCOMPARE(editor.selectedFormat(), CF_DM);
    QCOMPARE(shownText(editor), QStringLiteral("12° 30.000000'N"));
}

void tst_latLonEditor::followsOtherSelectors()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    coordFormatSelector_t selector;
    latitude.connectFormatSelector(&selector, false);
    longitude.connectFormatSelector(&selector, false);
    QCOMPARE(latitude.selectedFormat(), CF_D); // only what is chosen from now on counts
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(latitude.selectedFormat(), CF_DMS);
    QCOMPARE(longitude.selectedFormat(), CF_DMS);
    latitude.setCoordinateFormat(CF_D);
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS)); // it isn't led
}

void tst_latLonEditor::followsASelectorOnce()
{
    latitudeEditor_t editor;
    countingSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    editor.connectFormatSelector(&selector, true);
    QCOMPARE(selector.followers(), 1);
}

void tst_latLonEditor::drivesASelectorInBothDirections()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    coordFormatSelector_t selector;
    latitude.connectFormatSelector(&selector, true);
    longitude.connectFormatSelector(&selector, true);
    comboBox(*ownSelector(latitude))->setCurrentIndex(CF_DMS);
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS));
    QCOMPARE(longitude.selectedFormat(), CF_DMS);
    longitude.setCoordinateFormat(CF_D);
    QCOMPARE(choice(selector), static_cast<int>(CF_D));
    QCOMPARE(latitude.selectedFormat(), CF_D);
}

void tst_latLonEditor::ceasesToDriveASelector()
{
    latitudeEditor_t editor;
    coordFormatSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    editor.connectFormatSelector(&selector, false);
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(choice(selector), static_cast<int>(CF_DM));
    comboBox(selector)->setCurrentIndex(CF_D); // but follows
    QCOMPARE(editor.selectedFormat(), CF_D);
}

void tst_latLonEditor::survivesASelectorThatIsNone()
{
    latitudeEditor_t editor;
    for (const bool bothWays : {false, true}) {
        editor.connectFormatSelector(nullptr, bothWays);
        comboBox(*ownSelector(editor))->setCurrentIndex(bothWays ? CF_DM : CF_DMS);
        QCOMPARE(editor.selectedFormat(), bothWays ? CF_DM : CF_DMS);
    }
}

void tst_latLonEditor::survivesTheEndOfASelector()
{
    latitudeEditor_t editor;
    auto selector = std::make_unique<coordFormatSelector_t>();
    editor.connectFormatSelector(selector.get(), true);
    selector.reset();
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_DMS);

    coordFormatSelector_t survivor;
    {
        latitudeEditor_t other;
        other.connectFormatSelector(&survivor, true);
    }
    survivor.changeSelection(CF_DMS);
    QCOMPARE(choice(survivor), static_cast<int>(CF_DMS));
}

void tst_latLonEditor::startsTheSelectorWithMinutes()
{
    QWidget parent;
    const QPointer<coordFormatSelector_t> selector = new coordFormatSelector_t(&parent);
    QCOMPARE(selector->parentWidget(), &parent);
    QCOMPARE(choice(*selector), static_cast<int>(CF_DM));
    const auto* const layout = qobject_cast<QHBoxLayout*>(selector->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 1);
}

void tst_latLonEditor::namesTheNotations()
{
    const coordFormatSelector_t selector;
    QCOMPARE(comboBox(selector)->count(), 3);
    QCOMPARE(comboBox(selector)->itemText(CF_D), QStringLiteral("DD°"));
    QCOMPARE(comboBox(selector)->itemText(CF_DM), QStringLiteral("DD°MM'"));
    QCOMPARE(comboBox(selector)->itemText(CF_DMS), QStringLiteral("DD°MM'SS\""));
}

void tst_latLonEditor::announcesAChoiceOnce()
{
    const coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(formats(spy), QList<int>{CF_DMS});
}

void tst_latLonEditor::announcesAChangeTwice()
{
    coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DMS);
    QCOMPARE(formats(spy), (QList<int>{CF_DMS, CF_DMS}));
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS));
}

void tst_latLonEditor::announcesNoChangeToTheSame()
{
    coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DM);
    QCOMPARE(spy.count(), 0);
}

void tst_latLonEditor::mayBeDeletedBySlotsOfASelector_data()
{
    QTest::addColumn<selectorChange_t>("change");
    QTest::newRow("chosen by the user") << selectorChange_t{
        [](coordFormatSelector_t* selector) { chooseNext(comboBox(*selector)); }};
    QTest::newRow("chosen by key") << selectorChange_t{[](coordFormatSelector_t* selector) {
        QTest::keyClick(comboBox(*selector), Qt::Key_Down);
    }};
    QTest::newRow("changed") << selectorChange_t{
        [](coordFormatSelector_t* selector) { selector->changeSelection(CF_DMS); }};
}

// Deletes at the first and at the second signal, an editor along with it, before or after it.
void tst_latLonEditor::mayBeDeletedBySlotsOfASelector()
{
    QFETCH(selectorChange_t, change);
    for (const int last : {1, 2}) {
        for (const bool isEditorFirst : {false, true}) {
            QWidget window;
            const QPointer<coordFormatSelector_t> selector = new coordFormatSelector_t(&window);
            const QPointer<latLonEditor_t> editor = new latitudeEditor_t(&window);
            window.show();
            editor->connectFormatSelector(selector, true);
            int signalCount = 0;
            connect(selector.data(), &coordFormatSelector_t::selectionChanged, this, [&] {
                if (++signalCount < last)
                    return;
                if (isEditorFirst)
                    delete editor;
                delete selector;
                delete editor;
            });
            change(selector.data());
            QCOMPARE(selector.isNull(), signalCount == last);
        }
    }
}

void tst_latLonEditor::announcesNoLossOfTheChoice_data()
{
    QTest::addColumn<boxChange_t>("loseChoice");
    const auto row = [](const char* name, boxChange_t loseChoice) {
        QTest::newRow(name) << loseChoice;
    };
    row("index -1", [](QComboBox* box) { box->setCurrentIndex(-1); });
    row("cleared", [](QComboBox* box) { box->clear(); });
    row("reset", [](QComboBox* box) {
        auto* const names = new QStringListModel({QStringLiteral("a"), QStringLiteral("b")}, box);
        box->setModel(names);
        box->setCurrentIndex(CF_DM);
        names->setStringList({});
    });
}

void tst_latLonEditor::announcesNoLossOfTheChoice()
{
    QFETCH(boxChange_t, loseChoice);
    coordFormatSelector_t selector;
    latitudeEditor_t editor;
    editor.setCoordinateFormat(CF_DM);
    editor.connectFormatSelector(&selector, true);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    loseChoice(comboBox(selector));
    QCOMPARE(choice(selector), -1);
    for (const int format : formats(spy))
        QVERIFY(format >= CF_D && format <= CF_DMS);
    const latLonEditor_t::coordFormat_t kept = editor.selectedFormat();
    spy.clear();
    comboBox(selector)->setCurrentIndex(-1);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(editor.selectedFormat(), kept);
}

void tst_latLonEditor::ignoresChoicesThatAreNoNotation_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("one too many") << 3;
    QTest::newRow("one more") << 4;
}

void tst_latLonEditor::ignoresChoicesThatAreNoNotation()
{
    QFETCH(int, index);
    coordFormatSelector_t selector;
    latitudeEditor_t editor;
    editor.connectFormatSelector(&selector, false);
    comboBox(selector)->addItems({QStringLiteral("three"), QStringLiteral("four")});
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    comboBox(selector)->setCurrentIndex(index);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(editor.selectedFormat(), CF_D);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(formats(spy), QList<int>{CF_DMS});
    QCOMPARE(editor.selectedFormat(), CF_DMS);
}

void tst_latLonEditor::keepsTheNotationWithoutAChoice()
{
    latitudeEditor_t editor;
    comboBox(*ownSelector(editor))->clear();
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(shownText(editor), QStringLiteral("00.00000000°N"));
    editor.setCoordinateFormat(CF_DMS); // there is nothing left to show it by
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    QCOMPARE(shownText(editor), QStringLiteral("00° 00' 00.0000\"N"));
}

// Neither of two selectors that follow each other can show what the other one announces.
void tst_latLonEditor::announcesOnceBetweenSelectorsWithoutItems()
{
    latitudeEditor_t editor;
    coordFormatSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    comboBox(*ownSelector(editor))->clear();
    comboBox(selector)->clear();
    QSignalSpy choices(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DMS);
    QCOMPARE(formats(choices), QList<int>{CF_DMS});
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    editor.setCoordinateFormat(CF_DM);
    QCOMPARE(formats(choices), (QList<int>{CF_DMS, CF_DM}));
    QCOMPARE(editor.selectedFormat(), CF_DM);
}

void tst_latLonEditor::ignoresWhatIsNoNotation()
{
    const auto noNotation = static_cast<latLonEditor_t::coordFormat_t>(3);
    latitudeEditor_t editor;
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    editor.setCoordinateFormat(noNotation);
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(values.count(), 0);
    coordFormatSelector_t selector;
    QSignalSpy choices(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(noNotation);
    QCOMPARE(choice(selector), static_cast<int>(CF_DM));
    QCOMPARE(choices.count(), 0);
}

void tst_latLonEditor::connectsByNames()
{
    latitudeEditor_t editor;
    coordFormatSelector_t selector;
    QVERIFY(connect(&selector, SIGNAL(selectionChanged(latLonEditor_t::coordFormat_t)), &editor,
                    SLOT(setCoordinateFormat(latLonEditor_t::coordFormat_t))));
    QVERIFY(connect(&selector, SIGNAL(selectionChanged(latLonEditor_t::coordFormat_t)),
                    ownSelector(editor), SLOT(changeSelection(latLonEditor_t::coordFormat_t))));
    QSignalSpy values(&editor, SIGNAL(valueChanged(double)));
    QSignalSpy validity(&editor, SIGNAL(valueValidityChanged(bool)));
    QVERIFY(values.isValid());
    QVERIFY(validity.isValid());
    QVERIFY(QMetaObject::invokeMethod(&editor, "setValue", Q_ARG(double, 12.5)));
    QCOMPARE(arguments(values), QList<double>{12.5});
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    QVERIFY(QMetaObject::invokeMethod(&editor, "showFormatSelector", Q_ARG(bool, true)));
    QVERIFY(!ownSelector(editor)->isHidden());
    QVERIFY(QMetaObject::invokeMethod(&editor, "handleFormatCBChanged", Q_ARG(int, 0)));
    QCOMPARE(editor.selectedFormat(), CF_D);
    for (const int noChoice : {-1, 3}) {
        QVERIFY(QMetaObject::invokeMethod(&editor, "handleFormatCBChanged", Q_ARG(int, noChoice)));
        QCOMPARE(editor.selectedFormat(), CF_D);
    }
    values.clear();
    QVERIFY(QMetaObject::invokeMethod(&editor, "handleValueChanged"));
    QCOMPARE(arguments(values), QList<double>{12.5});
}

void tst_latLonEditor::readsPointsInAnyLocale()
{
    if (qgetenv("LC_ALL") == "de_DE.UTF-8") // a run of its own
        QCOMPARE(localeconv()->decimal_point, ",");
    latitudeEditor_t editor;
    int cursor = 0;
    QString beyond = QStringLiteral("90.00000001°"); // 90 where the point ends the number
    QCOMPARE(lineEdit(editor)->validator()->validate(beyond, cursor), QValidator::Intermediate);
    editor.setCoordinateFormat(CF_DMS);
    QString minutes = QStringLiteral("12° 34' 60.0000\""); // behind a byte that is no UTF-8
    QCOMPARE(lineEdit(editor)->validator()->validate(minutes, cursor), QValidator::Invalid);
    editor.setValue(12.26);
    QCOMPARE(shownText(editor), QStringLiteral("12° 15' 36.0000\"N"));
    QCOMPARE(valueOf(editor), 12.26);
}

ZORBIN_TEST_MAIN(tst_latLonEditor, QApplication)
#include "tst_latLonEditor.moc"
