#include "childProcess.h"
#include "histogram.h"
#include "paintLog.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "testCase.h"

#include <QApplication>
#include <QMetaMethod>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <type_traits>
#include <vector>

using namespace zorbin_qt_gui;

static const float nan_ = std::numeric_limits<float>::quiet_NaN();
static const float inf = std::numeric_limits<float>::infinity();
static const float largest = std::numeric_limits<float>::max();

static_assert(!std::is_copy_constructible<histogram_t>::value, "histograms aren't copied");

namespace {

// A histogram written as plainly as its rules can be told: every sample counted, every bar a line.
struct plainHistogram_t
{
    float requestedSize = 0.0F;
    unsigned requestedBins = 100;
    float min = 0.0F;
    float max = 1.0F;
    float highlightMin = largest;
    float highlightMax = -largest;
    std::vector<float> samples;

    void paint(QPainter& painter, const QSize& size, const QPalette& palette) const
    {
        if (samples.empty())
            return;
        const float span = max - min;
        unsigned bins = requestedBins;
        float binSize = span / static_cast<float>(bins);
        if (requestedSize != 0.0F) {
            binSize = requestedSize;
            bins = static_cast<unsigned>(std::ceil(span / requestedSize));
        }
        const double perValue = 1.0 / static_cast<double>(binSize);
        std::vector<unsigned> counts(bins);
        unsigned greatest = 0;
        for (const float v : samples) {
            if (v < min || v > max)
                continue;
            const unsigned bin = std::isnan(v) ? 0
                                               : static_cast<unsigned>(static_cast<qint64>(
                                                     static_cast<double>(v - min) * perValue));
            unsigned& count = counts[std::min(bin, bins - 1)];
            greatest = std::max(greatest, ++count);
        }
        const double valuePerPixel = static_cast<double>(span) / size.width();
        const double pixelsPerCount = static_cast<double>(size.height() - 1) / greatest;
        const auto from = static_cast<double>(highlightMin - min);
        const auto to = static_cast<double>(highlightMax - min);
        QVector<QLine> normal;
        QVector<QLine> highlighted;
        for (int x = 0; x < size.width(); ++x) {
            const double a = x * valuePerPixel;
            const double b = (x + 1) * valuePerPixel;
            const auto first = static_cast<unsigned>(a * perValue);
            const auto end = static_cast<unsigned>(std::ceil(b * perValue));
            unsigned count = 0;
            for (unsigned bin = first; bin < std::min(end, bins); ++bin)
                count = std::max(count, counts[bin]);
            if (count == 0)
                continue;
            const int bottom = size.height() - 1;
            const QLine bar(x, bottom, x, bottom - static_cast<int>(count * pixelsPerCount));
            const bool touches = to >= from && a <= to && b >= from;
            (touches ? highlighted : normal).append(bar);
        }
        if (to >= from) {
            const int first = static_cast<int>(from / valuePerPixel);
            const int last =
                static_cast<int>(std::ceil(static_cast<float>(to / valuePerPixel))) - 1;
            painter.fillRect(first, 0, last - first + 1, size.height(),
                             palette.color(QPalette::Highlight));
        }
        painter.setPen(palette.color(QPalette::Text));
        painter.drawLines(normal);
        painter.setPen(palette.color(QPalette::HighlightedText));
        painter.drawLines(highlighted);
    }
};

const QRgb background = qRgb(250, 240, 230);
const QRgb normalColor = qRgb(10, 20, 30);
const QRgb fillColor = qRgb(0, 200, 0);
const QRgb highlightedColor = qRgb(200, 0, 0);

void setColors(histogram_t& histogram)
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(background));
    palette.setColor(QPalette::Text, QColor(normalColor));
    palette.setColor(QPalette::Highlight, QColor(fillColor));
    palette.setColor(QPalette::HighlightedText, QColor(highlightedColor));
    histogram.setPalette(palette);
}

// A histogram beside its plain one.
struct twins_t
{
    explicit twins_t(const QSize& size)
    {
        histogram.resize(size);
        setColors(histogram);
    }

    void add(const std::vector<float>& samples)
    {
        histogram.addData(static_cast<unsigned>(samples.size()), samples.data());
        plain.samples.insert(plain.samples.end(), samples.begin(), samples.end());
    }

    void clear()
    {
        histogram.clear();
        plain.samples.clear();
    }

    void range(float min, float max)
    {
        histogram.range(min, max);
        plain.min = min;
        plain.max = max;
    }

    void numBins(unsigned n)
    {
        histogram.numBins(n);
        plain.requestedBins = n;
        plain.requestedSize = 0.0F;
    }

    void binSize(double size)
    {
        histogram.binSize(size);
        plain.requestedSize = static_cast<float>(size);
        plain.requestedBins = 0;
    }

    void highlightRange(float min, float max)
    {
        histogram.highlightRange(min, max);
        plain.highlightMin = min;
        plain.highlightMax = max;
    }

    QImage wanted() const
    {
        QImage picture = blank(histogram);
        QPainter painter(&picture);
        plain.paint(painter, histogram.size(), histogram.palette());
        return picture;
    }

    histogram_t histogram{nullptr};
    plainHistogram_t plain;
};

// The heights of the bars on a picture, column by column, whatever their colour.
std::vector<int> heights(const QImage& picture)
{
    std::vector<int> found;
    for (int x = 0; x < picture.width(); ++x) {
        int height = 0;
        for (int y = 0; y < picture.height(); ++y) {
            const QRgb pixel = picture.pixel(x, y);
            if (pixel == normalColor || pixel == highlightedColor)
                ++height;
        }
        found.push_back(height);
    }
    return found;
}

// The columns with a bar.
QList<int> columnsWithBars(histogram_t& histogram)
{
    const std::vector<int> all = heights(snapshot(histogram));
    QList<int> columns;
    for (int x = 0; x < histogram.width(); ++x) {
        if (all[static_cast<std::size_t>(x)] > 0)
            columns.append(x);
    }
    return columns;
}

// The columns whose topmost pixel has a colour.
QList<int> columnsTopped(const QImage& picture, QRgb color)
{
    QList<int> columns;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixel(x, 0) == color)
            columns.append(x);
    }
    return columns;
}

QList<int> upwards(int first, int last)
{
    QList<int> numbers;
    for (int i = first; i <= last; ++i)
        numbers.append(i);
    return numbers;
}

} // namespace

/// The distribution of samples as a bar per pixel column.
class tst_histogram : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutSamples();
    void belongsToItsParent();
    void asksForLittleRoom();
    void saysNothing();
    void paintsNothingWithoutSamples();
    void paintsNoBarsWithoutSamplesInTheRange();

    // Bins.
    void countsSamplesInBins_data();
    void countsSamplesInBins();
    void drawsBarsInProportion();
    void drawsALowBarForAnyCount();
    void letsRoundingAddTheNextBin();
    void showsTheGreatestOfAColumnsBins();
    void repeatsABinOverItsColumns();
    void letsBinSizeAndNumBinsReplaceEachOther();
    void keepsSamplesOverAllSettings();
    void addsToWhatIsCounted();
    void takesAsManyBinsAsThereCanBe();
    void drawsNothingForASizeThatIsNone_data();
    void drawsNothingForASizeThatIsNone();

    // Highlight.
    void highlightsARange();
    void highlightsColumns_data();
    void highlightsColumns();
    void removesTheHighlight();
    void fillsTheHighlightWithoutBars();

    // Painting.
    void repaintsForEverySetter_data();
    void repaintsForEverySetter();
    void repaintsDamagedColumnsOnly();
    void letsTheBackgroundShow();
    void survivesNoSize();
    void survivesExtremeRanges_data();
    void survivesExtremeRanges();
    void drawsWhatThePlainOneDraws();
    void drawsMillionsOfSamples();
    void drawsTheSameOnDenseDisplays_data();
    void drawsTheSameOnDenseDisplays();

    // Misuse.
    void endsTheProgramOnMisuse_data();
    void endsTheProgramOnMisuse();
};

void tst_histogram::startsWithoutSamples()
{
    twins_t twins(QSize(100, 50));
    twins.add({0.005F, 0.995F, 1.005F, -0.005F}); // range 0 to 1, 100 bins
    QCOMPARE(columnsWithBars(twins.histogram), QList<int>({0, 98, 99}));
    QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
}

void tst_histogram::belongsToItsParent()
{
    QWidget parent;
    const histogram_t histogram(&parent);
    QCOMPARE(histogram.parentWidget(), &parent);
}

void tst_histogram::asksForLittleRoom()
{
    const histogram_t histogram(nullptr);
    QCOMPARE(histogram.sizeHint(), QSize(50, 50));
    QCOMPARE(histogram.minimumSizeHint(), QSize(10, 10));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QApplication::setGlobalStrut(QSize(30, 5));
    const QSize hint = histogram.minimumSizeHint();
    QApplication::setGlobalStrut(QSize(0, 0));
    QT_WARNING_POP
    QCOMPARE(hint, QSize(30, 10));
#endif
}

void tst_histogram::saysNothing()
{
    const QMetaObject& meta = histogram_t::staticMetaObject;
    QStringList slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        slotNames.append(meta.method(i).name());
    }
    QCOMPARE(slotNames, QStringList({"highlightRange", "clearHighlight"}));
}

void tst_histogram::paintsNothingWithoutSamples()
{
    twins_t twins(QSize(100, 50));
    twins.highlightRange(0.2F, 0.4F);
    QCOMPARE(firstDifference(snapshot(twins.histogram), blank(twins.histogram)), QString());
    twins.add({0.5F});
    twins.clear();
    QCOMPARE(firstDifference(snapshot(twins.histogram), blank(twins.histogram)), QString());
}

void tst_histogram::paintsNoBarsWithoutSamplesInTheRange()
{
    twins_t twins(QSize(100, 50));
    twins.add({-1.0F, 2.0F, inf, -inf});
    QCOMPARE(firstDifference(snapshot(twins.histogram), blank(twins.histogram)), QString());
}

void tst_histogram::countsSamplesInBins_data()
{
    QTest::addColumn<double>("binSize"); // 0: by number
    QTest::addColumn<unsigned>("bins");
    QTest::addColumn<int>("width"); // 8 columns for each bin
    QTest::addColumn<float>("sample");
    QTest::addColumn<int>("bin"); // -1: not counted

    // Eighths are exact, so that no column reaches into the next bin.
    QTest::newRow("lower end") << 0.0 << 8U << 64 << 0.0F << 0;
    QTest::newRow("middle") << 0.0 << 8U << 64 << 0.5F << 4;
    QTest::newRow("just below a bin") << 0.0 << 8U << 64 << std::nextafter(0.5F, 0.0F) << 3;
    QTest::newRow("upper end") << 0.0 << 8U << 64 << 1.0F << 7;
    QTest::newRow("below") << 0.0 << 8U << 64 << -0.001F << -1;
    QTest::newRow("just below") << 0.0 << 8U << 64 << -1e-45F << -1;
    QTest::newRow("minus zero") << 0.0 << 8U << 64 << -0.0F << 0;
    QTest::newRow("above") << 0.0 << 8U << 64 << 1.001F << -1;
    QTest::newRow("just above") << 0.0 << 8U << 64 << std::nextafter(1.0F, 2.0F) << -1;
    QTest::newRow("NaN") << 0.0 << 8U << 64 << nan_ << 0;
    QTest::newRow("negative NaN") << 0.0 << 8U << 64 << -nan_ << 0;
    QTest::newRow("infinity") << 0.0 << 8U << 64 << inf << -1;
    QTest::newRow("minus infinity") << 0.0 << 8U << 64 << -inf << -1;
    QTest::newRow("one bin") << 0.0 << 1U << 8 << 0.7F << 0;
    // The last bin of 0.375 reaches to 1.125; what is beyond 1.0 has no column.
    QTest::newRow("by size") << 0.375 << 0U << 64 << 0.5F << 1;
    QTest::newRow("by size, last bin") << 0.375 << 0U << 64 << 1.0F << 2;
    QTest::newRow("by size, above") << 0.375 << 0U << 64 << 1.1F << -1;
    QTest::newRow("by size, larger than the range") << 5.0 << 0U << 64 << 0.3F << 0;
}

void tst_histogram::countsSamplesInBins()
{
    QFETCH(double, binSize);
    QFETCH(unsigned, bins);
    QFETCH(int, width);
    QFETCH(float, sample);
    QFETCH(int, bin);
    twins_t twins(QSize(width, 20));
    if (binSize != 0.0)
        twins.binSize(binSize);
    else
        twins.numBins(bins);
    twins.add({sample});
    const double columnsPerBin = binSize != 0.0 ? binSize * width : 8.0;
    const int first = static_cast<int>(bin * columnsPerBin);
    const int end = static_cast<int>(std::min((bin + 1) * columnsPerBin, 1.0 * width));
    QCOMPARE(columnsWithBars(twins.histogram), bin < 0 ? QList<int>() : upwards(first, end - 1));
    QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
}

void tst_histogram::drawsBarsInProportion()
{
    twins_t twins(QSize(4, 41));
    twins.numBins(4);
    twins.add({0.0F, 0.0F, 0.0F, 0.0F, 0.25F, 0.25F, 0.5F});
    // 10 pixels a count above the lowest row; the tallest reaches the top.
    QCOMPARE(heights(snapshot(twins.histogram)), std::vector<int>({41, 21, 11, 0}));
}

void tst_histogram::drawsALowBarForAnyCount()
{
    twins_t twins(QSize(2, 10));
    twins.numBins(2);
    twins.add(std::vector<float>(1000, 0.1F));
    twins.add({0.9F}); // 9 / 1000 of a pixel, and the row at the bottom
    QCOMPARE(heights(snapshot(twins.histogram)), std::vector<int>({10, 1}));
}

// The hundredth as a float is a little less than the column, which then ends in the next bin.
void tst_histogram::letsRoundingAddTheNextBin()
{
    twins_t twins(QSize(100, 50));
    twins.add({0.0F, 0.5F, 1.0F});
    QCOMPARE(columnsWithBars(twins.histogram), QList<int>({0, 49, 50, 98, 99}));
    QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
}

void tst_histogram::showsTheGreatestOfAColumnsBins()
{
    twins_t twins(QSize(2, 31));
    twins.numBins(8);
    twins.add({0.0F, 0.125F, 0.125F, 0.375F, 0.375F, 0.375F, 0.75F, 0.76F});
    QCOMPARE(heights(snapshot(twins.histogram)), std::vector<int>({31, 21}));
}

void tst_histogram::repeatsABinOverItsColumns()
{
    twins_t twins(QSize(8, 11));
    twins.numBins(2);
    twins.add({0.9F});
    QCOMPARE(heights(snapshot(twins.histogram)), std::vector<int>({0, 0, 0, 0, 11, 11, 11, 11}));
}

void tst_histogram::letsBinSizeAndNumBinsReplaceEachOther()
{
    twins_t twins(QSize(8, 11));
    twins.add({0.1F});
    twins.binSize(0.5);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 3));
    twins.numBins(4);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 1));
    twins.binSize(0.25);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 1));
    twins.binSize(2.0);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 7));
    twins.numBins(8);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 0));
}

void tst_histogram::keepsSamplesOverAllSettings()
{
    twins_t twins(QSize(64, 20));
    twins.add({-3.0F, 0.25F, 7.0F});
    twins.numBins(8);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(16, 23));
    twins.range(-4.0F, 4.0F); // a unit a bin
    QCOMPARE(columnsWithBars(twins.histogram), upwards(8, 15) + upwards(32, 39));
    twins.range(0.0F, 8.0F);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(0, 7) + upwards(56, 63));
}

void tst_histogram::addsToWhatIsCounted()
{
    random_t random;
    twins_t twins(QSize(60, 50));
    twins.numBins(30);
    for (int batch = 0; batch < 40; ++batch) {
        std::vector<float> samples;
        for (int i = random.integer(0, 1500); i > 0; --i)
            samples.push_back(static_cast<float>(random.real(-0.1, 1.1)));
        twins.add(samples);
        if (random.chance(0.5))
            QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
        if (random.chance(0.1))
            twins.clear();
    }
    QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
}

void tst_histogram::takesAsManyBinsAsThereCanBe()
{
    twins_t twins(QSize(64, 20));
    twins.add({0.5F, 1.0F});
    twins.histogram.numBins(std::numeric_limits<unsigned>::max()); // 2^24 are used
    QCOMPARE(columnsWithBars(twins.histogram), QList<int>({32, 63}));
    twins.histogram.binSize(1e-30);
    QCOMPARE(columnsWithBars(twins.histogram), QList<int>({32, 63}));
}

void tst_histogram::drawsNothingForASizeThatIsNone_data()
{
    QTest::addColumn<double>("size");

    QTest::newRow("negative") << -0.1;
    QTest::newRow("infinite") << -std::numeric_limits<double>::infinity();
    QTest::newRow("no float") << 1e-60; // not zero, but zero as a float
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN();
}

void tst_histogram::drawsNothingForASizeThatIsNone()
{
    QFETCH(double, size);
    twins_t twins(QSize(64, 20));
    twins.add({0.5F, 0.7F});
    twins.histogram.binSize(size);
    QCOMPARE(columnsWithBars(twins.histogram), QList<int>());
    twins.histogram.numBins(4);
    QCOMPARE(columnsWithBars(twins.histogram), upwards(32, 47));
}

void tst_histogram::highlightsARange()
{
    twins_t twins(QSize(100, 50));
    std::vector<float> even;
    for (int i = 0; i < 100; ++i)
        even.push_back((static_cast<float>(i) + 0.5F) / 100.0F);
    even.push_back(0.005F); // the first bin is the tallest
    twins.add(even);
    twins.highlightRange(0.2F, 0.4F);
    const QImage picture = snapshot(twins.histogram);
    QCOMPARE(columnsTopped(picture, fillColor), upwards(20, 39));
    QList<int> highlighted;
    for (int x = 0; x < 100; ++x) {
        if (picture.pixel(x, 49) == highlightedColor)
            highlighted.append(x);
        else
            QCOMPARE(picture.pixel(x, 49), normalColor);
    }
    // Column 19 ends, and column 40 begins, where the range does.
    QCOMPARE(highlighted, upwards(20, 40));
    QCOMPARE(firstDifference(picture, twins.wanted()), QString());
}

void tst_histogram::highlightsColumns_data()
{
    QTest::addColumn<float>("min");
    QTest::addColumn<float>("max");
    QTest::addColumn<int>("first"); // beyond last: nothing
    QTest::addColumn<int>("last");

    // 64 columns from 0.0 to 1.0.
    QTest::newRow("all") << 0.0F << 1.0F << 0 << 63;
    QTest::newRow("more than all") << -5.0F << 5.0F << 0 << 63;
    QTest::newRow("infinitely more") << -inf << inf << 0 << 63;
    QTest::newRow("as much as floats can") << -largest << largest << 0 << 63;
    QTest::newRow("left half") << 0.0F << 0.5F << 0 << 31;
    QTest::newRow("parts of columns") << 0.26F << 0.51F << 16 << 32;
    QTest::newRow("within a column") << 0.252F << 0.255F << 16 << 16;
    QTest::newRow("a value on an edge") << 0.25F << 0.25F << 16 << 15;
    QTest::newRow("a value in a column") << 0.255F << 0.255F << 16 << 16;
    QTest::newRow("left of all") << -2.0F << -1.0F << 0 << -1;
    QTest::newRow("right of all") << 2.0F << 3.0F << 64 << 63;
    QTest::newRow("reversed") << 0.4F << 0.2F << 1 << 0;
    QTest::newRow("NaN") << nan_ << 0.5F << 1 << 0;
    QTest::newRow("up to NaN") << 0.2F << nan_ << 1 << 0;
}

void tst_histogram::highlightsColumns()
{
    QFETCH(float, min);
    QFETCH(float, max);
    QFETCH(int, first);
    QFETCH(int, last);
    twins_t twins(QSize(64, 20));
    twins.numBins(2);
    twins.add({0.1F, 0.1F, 0.9F}); // one to the top and one to the middle
    twins.range(-0.0F, 1.0F);
    twins.histogram.highlightRange(min, max);
    twins.add({0.9F, 0.9F, 0.9F});
    const QImage picture = snapshot(twins.histogram);
    // The bar of the left half is half as high, so that the fill shows above it.
    QCOMPARE(columnsTopped(picture.copy(0, 0, 32, 20), fillColor),
             first > last ? QList<int>() : upwards(first, std::min(last, 31)));
}

void tst_histogram::removesTheHighlight()
{
    twins_t twins(QSize(64, 20));
    twins.add({0.1F, 0.9F});
    const QImage without = snapshot(twins.histogram);
    QCOMPARE(columnsTopped(without, fillColor), QList<int>());
    twins.highlightRange(0.0F, 1.0F);
    QVERIFY(snapshot(twins.histogram) != without);
    twins.histogram.clearHighlight();
    QCOMPARE(firstDifference(snapshot(twins.histogram), without), QString());
    twins.highlightRange(0.4F, 0.2F); // columns that touch both ends stay normal
    QCOMPARE(firstDifference(snapshot(twins.histogram), without), QString());
}

void tst_histogram::fillsTheHighlightWithoutBars()
{
    twins_t twins(QSize(64, 20));
    twins.add({5.0F});
    twins.highlightRange(0.25F, 0.5F);
    QImage wanted = blank(twins.histogram);
    QPainter(&wanted).fillRect(16, 0, 16, 20, QColor(fillColor));
    QCOMPARE(firstDifference(snapshot(twins.histogram), wanted), QString());
}

void tst_histogram::repaintsForEverySetter_data()
{
    QTest::addColumn<int>("operation");
    const char* const names[] = {"clear",   "addData", "no data",        "range",
                                 "binSize", "numBins", "highlightRange", "clearHighlight"};
    for (int i = 0; i < 8; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_histogram::repaintsForEverySetter()
{
    QFETCH(int, operation);
    histogram_t histogram;
    histogram.resize(64, 60);
    histogram.show();
    QVERIFY(QTest::qWaitForWindowExposed(&histogram, patienceMs()));
    const float sample = 0.5F;
    const std::function<void()> operations[] = {
        [&] { histogram.clear(); },
        [&] { histogram.addData(1, &sample); },
        [&] { histogram.addData(0, nullptr); },
        [&] { histogram.range(0.0F, 2.0F); },
        [&] { histogram.binSize(0.5); },
        [&] { histogram.numBins(7); },
        [&] { histogram.highlightRange(0.0F, 0.5F); },
        [&] { histogram.clearHighlight(); },
    };
    paintLog_t paints(&histogram);
    paints.take();
    for (int i = 0; i < 2; ++i) { // also when it is what it was
        operations[operation]();
        QCOMPARE(paints.take(), QRegion(0, 0, 64, 60));
    }
    QCOMPARE(paints.take(), QRegion());
}

void tst_histogram::repaintsDamagedColumnsOnly()
{
    random_t random;
    twins_t twins(QSize(120, 60));
    std::vector<float> samples;
    for (int i = 0; i < 3000; ++i)
        samples.push_back(static_cast<float>(random.real(0.0, 0.6) + random.real(0.0, 0.4)));
    twins.add(samples);
    twins.highlightRange(0.3F, 0.7F);
    twins.histogram.show();
    QVERIFY(QTest::qWaitForWindowExposed(&twins.histogram, patienceMs()));
    QCOMPARE(firstDifference(shown(twins.histogram), twins.wanted()), QString());
    for (int i = 0; i < 30; ++i) {
        twins.histogram.update(QRect(random.integer(-10, 120), random.integer(-10, 60),
                                     random.integer(1, 60), random.integer(1, 60)));
        twins.histogram.update(QRect(random.integer(-10, 120), 0, 1, 60));
        QCOMPARE(firstDifference(shown(twins.histogram), twins.wanted()), QString());
    }
}

void tst_histogram::letsTheBackgroundShow()
{
    QWidget window;
    window.resize(80, 60);
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, Qt::darkYellow);
    window.setPalette(palette);
    histogram_t histogram(&window);
    histogram.setGeometry(0, 0, 80, 60);
    const float sample = 0.05F;
    histogram.numBins(10);
    histogram.addData(1, &sample);
    QCOMPARE(snapshot(window).pixel(40, 30), QColor(Qt::darkYellow).rgb());
}

void tst_histogram::survivesNoSize()
{
    QWidget window;
    window.resize(100, 100);
    histogram_t histogram(&window);
    const float sample = 0.05F;
    histogram.addData(1, &sample);
    histogram.highlightRange(0.0F, 0.5F);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    for (const QSize size : {QSize(0, 0), QSize(30, 0), QSize(0, 30), QSize(1, 1), QSize(1, 30)}) {
        histogram.resize(size);
        shown(window);
        QImage picture(10, 10, QImage::Format_RGB32);
        histogram.render(&picture);
    }
}

void tst_histogram::survivesExtremeRanges_data()
{
    QTest::addColumn<float>("min");
    QTest::addColumn<float>("max");

    QTest::newRow("NaN") << nan_ << 1.0F;
    QTest::newRow("up to NaN") << 0.0F << nan_;
    QTest::newRow("infinite") << -inf << inf;
    QTest::newRow("infinite span") << -largest << largest;
    QTest::newRow("tiniest") << 0.0F << 1e-45F;
    QTest::newRow("neighbours") << 0.5F << std::nextafter(0.5F, 1.0F);
    QTest::newRow("huge") << -1e38F << 1e38F;
}

void tst_histogram::survivesExtremeRanges()
{
    QFETCH(float, min);
    QFETCH(float, max);
    for (const double size : {0.0, 0.01, 1e-30, 1e30}) {
        twins_t twins(QSize(64, 20));
        twins.add({0.0F, 0.5F, 1.0F, nan_, inf, -inf, largest, -largest});
        twins.highlightRange(0.0F, 1.0F);
        twins.histogram.range(min, max);
        if (size != 0.0)
            twins.histogram.binSize(size);
        snapshot(twins.histogram);
        twins.histogram.range(0.0F, 1.0F);
        twins.histogram.numBins(8);
        twins.histogram.clearHighlight();
        QCOMPARE(columnsWithBars(twins.histogram),
                 upwards(0, 7) + upwards(32, 39) + upwards(56, 63));
    }
}

void tst_histogram::drawsWhatThePlainOneDraws()
{
    random_t random;
    twins_t twins(QSize(100, 60));
    twins.histogram.show();
    QVERIFY(QTest::qWaitForWindowExposed(&twins.histogram, patienceMs()));
    for (int step = 0; step < 300; ++step) {
        const float min = static_cast<float>(random.real(-50.0, 50.0));
        const float span = static_cast<float>(std::pow(10.0, random.real(-2.0, 2.0)));
        if (random.chance(0.3))
            twins.range(min, min + span);
        if (random.chance(0.3))
            twins.numBins(static_cast<unsigned>(random.integer(1, 300)));
        if (random.chance(0.1))
            twins.binSize(std::pow(10.0, random.real(-1.5, 1.0)));
        if (random.chance(0.3))
            twins.clear();
        if (random.chance(0.3)) {
            const QSize size(random.integer(60, 200), random.integer(1, 90));
            twins.histogram.resize(size);
            QTRY_COMPARE(shown(twins.histogram).size(), size);
        }
        std::vector<float> samples;
        for (int i = random.integer(0, 500); i > 0; --i)
            samples.push_back(twins.plain.min + (twins.plain.max - twins.plain.min) *
                                                    static_cast<float>(random.real(-0.1, 1.1)));
        samples.push_back(twins.plain.min);
        samples.push_back(twins.plain.max);
        if (random.chance(0.2))
            samples.push_back(nan_);
        twins.add(samples);
        const auto within = [&] {
            return twins.plain.min +
                   (twins.plain.max - twins.plain.min) * static_cast<float>(random.real(-0.2, 1.2));
        };
        if (random.chance(0.3))
            twins.highlightRange(within(), within());
        QCOMPARE(firstDifference(shown(twins.histogram), twins.wanted()), QString());
    }
}

void tst_histogram::drawsMillionsOfSamples()
{
    random_t random;
    twins_t twins(QSize(200, 100));
    std::vector<float> samples;
    for (int i = 0; i < 1000003; ++i)
        samples.push_back(static_cast<float>(random.real(0.0, 0.5) + random.real(0.0, 0.52)));
    twins.add(samples);
    twins.add(samples);
    for (const unsigned bins : {1U, 7U, 256U, 16383U, 16384U, 100000U}) {
        twins.numBins(bins);
        QCOMPARE(firstDifference(snapshot(twins.histogram), twins.wanted()), QString());
    }
}

// With several device pixels to a pixel the bars are lines as before. Prints the width in device
// pixels, the first difference from the plain one, and the first one that partial painting makes.
static int drawOnDenseDisplay()
{
    random_t random;
    twins_t twins(QSize(100, 60));
    std::vector<float> samples;
    for (int i = 0; i < 2000; ++i)
        samples.push_back(static_cast<float>(random.real(0.0, 0.6) + random.real(0.0, 0.4)));
    twins.add(samples);
    twins.highlightRange(0.3F, 0.7F);
    twins.histogram.show();
    if (!QTest::qWaitForWindowExposed(&twins.histogram, patienceMs()))
        return EXIT_FAILURE;
    const qreal ratio = qApp->devicePixelRatio();
    QImage wanted(twins.histogram.size() * ratio, QImage::Format_RGB32);
    wanted.setDevicePixelRatio(ratio);
    wanted.fill(QColor(background));
    {
        QPainter painter(&wanted);
        twins.plain.paint(painter, twins.histogram.size(), twins.histogram.palette());
    }
    const QImage whole = shown(twins.histogram);
    std::printf("%d: %s\n", wanted.width(), qPrintable(firstDifference(whole, wanted)));
    QString partial;
    for (int i = 0; i < 100 && partial.isEmpty(); ++i) {
        twins.histogram.update(QRect(random.integer(-10, 100), random.integer(-10, 60),
                                     random.integer(1, 40), random.integer(1, 60)));
        if (random.chance(0.3))
            twins.histogram.update(QRect(random.integer(0, 99), 0, 1, 60));
        partial = firstDifference(shown(twins.histogram), whole);
    }
    std::printf("partial: %s\n", qPrintable(partial));
    return EXIT_SUCCESS;
}

void tst_histogram::drawsTheSameOnDenseDisplays_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("1") << 100;
    QTest::newRow("1.25") << 125;
    QTest::newRow("1.5") << 150;
    QTest::newRow("1.75") << 175;
    QTest::newRow("2") << 200;
    QTest::newRow("3") << 300;
}

void tst_histogram::drawsTheSameOnDenseDisplays()
{
    QFETCH(int, width);
    const QString factor = QStringLiteral("QT_SCALE_FACTOR=") + QTest::currentDataTag();
    const childOutcome_t child = runChild("drawOnDenseDisplay", {factor});
    const QStringList said = child.said.filter(QRegularExpression("^(\\d+|partial): "));
    QCOMPARE(said, QStringList({QStringLiteral("%1: ").arg(width), "partial: "}));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, EXIT_SUCCESS);
}

void tst_histogram::endsTheProgramOnMisuse_data()
{
    QTest::addColumn<QString>("message");

    const QString range = "fatal: histogram_t::range:  Range must be positive";
    QTest::newRow("range(1, 1)") << range;
    QTest::newRow("range(2, 1)") << range;
    QTest::newRow("binSize(0)") << "fatal: histogram_t::binSize:  Bin size must be positive";
    QTest::newRow("binSize(-0)") << "fatal: histogram_t::binSize:  Bin size must be positive";
    QTest::newRow("numBins(0)") << "fatal: histogram_t::numBins:  Must have at least one bin";
}

void tst_histogram::endsTheProgramOnMisuse()
{
    QFETCH(QString, message);
    const childOutcome_t child = runChild(QTest::currentDataTag());
    QVERIFY(child.crashed);
    QCOMPARE(child.said, QStringList{message});
}

// Runs \p misuse, which isn't to return.
static std::function<int()> scenario(const std::function<void(histogram_t&)>& misuse)
{
    return [misuse] {
        histogram_t histogram;
        misuse(histogram);
        return EXIT_SUCCESS;
    };
}

int main(int argc, char** argv)
{
    tst_histogram tests;
    return runTestsOrScenario(
        argc, argv, tests,
        {{"range(1, 1)", scenario([](histogram_t& h) { h.range(1.0F, 1.0F); })},
         {"range(2, 1)", scenario([](histogram_t& h) { h.range(2.0F, 1.0F); })},
         {"binSize(0)", scenario([](histogram_t& h) { h.binSize(0.0); })},
         {"binSize(-0)", scenario([](histogram_t& h) { h.binSize(-0.0); })},
         {"numBins(0)", scenario([](histogram_t& h) { h.numBins(0); })},
         {"drawOnDenseDisplay", drawOnDenseDisplay}});
}

#include "tst_histogram.moc"
