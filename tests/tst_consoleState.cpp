#include "consoleState.h"
#include "curvePalette.h"
#include "latLonEditor.h"
#include "paletteChooser.h"
#include "perception.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "testCase.h"
#include "testConsole.h"
#include "testFiles.h"
#include "theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QTemporaryDir>

using namespace survey_console;
using zorbin_qt_gui::coordFormatSelector_t;
using zorbin_qt_gui::latLonEditor_t;

namespace {

const char* const KEYS[] = {
    "window/geometry", "window/page",      "charts/depthPalette", "charts/timeSpan",
    "sonar/palette",   "echogram/palette", "echogram/beam",       "echogram/instrumentDepth",
    "survey/notation", "window/theme",     "depth/alarm",         "speed/planned",
    "replay/speed"};

// The console with all its pages, as the user sets it.
struct usersConsole_t : wholeConsole_t
{
    QComboBox* box(const char* name) { return find<QComboBox>(name); }
    QComboBox* formatBox()
    {
        return find<coordFormatSelector_t>("formatSelector")->findChild<QComboBox*>();
    }
    // Chooses a row as a user does.
    void choose(QComboBox* box, const QString& text)
    {
        box->setCurrentIndex(box->findText(text));
        Q_EMIT box->activated(box->currentIndex());
    }
};

// All that isn't as at first.
consoleState_t otherState()
{
    consoleState_t state;
    state.page = PAGE_SURVEY;
    state.depthPalette = QStringLiteral("intensity");
    state.sonarPalette = QStringLiteral("imagery");
    state.echogramPalette = QStringLiteral("intensity");
    state.echogramBeam = QStringLiteral("83 kHz");
    state.showsInstrumentDepth = false;
    state.coordFormat = latLonEditor_t::CF_DMS;
    state.speed = 7.5;
    state.timeSpan = 120.0;
    state.alarmDepth = 12.5;
    state.plannedSpeed = 4.5;
    return state;
}

// But for the geometry.
void compare(const consoleState_t& state, const consoleState_t& wanted)
{
    QCOMPARE(state.page, wanted.page);
    QCOMPARE(state.depthPalette, wanted.depthPalette);
    QCOMPARE(state.sonarPalette, wanted.sonarPalette);
    QCOMPARE(state.echogramPalette, wanted.echogramPalette);
    QCOMPARE(state.echogramBeam, wanted.echogramBeam);
    QCOMPARE(state.showsInstrumentDepth, wanted.showsInstrumentDepth);
    QCOMPARE(state.coordFormat, wanted.coordFormat);
    QCOMPARE(state.speed, wanted.speed);
    QCOMPARE(state.timeSpan, wanted.timeSpan);
    QCOMPARE(state.alarmDepth, wanted.alarmDepth);
    QCOMPARE(state.plannedSpeed, wanted.plannedSpeed);
    QCOMPARE(state.theme, wanted.theme);
}

} // namespace

class tst_consoleState : public testCase_t
{
    Q_OBJECT
private:
    const testPalettes_t m_palettes;
    QTemporaryDir m_directory;
    QString m_file;

protected:
    void setUp() override;

private Q_SLOTS:
    void initTestCase();
    void readsWhatWasWritten();
    void beginsWithoutSettings();
    void takesBadValuesForMissingOnes_data();
    void takesBadValuesForMissingOnes();
    void readsFilesThatAreNoSettings_data();
    void readsFilesThatAreNoSettings();
    void windowKeepsWhatTheUserChose();
    void windowRestoresWhatWasKept();
    void windowKeepsItsPlaceAndSize();
    void windowIgnoresWhatIsNotThere();
    void windowKeepsOnWhatItHasNoPlaceFor();
    void survivesAnyGeometry();
    void keepsAPaletteFromAFile();
    void namesAPaletteFileThatHasGone();
    void waitsForNoPipe();
    void textsStandOut_data();
    void textsStandOut();
    void curvesStandOutOnALightChart();
    void asksForTheOtherThemeByItsKey();
    void drawsInTheColoursOfTheTheme();
};

void tst_consoleState::initTestCase()
{
    QVERIFY(m_directory.isValid());
    m_file = m_directory.filePath("settings.ini");
    m_palettes.use();
}

void tst_consoleState::setUp()
{
    QFile::remove(m_file);
}

void tst_consoleState::readsWhatWasWritten()
{
    consoleState_t state = otherState();
    state.theme = theme::THEME_LIGHT;
    state.geometry = QByteArray("\0\1\xff,;\n", 6);
    {
        QSettings settings(m_file, QSettings::IniFormat);
        writeState(state, &settings);
    }
    const QSettings settings(m_file, QSettings::IniFormat);
    compare(readState(settings), state);
    QCOMPARE(readState(settings).geometry, state.geometry);
    QCOMPARE(settings.allKeys().size(), int(std::size(KEYS)));
}

void tst_consoleState::beginsWithoutSettings()
{
    const consoleState_t state = readState(QSettings(m_file, QSettings::IniFormat));
    QVERIFY(state.geometry.isEmpty());
    QCOMPARE(state.page, PAGE_CHARTS);
    QCOMPARE(state.depthPalette, QStringLiteral("bathy"));
    QCOMPARE(state.sonarPalette, QStringLiteral("sidescan"));
    QCOMPARE(state.echogramPalette, QStringLiteral("watercolumn"));
    QCOMPARE(state.echogramBeam, QString());
    QVERIFY(state.showsInstrumentDepth);
    QCOMPARE(state.coordFormat, latLonEditor_t::CF_DM);
    QCOMPARE(state.speed, 1.0);
    QCOMPARE(state.timeSpan, 300.0);
}

void tst_consoleState::takesBadValuesForMissingOnes_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    const auto add = [](const char* key, const char* name, const QVariant& value) {
        QTest::addRow("%s: %s", key, name) << QString(key) << value;
    };
    for (const char* key : KEYS) {
        if (QByteArray(key).endsWith("geometry"))
            continue; // whether it is one, the window tells
        add(key, "empty", QString());
        add(key, "list", QStringList{"a", "b"});
        add(key, "map", QVariantMap{{"a", 1}});
        add(key, "long", QString(100000, 'x'));
    }
    add("window/geometry", "long", QByteArray(100000, 'x'));
    for (const char* key : {"replay/speed", "charts/timeSpan", "depth/alarm", "speed/planned"}) {
        for (const char* number : {"-1", "1e300", "inf", "-inf", "nan", "fast", "2x"})
            add(key, number, number);
    }
    for (const char* key :
         {"window/page", "survey/notation", "window/theme", "echogram/instrumentDepth"}) {
        for (const char* name : {"0", "-1", "99", "Sonar", "charts,sonar"})
            add(key, name, name);
    }
}

void tst_consoleState::takesBadValuesForMissingOnes()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    {
        QSettings settings(m_file, QSettings::IniFormat);
        settings.setValue(key, value);
    }
    const consoleState_t state = readState(QSettings(m_file, QSettings::IniFormat));
    compare(state, consoleState_t());
    QVERIFY(state.geometry.isEmpty());
}

void tst_consoleState::readsFilesThatAreNoSettings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("once upon a time\n");
    QTest::newRow("zeros") << QByteArray(10000, '\0');
    QTest::newRow("cut off") << QByteArray("[window]\npage=@Variant(\\0\\0\\0");
    QTest::newRow("wrong types") << QByteArray("[replay]\nspeed=@Rect(0 0 1 1)\n[window]\n"
                                               "page=@Invalid()\ngeometry=@Size(1 1)\n");
}

void tst_consoleState::readsFilesThatAreNoSettings()
{
    QFETCH(QByteArray, content);
    QVERIFY(writeFile(m_file, content));
    compare(readState(QSettings(m_file, QSettings::IniFormat)), consoleState_t());
}

void tst_consoleState::windowKeepsWhatTheUserChose()
{
    usersConsole_t console;
    console.window.restore(consoleState_t());
    compare(console.window.state(), consoleState_t());
    console.window.showPage(PAGE_SURVEY);
    console.choose(console.box("paletteBox"), QStringLiteral("Intensity"));
    console.choose(console.box("sonarPaletteBox"), QStringLiteral("Imagery"));
    console.choose(console.box("echogramPaletteBox"), QStringLiteral("Intensity"));
    console.choose(console.box("beamBox"), QStringLiteral("83 kHz"));
    console.find<QCheckBox>("depthBox")->setChecked(false);
    console.formatBox()->setCurrentIndex(latLonEditor_t::CF_DMS);
    console.window.clock()->setSpeed(7.5);
    console.choose(console.box("spanBox"), QStringLiteral("2 min"));
    console.find<QDoubleSpinBox>("alarmBox")->setValue(12.5);
    console.find<QDoubleSpinBox>("plannedSpeedBox")->setValue(4.5);
    compare(console.window.state(), otherState());
    console.choose(console.box("paletteBox"), QStringLiteral("One colour"));
    QCOMPARE(console.window.state().depthPalette, QStringLiteral("plain"));
}

void tst_consoleState::windowRestoresWhatWasKept()
{
    usersConsole_t console;
    console.window.restore(otherState());
    compare(console.window.state(), otherState());
    QCOMPARE(console.window.findChild<QStackedWidget*>()->currentIndex(), int(PAGE_SURVEY));
    QCOMPARE(console.box("paletteBox")->currentText(), QStringLiteral("Intensity"));
    QCOMPARE(console.box("sonarPaletteBox")->currentText(), QStringLiteral("Imagery"));
    QCOMPARE(console.box("echogramPaletteBox")->currentText(), QStringLiteral("Intensity"));
    QCOMPARE(console.box("beamBox")->currentText(), QStringLiteral("83 kHz"));
    QVERIFY(!console.find<QCheckBox>("depthBox")->isChecked());
    QCOMPARE(console.formatBox()->currentIndex(), int(latLonEditor_t::CF_DMS));
    QCOMPARE(console.box("speedBox")->currentText(), QStringLiteral("7.5\u00d7"));
    QCOMPARE(console.box("spanBox")->currentText(), QStringLiteral("2 min"));
}

void tst_consoleState::windowKeepsItsPlaceAndSize()
{
    consoleState_t state;
    {
        usersConsole_t console;
        console.window.setGeometry(30, 40, 1400, 900);
        state = console.window.state();
    }
    usersConsole_t console;
    console.window.restore(state);
    QCOMPARE(console.window.geometry(), QRect(30, 40, 1400, 900));
    usersConsole_t another;
    another.window.resize(1000, 700);
    another.window.restore(consoleState_t());
    QCOMPARE(another.window.size(), QSize(1280, 800));
}

void tst_consoleState::windowIgnoresWhatIsNotThere()
{
    consoleState_t state;
    state.depthPalette = QStringLiteral("nothing like it");
    state.sonarPalette = QStringLiteral("bathy"); // is no choice there
    state.echogramPalette = QStringLiteral("rainbow");
    state.echogramBeam = QStringLiteral("38 kHz");
    state.timeSpan = 61.0;
    usersConsole_t console;
    console.window.restore(state);
    compare(console.window.state(), consoleState_t());
    QVERIFY(console.chooser()->message().isEmpty());
}

void tst_consoleState::windowKeepsOnWhatItHasNoPlaceFor()
{
    readResult_t line;
    line.recording.add(CHANNEL_GYRO_HEADING, "HEHDT", {0.0, 0.0});
    console_t console(line);
    consoleState_t state = otherState();
    console.window.restore(state); // there is no page but the first
    state.page = PAGE_CHARTS;
    compare(console.window.state(), state);
}

void tst_consoleState::survivesAnyGeometry()
{
    usersConsole_t console;
    const QByteArray good = console.window.saveGeometry();
    const QRect screen = QGuiApplication::primaryScreen()->virtualGeometry();
    random_t random;
    consoleState_t state;
    for (int round = 0; round < 300; ++round) {
        state.geometry = good.left(random.integer(0, static_cast<int>(good.size())));
        for (int i = random.integer(1, 8); i > 0 && !state.geometry.isEmpty(); --i)
            state.geometry[random.integer(0, static_cast<int>(state.geometry.size()) - 1)] =
                static_cast<char>(random.integer(0, 255));
        console.window.restore(state);
        const QSize size = console.window.size();
        QVERIFY2(size.width() <= screen.width() && size.height() <= screen.height(),
                 state.geometry.toHex().constData());
        QVERIFY2(screen.intersects(console.window.geometry()), state.geometry.toHex().constData());
    }
}

void tst_consoleState::keepsAPaletteFromAFile()
{
    const QString path = m_directory.filePath("mine, of 2 colours.wp");
    QVERIFY(writeFile(path, twoColors(redEntry, greenEntry)));
    consoleState_t state;
    state.depthPalette = path;
    {
        QSettings settings(m_file, QSettings::IniFormat);
        writeState(state, &settings);
    }
    usersConsole_t console;
    console.window.restore(readState(QSettings(m_file, QSettings::IniFormat)));
    QCOMPARE(console.box("paletteBox")->currentText().right(3), QStringLiteral(".wp"));
    QCOMPARE(console.window.state().depthPalette, path);
}

void tst_consoleState::namesAPaletteFileThatHasGone()
{
    consoleState_t state;
    state.depthPalette = QStringLiteral("/nowhere/gone.wp");
    usersConsole_t console;
    console.window.restore(state);
    const paletteChooser_t* chooser = console.chooser();
    QCOMPARE(chooser->message(), QStringLiteral("Can't read palette gone.wp"));
    QCOMPARE(console.window.state().depthPalette, QStringLiteral("bathy"));
}

void tst_consoleState::waitsForNoPipe()
{
    consoleState_t state;
    state.depthPalette = QStringLiteral("/dev/zero");
    usersConsole_t console;
    console.window.restore(state);
    QCOMPARE(console.window.state().depthPalette, QStringLiteral("bathy"));
}

void tst_consoleState::textsStandOut_data()
{
    QTest::addColumn<int>("name");
    QTest::newRow("dark") << int(theme::THEME_DARK);
    QTest::newRow("light") << int(theme::THEME_LIGHT);
}

void tst_consoleState::textsStandOut()
{
    QFETCH(int, name);
    theme::choose(static_cast<theme::name_t>(name));
    for (const QColor& back : {theme::window(), theme::panel(), theme::chart()}) {
        for (const QColor& text :
             {theme::text(), theme::quietText(), theme::firstCurve(), theme::secondCurve(),
              theme::running(), theme::paused(), theme::alarm()})
            QVERIFY2(contrast(text.rgb(), back.rgb()) >= 4.5, // what small text needs
                     qPrintable(text.name() + " on " + back.name()));
    }
    QVERIFY(contrast(theme::text().rgb(), theme::frame().rgb()) >= 4.5); // notices
    theme::choose(theme::THEME_DARK);
}

void tst_consoleState::curvesStandOutOnALightChart()
{
    theme::choose(theme::THEME_LIGHT);
    for (const QColor& color : {QColor(Qt::white), QColor(Qt::yellow), QColor(255, 128, 0)})
        QVERIFY2(contrast(visibleOnChart(color).rgb(), theme::chart().rgb()) >= 3.0,
                 qPrintable(color.name()));
    QCOMPARE(visibleOnChart(Qt::darkBlue), QColor(Qt::darkBlue));
    QCOMPARE(visibleOnChart(Qt::black), QColor(Qt::black));
    theme::choose(theme::THEME_DARK);
}

void tst_consoleState::asksForTheOtherThemeByItsKey()
{
    usersConsole_t console;
    QVERIFY(console.show());
    theme::name_t asked = theme::THEME_DARK;
    connect(&console.window, &mainWindow_t::themeChosen, this,
            [&](theme::name_t name) { asked = name; });
    QTest::keyClick(&console.window, Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(asked, theme::THEME_LIGHT);
}

void tst_consoleState::drawsInTheColoursOfTheTheme()
{
    theme::choose(theme::THEME_LIGHT);
    {
        usersConsole_t console;
        console.window.restore(consoleState_t());
        QCOMPARE(console.window.state().theme, theme::THEME_LIGHT);
        const QImage picture = snapshot(console.window);
        const int charts = countOf(theme::chart(), picture);
        int dark = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                dark += picture.pixelColor(x, y).lightness() < 64 ? 1 : 0;
        }
        const int all = picture.width() * picture.height();
        QVERIFY2(charts > all / 4, qPrintable(QString::number(charts)));
        QVERIFY2(dark < all / 20, qPrintable(QString::number(dark)));
    }
    theme::choose(theme::THEME_DARK);
}

ZORBIN_TEST_MAIN(tst_consoleState, QApplication)
#include "tst_consoleState.moc"
