#include "latLonEditor.h"
#include "latLonGestures.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

using namespace lat_lon_tests;
using namespace zorbin_qt_gui;

/// What becomes of texts that are pasted or dropped into an entry field, and how it refuses them.
class tst_latLonEditorPaste : public latLonTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
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
};

void tst_latLonEditorPaste::convertsWhatIsPasted_data()
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

void tst_latLonEditorPaste::convertsWhatIsPasted()
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

void tst_latLonEditorPaste::convertsPositionsForEachKind_data()
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
void tst_latLonEditorPaste::convertsPositionsForEachKind()
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

void tst_latLonEditorPaste::typesDigitsAndSignsOfTheMask_data()
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

void tst_latLonEditorPaste::typesDigitsAndSignsOfTheMask()
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

void tst_latLonEditorPaste::refusesWhatItDoesNotUnderstand_data()
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

void tst_latLonEditorPaste::refusesWhatItDoesNotUnderstand()
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

void tst_latLonEditorPaste::refusesDigitsThatTheFieldRefuses_data()
{
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("text");
    QTest::newRow("60 minutes") << 4 << QStringLiteral("60");
    QTest::newRow("no place left") << 17 << QStringLiteral("1");
}

// All of them or none.
void tst_latLonEditorPaste::refusesDigitsThatTheFieldRefuses()
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

void tst_latLonEditorPaste::pastesFromTheMenu()
{
    latitudeEditor_t editor;
    QCOMPARE(pasteFromMenu(lineEdit(editor), QStringLiteral("12°34.5'S")), 1);
    QCOMPARE(shownText(editor), QStringLiteral("12.57500000°S"));
}

void tst_latLonEditorPaste::pastesTheSelectionByKey()
{
    QApplication::clipboard()->setText(QStringLiteral("12S"));
    QApplication::clipboard()->setText(QStringLiteral("34S"), QClipboard::Selection);
    latitudeEditor_t editor;
    QTest::keyClick(lineEdit(editor), Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(shownText(editor), QStringLiteral("12.00000000°S"));
    QTest::keyClick(lineEdit(editor), Qt::Key_Insert, Qt::ShiftModifier | Qt::ControlModifier);
    QCOMPARE(shownText(editor), QStringLiteral("34.00000000°S"));
}

void tst_latLonEditorPaste::pastesNothingWhenReadOnly()
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

void tst_latLonEditorPaste::pastesNothingOutOfNothing()
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

void tst_latLonEditorPaste::pastesTheSelectionWithTheMiddleButton_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<QString>("shown");
    QTest::newRow("other form") << "12°34.5'S" << false << "12.57500000°S";
    QTest::newRow("own form") << "12.50000000°" << false << "12.50000000°N";
    QTest::newRow("read-only") << "12°34.5'S" << true << "00.00000000°N";
}

void tst_latLonEditorPaste::pastesTheSelectionWithTheMiddleButton()
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

void tst_latLonEditorPaste::convertsWhatIsDropped_data()
{
    pastesTheSelectionWithTheMiddleButton_data();
}

void tst_latLonEditorPaste::convertsWhatIsDropped()
{
    QFETCH(QString, text);
    QFETCH(bool, isReadOnly);
    latitudeEditor_t editor;
    editor.resize(400, 40);
    lineEdit(editor)->setReadOnly(isReadOnly);
    QCOMPARE(drop(lineEdit(editor), text), !isReadOnly);
    QTEST(shownText(editor), "shown");
}

void tst_latLonEditorPaste::showsARefusalByItsBase()
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

void tst_latLonEditorPaste::putsTheBaseBack_data()
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

void tst_latLonEditorPaste::putsTheBaseBack()
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

void tst_latLonEditorPaste::refusesTwiceInARow()
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

void tst_latLonEditorPaste::endsTheFlashBeforeValidityChanges()
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

void tst_latLonEditorPaste::mayBeDeletedDuringTheFlash()
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

ZORBIN_TEST_MAIN(tst_latLonEditorPaste, QApplication)
#include "tst_latLonEditorPaste.moc"
