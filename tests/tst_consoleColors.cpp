#include "colorPicker.h"
#include "curvePalette.h"
#include "gestures.h"
#include "messageRecorder.h"
#include "paletteChooser.h"
#include "pictures.h"
#include "stripChart.h"
#include "testCase.h"
#include "testConsole.h"
#include "testFiles.h"
#include "theme.h"

#include <QColorDialog>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSignalSpy>
#include <QTimer>
#include <cmath>

using namespace survey_console;
using zorbin_qt_gui::colorPicker_t;
using zorbin_qt_gui::stripChart_t;

/// The colours of the console's curves, and the palette of its depth.
class tst_consoleColors : public testCase_t
{
    Q_OBJECT
private:
    const testPalettes_t m_palettes;

protected:
    void setUp() override { m_palettes.use(); }

private Q_SLOTS:
    void startsWithTheDepthPalette();
    void coloursTheDepthByValue();
    void recoloursThePastByAnotherPalette();
    void keepsTheScaleWhenItRecolours();
    void coloursNewPointsLikeTheOld();
    void goesBackToOneColour();
    void showsThePaletteOverItsRange();
    void paletteBoxShowsThePalettes();
    void wheelOverThePaletteBoxChangesNothing();
    void choosesAPaletteFromAFile();
    void cancelledFileDialogKeepsThePalette();
    void keepsThePaletteWhenAFileCannotBeRead_data();
    void keepsThePaletteWhenAFileCannotBeRead();
    void readOutStandsBeforeTheMessage();
    void goesOnWithoutPalettes();
    void namesStandardPalettesThatCannotBeRead();
    void hasNoPaletteWithoutDepth();
    void secondCurveLiesOverTheFirst();
    void recoloursACurveByItsPicker();
    void choosesACurveColourInTheDialog();
    void pickedColourTakesTheDepthOffItsPalette();
    void makesDarkColoursVisible_data();
    void makesDarkColoursVisible();
    void stretchesThePaletteOverRoundNumbers_data();
    void stretchesThePaletteOverRoundNumbers();
};

void tst_consoleColors::startsWithTheDepthPalette()
{
    console_t console;
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Bathymetry"));
    QVERIFY(console.chooser()->palette());
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

// The soundings go from 100 m to 160 m, so the palette's second colour starts at 130 m, at 300 s.
void tst_consoleColors::coloursTheDepthByValue()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 200.0);
    const QImage shallow = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::red, shallow) > 100);
    QCOMPARE(countOf(Qt::green, shallow), 0);
    console.clock()->seek(lineStart + 600.0);
    const QImage deep = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::green, deep) > 100);
    QCOMPARE(countOf(Qt::red, deep), 0);
    // The value changes its colour with neither.
    QCOMPARE(console.textColor(PANEL_DEPTH, "valueLabel0"), theme::text());
}

void tst_consoleColors::recoloursThePastByAnotherPalette()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    const QImage before = snapshot(*console.area(PANEL_DEPTH));
    console.choosePalette(2);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Imagery"));
    const QImage after = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::red, before) > 100);
    QVERIFY(countOf(Qt::green, before) > 100);
    QCOMPARE(countOf(Qt::yellow, after), countOf(Qt::red, before));
    QCOMPARE(countOf(Qt::cyan, after), countOf(Qt::green, before));
    QCOMPARE(countOf(Qt::red, after) + countOf(Qt::green, after), 0);
}

void tst_consoleColors::keepsTheScaleWhenItRecolours()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->setRunning(true);
    for (int frame = 0; frame < 400; ++frame)
        console.pass(1.0);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    QSignalSpy moves(chart, &stripChart_t::valueBoundsChanged);
    console.choosePalette(2);
    console.picker(PANEL_DEPTH, "colorPicker0")->selectedColor(Qt::magenta);
    QCOMPARE(moves.count(), 0);
    QVERIFY(chart->autoscaleValue());
    chart->valueBounds(-200.0, 0.0);
    console.choosePalette(1);
    QVERIFY(!chart->autoscaleValue());
    QCOMPARE(chart->minValueBound(), -200.0);
    QCOMPARE(chart->maxValueBound(), 0.0);
}

void tst_consoleColors::coloursNewPointsLikeTheOld()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 310.0);
    console.choosePalette(2);
    const int before = countOf(Qt::cyan, snapshot(*console.area(PANEL_DEPTH)));
    console.clock()->setRunning(true);
    console.pass(100.0);
    const QImage after = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::cyan, after) > before + 100);
    QCOMPARE(countOf(Qt::red, after) + countOf(Qt::green, after), 0);
}

void tst_consoleColors::goesBackToOneColour()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    console.choosePalette(0);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    const QImage picture = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(theme::firstCurve(), picture) > 100);
    QCOMPARE(countOf(Qt::red, picture) + countOf(Qt::green, picture), 0);
    QCOMPARE(console.textColor(PANEL_DEPTH, "valueLabel0"), theme::firstCurve());
}

void tst_consoleColors::showsThePaletteOverItsRange()
{
    console_t console;
    QVERIFY(console.show());
    auto* widget = console.find<QWidget>("paletteSwatch");
    QCOMPARE(widget->toolTip(), QStringLiteral("The colours from 100 to 160 m"));
    const QImage picture = snapshot(*widget);
    QCOMPARE(picture.width(), 96);
    QImage wanted(96, 10, QImage::Format_RGB32);
    wanted.fill(Qt::green);
    QPainter(&wanted).fillRect(0, 0, 48, 10, Qt::red);
    QCOMPARE(firstDifference(picture.copy(0, 0, 96, 10), wanted), QString());
    const QSize size = console.chooser()->size();
    console.choosePalette(0);
    settle();
    QCOMPARE(console.chooser()->size(), size); // nothing moves
    const QImage empty = snapshot(*widget);
    QCOMPARE(countOf(empty.pixelColor(0, 0), empty), empty.width() * empty.height());
    const QRect below(0, 10, picture.width(), picture.height() - 10); // the ends' values
    QVERIFY(picture.copy(below) != empty.copy(below));
}

void tst_consoleColors::paletteBoxShowsThePalettes()
{
    console_t console;
    const QComboBox* box = console.paletteBox();
    QStringList names;
    for (int row = 0; row < box->count(); ++row)
        names += box->itemText(row);
    QCOMPARE(names, (QStringList{"One colour", "Bathymetry", "Imagery", "Intensity", "Sidescan",
                                 "Sub-bottom", "Water column", "From file\u2026"}));
    const QImage icon = box->itemIcon(2).pixmap(28, 12).toImage();
    QCOMPARE(icon.size(), QSize(28, 12));
    for (const QString& name : names) { // each has the room it asks for
        QVERIFY2(box->fontMetrics().horizontalAdvance(name) <=
                     11 * box->fontMetrics().horizontalAdvance('X'),
                 qPrintable(name));
    }
    QCOMPARE(icon.pixelColor(13, 6), QColor(Qt::yellow));
    QCOMPARE(icon.pixelColor(14, 6), QColor(Qt::cyan));
    QCOMPARE(box->itemIcon(0).pixmap(28, 12).toImage().pixelColor(14, 6), theme::firstCurve());
}

void tst_consoleColors::wheelOverThePaletteBoxChangesNothing()
{
    console_t console;
    QVERIFY(console.show());
    QComboBox* box = console.paletteBox();
    box->setFocus();
    turnWheel(box, box->rect().center(), false);
    QCOMPARE(box->currentText(), QStringLiteral("Bathymetry"));
}

void tst_consoleColors::choosesAPaletteFromAFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath("my own palette.WP");
    QVERIFY(writeFile(path, twoColors(yellowEntry, cyanEntry)));
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    console.clock()->setRunning(true);
    QComboBox* box = console.paletteBox();
    console.choosePalette(6);
    QTest::keyClick(box, Qt::Key_Down); // "From file..."
    auto* dialog = console.window.findChild<QFileDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->nameFilters().first(), QStringLiteral("Palettes (*.wp *.xml *.jsp)"));
    QCOMPARE(box->currentText(), QStringLiteral("Water column")); // until a file is chosen
    console.pass(10.0);
    QCOMPARE(console.elapsed(), 410.0); // the replay goes on

    dialog->findChild<QLineEdit*>()->setText(path);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QVERIFY2(box->currentText().startsWith("my o") && box->currentText().contains(u'\u2026') &&
                 box->currentText().endsWith(".WP"),
             qPrintable(box->currentText()));
    QCOMPARE(box->currentData(Qt::ToolTipRole).toString(), path);
    QCOMPARE(box->itemText(box->count() - 1), QStringLiteral("From file\u2026"));
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
    QVERIFY(countOf(Qt::yellow, snapshot(*console.area(PANEL_DEPTH))) > 100);
    QTRY_VERIFY(!console.window.findChild<QFileDialog*>());
}

void tst_consoleColors::cancelledFileDialogKeepsThePalette()
{
    console_t console;
    QVERIFY(console.show());
    console.choosePalette(6);
    QTest::keyClick(console.paletteBox(), Qt::Key_Down);
    auto* dialog = console.window.findChild<QFileDialog*>();
    QVERIFY(dialog);
    dialog->reject();
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Water column"));
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

void tst_consoleColors::keepsThePaletteWhenAFileCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("debugMessages");
    QTest::newRow("missing") << "missing.wp" << QByteArray() << 0;
    QTest::newRow("unknown ending") << "1.txt" << twoColors(redEntry, greenEntry) << 0;
    QTest::newRow("not XML") << "1.xml" << QByteArray("palette") << 1;
    QTest::newRow("something else") << "1.xml" << QByteArray("<chart/>") << 0;
    QTest::newRow("empty table")
        << "1.wp" << QByteArray("<palette><colorTable depth=\"24\"/><keyedColorTable/></palette>")
        << 0;
}

void tst_consoleColors::keepsThePaletteWhenAFileCannotBeRead()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, debugMessages);
    const QTemporaryDir directory;
    if (!content.isEmpty())
        QVERIFY(writeFile(directory.filePath(name), content));
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    console.choosePalette(2);
    const int count = console.paletteBox()->count();
    const QImage before = snapshot(*console.area(PANEL_DEPTH));
    {
        const messageRecorder_t messages;
        console.chooser()->chooseFile(directory.filePath(name));
        QCOMPARE(messages.texts().size(), debugMessages);
    }
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("Can't read palette %1").arg(name));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Imagery"));
    QCOMPARE(console.paletteBox()->count(), count);
    settle();
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_DEPTH)), before), QString());
    console.choosePalette(1);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString()); // it is over
}

void tst_consoleColors::readOutStandsBeforeTheMessage()
{
    console_t console;
    QVERIFY(console.show());
    QTest::mouseMove(console.area(PANEL_DEPTH), QPoint(30, 30));
    QTRY_VERIFY(!console.text(PANEL_DEPTH, "pointerLabel").isEmpty());
    console.chooser()->chooseFile("/nowhere.wp");
    QVERIFY(console.text(PANEL_DEPTH, "pointerLabel").endsWith(" m"));
    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
                 QStringLiteral("Can't read palette nowhere.wp"));
}

void tst_consoleColors::goesOnWithoutPalettes()
{
    const QTemporaryDir empty;
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(empty.path()));
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("No palettes found: one colour"));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    QCOMPARE(console.paletteBox()->count(), 2);
    QVERIFY(countOf(theme::firstCurve(), snapshot(*console.area(PANEL_DEPTH))) > 100);
}

void tst_consoleColors::namesStandardPalettesThatCannotBeRead()
{
    const testPalettes_t some({"intensity", "sidescan", "subbottom", "watercolumn"});
    some.use();
    console_t console;
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("Can't read palette Bathymetry, Imagery"));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Intensity"));
}

void tst_consoleColors::hasNoPaletteWithoutDepth()
{
    readResult_t line;
    line.recording.add(CHANNEL_HEAVE, "PRDID", {lineStart, 0.5});
    line.recording.add(CHANNEL_HEAVE, "PRDID", {lineStart + 1.0, 0.6});
    console_t console(std::move(line));
    QVERIFY(!console.chooser());
}

void tst_consoleColors::secondCurveLiesOverTheFirst()
{
    readResult_t line;
    for (int second = 0; second < 100; ++second) {
        line.recording.add(CHANNEL_GYRO_HEADING, "HEHDT", {lineStart + second, 90.0});
        line.recording.add(CHANNEL_HEADING, "INHDT", {lineStart + second, 90.0});
    }
    console_t console(std::move(line));
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 99.0);
    settle();
    const QImage picture = snapshot(*console.chart(PANEL_HEADING));
    QVERIFY(countOf(theme::secondCurve(), picture) > 100);
    QCOMPARE(countOf(theme::firstCurve(), picture), 0);
}

void tst_consoleColors::recoloursACurveByItsPicker()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    const QImage before = snapshot(*console.area(PANEL_HEADING));
    colorPicker_t* picker = console.picker(PANEL_HEADING, "colorPicker0");
    QCOMPARE(picker->selectedColor(), theme::firstCurve());
    picker->selectedColor(Qt::magenta);
    const QImage after = snapshot(*console.area(PANEL_HEADING));
    QVERIFY(countOf(theme::firstCurve(), before) > 1000);
    QCOMPARE(countOf(Qt::magenta, after), countOf(theme::firstCurve(), before));
    QCOMPARE(countOf(theme::firstCurve(), after), 0);
    QCOMPARE(console.textColor(PANEL_HEADING, "valueLabel0"), QColor(Qt::magenta));
    console.clock()->seek(lineStart + 100.0); // feeds the curve again
    QCOMPARE(countOf(theme::firstCurve(), snapshot(*console.area(PANEL_HEADING))), 0);
}

void tst_consoleColors::choosesACurveColourInTheDialog()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setCurrentColor(Qt::magenta);
        dialog->accept();
    });
    QTest::mouseClick(console.picker(PANEL_HEADING, "colorPicker0"), Qt::LeftButton);
    QVERIFY(countOf(Qt::magenta, snapshot(*console.area(PANEL_HEADING))) > 1000);
}

void tst_consoleColors::pickedColourTakesTheDepthOffItsPalette()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    console.picker(PANEL_DEPTH, "colorPicker0")->selectedColor(Qt::magenta);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    const QImage picture = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::magenta, picture) > 100);
    QCOMPARE(countOf(Qt::red, picture) + countOf(Qt::green, picture), 0);
    const QImage icon = console.paletteBox()->itemIcon(0).pixmap(28, 12).toImage();
    QCOMPARE(icon.pixelColor(14, 6), QColor(Qt::magenta));
    console.choosePalette(1);
    QVERIFY(countOf(Qt::red, snapshot(*console.area(PANEL_DEPTH))) > 100);
}

// The chart's own 0c1319 has a relative luminance of 0.0061, so 0.118 is seen: a grey of 96.5.
void tst_consoleColors::makesDarkColoursVisible_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("visible");
    QTest::newRow("black") << QColor(0, 0, 0) << QColor(97, 97, 97);
    QTest::newRow("just too dark") << QColor(96, 96, 96) << QColor(97, 97, 97);
    QTest::newRow("just bright enough") << QColor(97, 97, 97) << QColor(97, 97, 97);
    QTest::newRow("red") << QColor(255, 0, 0) << QColor(255, 0, 0);
    QTest::newRow("white") << QColor(255, 255, 255) << QColor(255, 255, 255);
    // Luminance 0.0722, so 5.0 % of white: 0.0498 of linear light is 63.05 in sRGB.
    QTest::newRow("blue") << QColor(0, 0, 255) << QColor(64, 64, 255);
}

void tst_consoleColors::makesDarkColoursVisible()
{
    QFETCH(QColor, color);
    QFETCH(QColor, visible);
    QCOMPARE(visibleOnChart(color), visible);
}

void tst_consoleColors::stretchesThePaletteOverRoundNumbers_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<double>("minSpan");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("decimals");
    QTest::newRow("deep sea") << QVector<double>{4233.0, 5021.5} << 5.0 << 4200.0 << 5100.0 << 0;
    QTest::newRow("round already") << QVector<double>{100.0, 160.0} << 5.0 << 100.0 << 160.0 << 0;
    QTest::newRow("in any order") << QVector<double>{160.0, 100.0} << 5.0 << 100.0 << 160.0 << 0;
    QTest::newRow("one value") << QVector<double>{40.0} << 5.0 << 37.0 << 43.0 << 0;
    QTest::newRow("shallow") << QVector<double>{1.0, 1.2} << 5.0 << 0.0 << 4.0 << 0;
    QTest::newRow("negative") << QVector<double>{-1.0, 1.0} << 1.0 << -1.0 << 1.0 << 0;
    QTest::newRow("small") << QVector<double>{0.12, 0.58} << 0.1 << 0.1 << 0.6 << 1;
    QTest::newRow("NaN and infinities")
        << QVector<double>{std::nan(""), 100.0, HUGE_VAL, 160.0, -HUGE_VAL} << 5.0 << 100.0 << 160.0
        << 0;
    QTest::newRow("nothing finite") << QVector<double>{std::nan("")} << 4.0 << 0.0 << 2.0 << 0;
    QTest::newRow("empty") << QVector<double>{} << 4.0 << 0.0 << 2.0 << 0;
}

void tst_consoleColors::stretchesThePaletteOverRoundNumbers()
{
    QFETCH(QVector<double>, values);
    QFETCH(double, minSpan);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(int, decimals);
    std::vector<sample_t> samples;
    for (const double value : values)
        samples.push_back({static_cast<double>(samples.size()), value});
    const valueRange_t range = roundRange(samples, minSpan);
    QCOMPARE(range.min, min);
    QCOMPARE(range.max, max);
    QCOMPARE(range.decimals, decimals);
}

ZORBIN_TEST_MAIN(tst_consoleColors, QApplication)
#include "tst_consoleColors.moc"
