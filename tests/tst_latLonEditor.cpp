#include "latLonEditor.h"
#include "latLonGestures.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QValidator>
#include <clocale>
#include <limits>
#include <type_traits>

using namespace lat_lon_tests;
using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<latLonEditor_t>::value, "editors aren't copied");
static_assert(!std::is_copy_constructible<coordFormatSelector_t>::value, "nor are selectors");

Q_DECLARE_METATYPE(latLonEditor_t::latLonMode_t)
Q_DECLARE_METATYPE(QValidator::State)

static constexpr auto LLM_LATITUDE = latLonEditor_t::LLM_LATITUDE;
static constexpr auto LLM_LONGITUDE = latLonEditor_t::LLM_LONGITUDE;

/// The entry fields for latitudes and longitudes: values, notations, texts as they are typed.
class tst_latLonEditor : public latLonTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
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

    void connectsByNames();
    void readsPointsInAnyLocale();
};

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
