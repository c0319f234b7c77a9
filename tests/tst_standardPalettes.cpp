#include "palette.h"
#include "perception.h"
#include "testCase.h"

#include <QFile>
#include <QXmlStreamReader>
#include <algorithm>

using zorbin_qt_gui::palette_t;

/// The installed palettes: what their files hold, how they look, and that the library finds them.
class tst_standardPalettes : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void measuresAsPublished_data();
    void measuresAsPublished();

    void holdsTwoTables_data();
    void holdsTwoTables();
    void holdsTheSameKeysAtBothDepths_data();
    void holdsTheSameKeysAtBothDepths();
    void goesOneWayInLightness_data();
    void goesOneWayInLightness();
    void turnsAtTheZeroLine();
    void holdsSixteenBroadLevels();
    void stepsEvenly_data();
    void stepsEvenly();
    void keepsLevelsApart_data();
    void keepsLevelsApart();
    void keepsMarksReadable_data();
    void keepsMarksReadable();
    void showsWhereDataAreMissing_data();
    void showsWhereDataAreMissing();

    void loadsByName_data();
    void loadsByName();
    void loadsByPath_data();
    void loadsByPath();
};

namespace {

using colors_t = std::vector<QRgb>;

struct paletteFile_t
{
    QMap<QString, colors_t> tables;           // by the attribute "depth"
    QMap<QString, QMap<QString, QRgb>> keyed; // likewise, then by key

    QMap<QString, QRgb> marks() const { return keyed.value("24"); }
};

const QStringList paletteNames = {"bathy",    "imagery",   "intensity",
                                  "sidescan", "subbottom", "watercolumn"};
const std::size_t levelCount = 16;

QString pathOf(const QString& name)
{
    return RESOURCE_DIR "/palette/" + name + ".wp";
}

// Reads the file without the library, which isn't under test here. Empty if it isn't well formed.
paletteFile_t read(const QString& name)
{
    QFile file(pathOf(name));
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&file);
    paletteFile_t found;
    QString depth;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const auto number = [&attributes](const char* component) {
            return attributes.value(QLatin1String(component)).toInt();
        };
        const QRgb color = qRgb(number("r"), number("g"), number("b"));
        if (attributes.hasAttribute(QLatin1String("depth")))
            depth = attributes.value(QLatin1String("depth")).toString();
        if (reader.name() == QLatin1String("color"))
            found.tables[depth].push_back(color);
        else if (reader.name() == QLatin1String("keyedColor"))
            found.keyed[depth].insert(attributes.value(QLatin1String("key")).toString(), color);
    }
    return reader.hasError() ? paletteFile_t() : found;
}

// The first entry of each broad level, for the palette that has such; else every entry.
colors_t distinctEntries(const QString& name)
{
    const paletteFile_t file = read(name);
    return file.tables[name == "watercolumn" ? "8" : "24"];
}

std::vector<lab_t> perceivedAll(const colors_t& colors, sight_t sight = sight_t::NORMAL)
{
    std::vector<lab_t> labs(colors.size());
    std::transform(colors.begin(), colors.end(), labs.begin(),
                   [sight](QRgb color) { return perceived(color, sight); });
    return labs;
}

// The index of the first entry that isn't lighter than the one before it; the count if all are.
std::size_t lightensUpTo(const std::vector<lab_t>& labs)
{
    const auto stop = std::adjacent_find(
        labs.begin(), labs.end(), [](const lab_t& a, const lab_t& b) { return !(b.l > a.l); });
    return stop == labs.end() ? labs.size() : static_cast<std::size_t>(stop - labs.begin()) + 1;
}

void addPaletteRows()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : paletteNames)
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

Q_DECLARE_METATYPE(lab_t)
Q_DECLARE_METATYPE(sight_t)
Q_DECLARE_METATYPE(palette_t::standardPalette_t)

void tst_standardPalettes::initTestCase()
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", RESOURCE_DIR);
}

void tst_standardPalettes::measuresAsPublished_data()
{
    QTest::addColumn<lab_t>("first");
    QTest::addColumn<lab_t>("second");
    QTest::addColumn<double>("published");

    // Of the test data that Sharma, Wu and Dalal published with their notes on the formula.
    QTest::newRow("equal") << lab_t{50.0, 1.0, 2.0} << lab_t{50.0, 1.0, 2.0} << 0.0;
    QTest::newRow("blue") << lab_t{50.0, 2.6772, -79.7751} << lab_t{50.0, 0.0, -82.7485} << 2.0425;
    QTest::newRow("grey") << lab_t{50.0, 0.0, 0.0} << lab_t{50.0, -1.0, 2.0} << 2.3669;
    QTest::newRow("opposite hues")
        << lab_t{50.0, 2.49, -0.001} << lab_t{50.0, -2.49, 0.0009} << 7.1792;
    QTest::newRow("opposite hues, other way")
        << lab_t{50.0, 2.49, -0.001} << lab_t{50.0, -2.49, 0.0011} << 7.2195;
    QTest::newRow("far apart") << lab_t{50.0, 2.5, 0.0} << lab_t{73.0, 25.0, -18.0} << 27.1492;
    QTest::newRow("green") << lab_t{60.2574, -34.0099, 36.2677} << lab_t{60.4626, -34.1751, 39.4387}
                           << 1.2644;
    QTest::newRow("hues around zero")
        << lab_t{36.4612, 47.8580, 18.3852} << lab_t{36.2715, 50.5065, 21.2231} << 1.4146;
    QTest::newRow("near black") << lab_t{2.0776, 0.0795, -1.1350} << lab_t{0.9033, -0.0636, -0.5514}
                                << 0.9082;
}

void tst_standardPalettes::measuresAsPublished()
{
    QFETCH(lab_t, first);
    QFETCH(lab_t, second);
    QFETCH(double, published);
    QVERIFY(std::abs(difference(first, second) - published) <= 0.00005);
    QVERIFY(std::abs(difference(second, first) - published) <= 0.00005);
}

void tst_standardPalettes::holdsTwoTables_data()
{
    addPaletteRows();
}

void tst_standardPalettes::holdsTwoTables()
{
    QFETCH(QString, name);
    const paletteFile_t file = read(name);
    QCOMPARE(file.tables.keys(), (QStringList{"24", "8"}));
    const colors_t large = file.tables["24"];
    const colors_t small = file.tables["8"];
    QCOMPARE(large.size(), std::size_t(256));
    QCOMPARE(small.size(), levelCount);
    for (std::size_t i = 0; i < levelCount; ++i)
        QCOMPARE(small[i], large[17 * i]); // from the first entry to the last, equally spaced
}

void tst_standardPalettes::holdsTheSameKeysAtBothDepths_data()
{
    addPaletteRows();
}

void tst_standardPalettes::holdsTheSameKeysAtBothDepths()
{
    QFETCH(QString, name);
    const paletteFile_t file = read(name);
    QCOMPARE(file.keyed.keys(), (QStringList{"24", "8"}));
    QCOMPARE(file.keyed["24"].keys(),
             (QStringList{"background", "bottom", "grid", "noData", "target", "text"}));
    QCOMPARE(file.keyed["8"], file.keyed["24"]);
}

void tst_standardPalettes::goesOneWayInLightness_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("lightens");

    QTest::newRow("bathy") << "bathy" << false;
    QTest::newRow("imagery") << "imagery" << true;
    QTest::newRow("intensity") << "intensity" << true;
    QTest::newRow("sidescan") << "sidescan" << true;
    QTest::newRow("watercolumn") << "watercolumn" << false;
}

void tst_standardPalettes::goesOneWayInLightness()
{
    QFETCH(QString, name);
    QFETCH(bool, lightens);
    std::vector<lab_t> labs = perceivedAll(distinctEntries(name));
    if (!lightens)
        std::reverse(labs.begin(), labs.end());
    QCOMPARE(lightensUpTo(labs), labs.size());
    QVERIFY(labs.back().l - labs.front().l >= 90.0);
}

void tst_standardPalettes::turnsAtTheZeroLine()
{
    // The sign of an amplitude is the colour, its size the darkness.
    std::vector<lab_t> labs = perceivedAll(distinctEntries("subbottom"));
    const std::size_t turn = lightensUpTo(labs) - 1; // the lightest entry
    QVERIFY2(turn == 127 || turn == 128, qPrintable(QString::number(turn)));
    QVERIFY(labs[turn].l >= 95.0);
    std::reverse(labs.begin(), labs.end());
    QCOMPARE(lightensUpTo(labs), labs.size() - turn);
    QVERIFY(std::abs(labs.front().l - labs.back().l) <= 1.0);
    QVERIFY(labs.front().b > 0.0 && labs.back().b < 0.0); // reddish last, bluish first
}

void tst_standardPalettes::holdsSixteenBroadLevels()
{
    const paletteFile_t file = read("watercolumn");
    const colors_t large = file.tables["24"];
    const colors_t levels = file.tables["8"];
    QCOMPARE(large.size(), std::size_t(256));
    for (std::size_t i = 0; i < large.size(); ++i)
        QCOMPARE(large[i], levels[i / levelCount]);
    QVERIFY(perceived(levels.front()).l >= 98.0); // open water is quiet
}

void tst_standardPalettes::stepsEvenly_data()
{
    addPaletteRows();
}

void tst_standardPalettes::stepsEvenly()
{
    QFETCH(QString, name);
    const std::vector<lab_t> labs = perceivedAll(distinctEntries(name));
    QVERIFY(labs.size() >= levelCount);
    std::vector<double> steps;
    std::transform(labs.begin() + 1, labs.end(), labs.begin(), std::back_inserter(steps),
                   difference);
    const auto [least, most] = std::minmax_element(steps.begin(), steps.end());
    QVERIFY2(*most <= 3.0 * *least, qPrintable(QString("%1 to %2").arg(*least).arg(*most)));
}

void tst_standardPalettes::keepsLevelsApart_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<sight_t>("sight");
    QTest::addColumn<double>("wanted"); // what docs/palettes.md promises, to a tenth

    const struct
    {
        const char* name;
        double normal, deuteranopia, protanopia;
    } rows[] = {{"bathy", 8.2, 6.3, 5.6},      {"imagery", 5.5, 5.6, 5.4},
                {"intensity", 10.1, 6.2, 7.0}, {"sidescan", 6.8, 5.8, 4.9},
                {"subbottom", 9.4, 8.5, 7.7},  {"watercolumn", 11.3, 7.1, 6.8}};
    for (const auto& row : rows) {
        const QString name = row.name;
        QTest::addRow("%s, normal", row.name) << name << sight_t::NORMAL << row.normal;
        QTest::addRow("%s, deuteranopia", row.name)
            << name << sight_t::DEUTERANOPIA << row.deuteranopia;
        QTest::addRow("%s, protanopia", row.name) << name << sight_t::PROTANOPIA << row.protanopia;
    }
}

void tst_standardPalettes::keepsLevelsApart()
{
    QFETCH(QString, name);
    QFETCH(sight_t, sight);
    QFETCH(double, wanted);
    const std::vector<lab_t> levels = perceivedAll(read(name).tables["8"], sight);
    QCOMPARE(levels.size(), levelCount);
    double least = 100.0;
    for (std::size_t i = 0; i < levels.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            least = std::min(least, difference(levels[i], levels[j]));
    QVERIFY2(std::abs(least - wanted) <= 0.05001, qPrintable(QString::number(least)));
}

void tst_standardPalettes::keepsMarksReadable_data()
{
    addPaletteRows();
}

void tst_standardPalettes::keepsMarksReadable()
{
    QFETCH(QString, name);
    const QMap<QString, QRgb> marks = read(name).marks();
    const auto ratio = [&marks](const char* key) {
        return contrast(marks.value(key), marks.value("background"));
    };
    QVERIFY(ratio("text") >= 7.0);
    QVERIFY(ratio("bottom") >= 4.5);
    QVERIFY(ratio("target") >= 3.0);
    QVERIFY(ratio("grid") >= 1.5);
    QVERIFY(ratio("grid") <= 3.0); // a grid stays behind what is measured
}

void tst_standardPalettes::showsWhereDataAreMissing_data()
{
    addPaletteRows();
}

void tst_standardPalettes::showsWhereDataAreMissing()
{
    QFETCH(QString, name);
    const paletteFile_t file = read(name);
    QVERIFY(file.marks().contains("noData"));
    const lab_t noData = perceived(file.marks().value("noData"));
    for (const lab_t& entry : perceivedAll(file.tables["24"]))
        QVERIFY(difference(noData, entry) >= 10.0);
}

void tst_standardPalettes::loadsByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<palette_t::standardPalette_t>("which");

    QTest::newRow("bathy") << "bathy" << palette_t::SP_BATHY;
    QTest::newRow("imagery") << "imagery" << palette_t::SP_IMAGERY;
    QTest::newRow("intensity") << "intensity" << palette_t::SP_INTENSITY;
    QTest::newRow("sidescan") << "sidescan" << palette_t::SP_SIDESCAN;
    QTest::newRow("subbottom") << "subbottom" << palette_t::SP_SUBBOTTOM;
    QTest::newRow("watercolumn") << "watercolumn" << palette_t::SP_WATERCOLUMN;
}

void tst_standardPalettes::loadsByName()
{
    QFETCH(QString, name);
    QFETCH(palette_t::standardPalette_t, which);
    palette_t palette;
    QVERIFY(palette.load(which));
    const paletteFile_t file = read(name);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), file.tables["24"]);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), file.tables["8"]);
}

void tst_standardPalettes::loadsByPath_data()
{
    addPaletteRows();
}

void tst_standardPalettes::loadsByPath()
{
    QFETCH(QString, name);
    palette_t palette;
    QVERIFY(palette.load(pathOf(name).toStdString()));
    const paletteFile_t file = read(name);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), file.tables["24"]);
    const QMap<QString, QRgb> marks = file.marks();
    QCOMPARE(marks.size(), 6);
    for (auto mark = marks.begin(); mark != marks.end(); ++mark) {
        QRgb color = 0;
        QVERIFY(palette.keyedColor(mark.key().toStdString(), color));
        QCOMPARE(color, mark.value());
    }
}

ZORBIN_TEST_MAIN(tst_standardPalettes, QApplication)
#include "tst_standardPalettes.moc"
