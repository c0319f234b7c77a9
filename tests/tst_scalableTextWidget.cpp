#include "messageRecorder.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "scalableTextWidget.h"
#include "testCase.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <memory>
#include <type_traits>
#include <vector>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<scalableTextWidget_t>::value, "widgets aren't copied");

static QSize extentOf(const QString& text, QFont font, int points)
{
    font.setPointSize(points);
    const QFontMetrics metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

static bool isWithin(QSize inner, int width, int height)
{
    return inner.width() <= width && inner.height() <= height;
}

// The size that the rule finds, one size at a time. The font is a widget's: others are for another
// resolution.
static int fittedPoints(const QString& text, const QFont& font, QSize size)
{
    int points = font.pointSize();
    while (isWithin(extentOf(text, font, points), size.width() - 1, size.height() - 1))
        ++points;
    while (points >= 2 && !isWithin(extentOf(text, font, points), size.width(), size.height()))
        --points;
    return points;
}

// A bitmap font of one size, whose only letter, A, is as wide as told. In BDF.
static QByteArray bitmapFont(const QString& family, int height, int width)
{
    const QString head =
        QStringLiteral("STARTFONT 2.1\n"
                       "FONT -test-%1-Medium-R-Normal--%2-%3-75-75-C-80-ISO10646-1\n"
                       "SIZE %2 75 75\n"
                       "FONTBOUNDINGBOX %4 %2 0 0\n"
                       "STARTPROPERTIES 8\n"
                       "FAMILY_NAME \"%1\"\n"
                       "FONT_ASCENT %2\n"
                       "FONT_DESCENT 0\n"
                       "PIXEL_SIZE %2\n"
                       "POINT_SIZE %3\n"
                       "RESOLUTION_Y 75\n"
                       "CHARSET_REGISTRY \"ISO10646\"\n"
                       "CHARSET_ENCODING \"1\"\n"
                       "ENDPROPERTIES\n"
                       "CHARS 1\n"
                       "STARTCHAR A\n"
                       "ENCODING 65\n"
                       "SWIDTH 1000 0\n"
                       "DWIDTH %4 0\n"
                       "BBX %4 %2 0 0\n"
                       "BITMAP\n");
    const QByteArray row = QByteArray((width + 7) / 8 * 2, 'F') + '\n';
    return head.arg(family).arg(height).arg(10 * height).arg(width).toLatin1() +
           row.repeated(height) + "ENDCHAR\nENDFONT\n";
}

// Opens what the resize handler does to the test.
class openWidget_t : public scalableTextWidget_t
{
public:
    using scalableTextWidget_t::resizeEvent;
    using scalableTextWidget_t::scalableTextWidget_t;
};

using setSpacing_t = void (*)(QFont&, int);
Q_DECLARE_METATYPE(setSpacing_t)

/// One line of text as large as the widget allows.
class tst_scalableTextWidget : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_widget.reset(); }

private Q_SLOTS:
    void startsEmpty();
    void leavesTheFontAloneForAnEmptyText();
    void drawsTheTextInTheMiddle();
    void repaintsForTheSameText();
    void growsTheFont();
    void shrinksTheFont();
    void growsAPixelLessThanItShrinks();
    void fitsAgainOnAResize();
    void startsFromTheSizeFoundBefore();
    void keepsTheOtherPropertiesOfTheFont();
    void startsFromAFontGivenInPixels();
    void endsAtASinglePoint_data();
    void endsAtASinglePoint();
    void findsWhatASearchSizeBySizeFinds();
    void fitsTextOfNegativeSpacing_data();
    void fitsTextOfNegativeSpacing();
    void endsInTheGreatestWidget();
    void keepsTheSizeOfABitmapFontOfOneSize();
    void findsWhereABitmapFontJumps_data();
    void findsWhereABitmapFontJumps();
    void fitsAWholeScreen();

private:
    std::unique_ptr<openWidget_t> m_widget;
};

void tst_scalableTextWidget::setUp()
{
    m_widget = std::make_unique<openWidget_t>();
    QFont font = m_widget->font();
    font.setPointSize(9);
    m_widget->setFont(font);
    m_widget->resize(200, 50);
    snapshot(*m_widget); // delivers the resize, which waits for the first showing
}

void tst_scalableTextWidget::startsEmpty()
{
    QCOMPARE(m_widget->font().pointSize(), 9);
    QCOMPARE(firstDifference(snapshot(*m_widget), blank(*m_widget)), QString());
    QWidget parent;
    QCOMPARE((new scalableTextWidget_t(&parent))->parentWidget(), &parent);
}

void tst_scalableTextWidget::leavesTheFontAloneForAnEmptyText()
{
    m_widget->setText(QStringLiteral("0"));
    const QFont fitted = m_widget->font();
    m_widget->setText(QLatin1String(""));
    QCOMPARE(m_widget->font(), fitted);
    m_widget->resize(20, 20);
    m_widget->resizeEvent(nullptr);
    QCOMPARE(m_widget->font(), fitted);
    QCOMPARE(firstDifference(snapshot(*m_widget), blank(*m_widget)), QString());
}

void tst_scalableTextWidget::drawsTheTextInTheMiddle()
{
    m_widget->setText(QStringLiteral("12.5 m"));
    QImage wanted = blank(*m_widget);
    wanted.setDotsPerMeterX(qRound(m_widget->logicalDpiX() / 0.0254));
    wanted.setDotsPerMeterY(qRound(m_widget->logicalDpiY() / 0.0254));
    {
        QPainter painter(&wanted);
        painter.setFont(m_widget->font());
        painter.setPen(m_widget->palette().color(QPalette::WindowText));
        painter.drawText(QRect(0, 0, 200, 50), Qt::AlignCenter, QStringLiteral("12.5 m"));
    }
    QVERIFY(!firstDifference(blank(*m_widget), wanted).isEmpty());
    QCOMPARE(firstDifference(snapshot(*m_widget), wanted), QString());
}

void tst_scalableTextWidget::repaintsForTheSameText()
{
    class paintCounter_t : public QObject
    {
    public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } paints;
    m_widget->setText(QStringLiteral("0"));
    m_widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_widget.get(), patienceMs()));
    QCoreApplication::processEvents();
    m_widget->installEventFilter(&paints);
    m_widget->setText(QStringLiteral("0"));
    QTRY_VERIFY(paints.count > 0);
}

void tst_scalableTextWidget::growsTheFont()
{
    const QFont before = m_widget->font();
    m_widget->setText(QStringLiteral("0"));
    const int points = m_widget->font().pointSize();
    QVERIFY(points > 9);
    QCOMPARE(points, fittedPoints(QStringLiteral("0"), before, QSize(200, 50)));
    QVERIFY(extentOf(QStringLiteral("0"), m_widget->font(), points).height() <= 50);
    QVERIFY(extentOf(QStringLiteral("0"), m_widget->font(), points + 1).height() > 49);
}

void tst_scalableTextWidget::shrinksTheFont()
{
    QFont large = m_widget->font();
    large.setPointSize(80);
    m_widget->setFont(large);
    m_widget->setText(QStringLiteral("a longer text"));
    const int points = m_widget->font().pointSize();
    QVERIFY(points < 80);
    QVERIFY(isWithin(extentOf(QStringLiteral("a longer text"), large, points), 200, 50));
    QVERIFY(!isWithin(extentOf(QStringLiteral("a longer text"), large, points + 1), 200, 50));
}

// Deliberate: a size that just fills the widget is kept when it was there before, or when growing
// went beyond it, but a smaller one isn't given up for it where it leaves a pixel of room.
void tst_scalableTextWidget::growsAPixelLessThanItShrinks()
{
    const QString text = QStringLiteral("0");
    const QFont font = m_widget->font(); // 9 points
    int points = 20; // of which the next size is higher, which not every size's is
    while (extentOf(text, font, points + 1).height() == extentOf(text, font, points).height())
        ++points;
    const int height = extentOf(text, font, points).height();

    m_widget->resize(500, height); // those points fill it; found by passing over it and coming back
    m_widget->setText(text);
    QCOMPARE(extentOf(text, font, m_widget->font().pointSize()).height(), height);

    QFont present = font;
    present.setPointSize(points);
    m_widget->setFont(present); // doesn't grow: it leaves no pixel of room
    m_widget->setText(text);
    QCOMPARE(m_widget->font().pointSize(), points);

    m_widget->setFont(present); // grows once more, and stays if that is no more than filled
    m_widget->resize(500, height + 1);
    m_widget->setText(text);
    QCOMPARE(m_widget->font().pointSize(), fittedPoints(text, present, QSize(500, height + 1)));
}

void tst_scalableTextWidget::fitsAgainOnAResize()
{
    const QString text = QStringLiteral("0");
    m_widget->setText(text);
    m_widget->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_widget.get(), patienceMs()));
    QFont before = m_widget->font();
    m_widget->resize(300, 100);
    QCOMPARE(m_widget->font().pointSize(), fittedPoints(text, before, QSize(300, 100)));
    before = m_widget->font();
    m_widget->resize(300, 30);
    QCOMPARE(m_widget->font().pointSize(), fittedPoints(text, before, QSize(300, 30)));
}

void tst_scalableTextWidget::startsFromTheSizeFoundBefore()
{
    const QString text = QStringLiteral("0");
    m_widget->setText(text);
    const int first = m_widget->font().pointSize();
    QVERIFY(first > 9);
    m_widget->setText(QStringLiteral("a text that is longer than the widget is at this size"));
    QVERIFY(m_widget->font().pointSize() < first);
    m_widget->setText(text);
    QCOMPARE(m_widget->font().pointSize(), first);
}

void tst_scalableTextWidget::keepsTheOtherPropertiesOfTheFont()
{
    QFont font(QStringLiteral("DejaVu Serif"), 9, QFont::Bold, true);
    m_widget->setFont(font);
    m_widget->setText(QStringLiteral("0"));
    font.setPointSize(m_widget->font().pointSize());
    QCOMPARE(m_widget->font().toString(), font.toString());
}

void tst_scalableTextWidget::startsFromAFontGivenInPixels()
{
    const messageRecorder_t messages;
    QFont font = m_widget->font();
    font.setPixelSize(12);
    m_widget->setFont(font);
    QCOMPARE(m_widget->font().pointSize(), -1);
    m_widget->setText(QStringLiteral("0"));
    QFont inPoints = m_widget->font();
    inPoints.setPointSize(QFontInfo(font).pointSize());
    QCOMPARE(m_widget->font().pointSize(),
             fittedPoints(QStringLiteral("0"), inPoints, QSize(200, 50)));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_scalableTextWidget::endsAtASinglePoint_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("text");
    QTest::newRow("no size") << QSize(0, 0) << QStringLiteral("0");
    QTest::newRow("a single pixel") << QSize(1, 1) << QStringLiteral("0");
    QTest::newRow("no height") << QSize(100, 0) << QStringLiteral("0");
    QTest::newRow("no width") << QSize(0, 100) << QStringLiteral("0");
    QTest::newRow("a long text") << QSize(30, 30) << QString(10000, u'm');
}

void tst_scalableTextWidget::endsAtASinglePoint()
{
    QFETCH(QSize, size);
    QFETCH(QString, text);
    const messageRecorder_t messages;
    m_widget->resize(size);
    m_widget->setText(text);
    QCOMPARE(m_widget->font().pointSize(), 1);
    m_widget->setText(text);
    QCOMPARE(m_widget->font().pointSize(), 1);
    QCOMPARE(messages.texts(), QStringList());
}

void tst_scalableTextWidget::findsWhatASearchSizeBySizeFinds()
{
    random_t random;
    const std::vector<QString> families = {QStringLiteral("DejaVu Sans"),
                                           QStringLiteral("DejaVu Serif"),
                                           QStringLiteral("DejaVu Sans Mono")};
    const QString alphabet = QStringLiteral("0123456789.,:-+ °mMWiljfT\u00c4\u4e00\u2588");
    for (int round = 0; round < 60; ++round) {
        QString text;
        for (int length = random.integer(1, 30); length > 0; --length)
            text += alphabet[random.integer(0, static_cast<int>(alphabet.size()) - 1)];
        QFont font(random.oneOf(families), random.integer(1, 60));
        font.setBold(random.chance(0.3));
        font.setItalic(random.chance(0.3));
        if (random.chance(0.3))
            font.setLetterSpacing(QFont::AbsoluteSpacing, random.real(-10.0, 5.0));
        else if (random.chance(0.3))
            font.setLetterSpacing(QFont::PercentageSpacing, random.real(-100.0, 200.0));
        if (random.chance(0.3))
            font.setWordSpacing(random.real(-30.0, 10.0));
        m_widget->setFont(font);
        m_widget->resize(random.integer(1, 400), random.integer(1, 120));
        const int wanted = fittedPoints(text, m_widget->font(), m_widget->size());
        m_widget->setText(text);
        QVERIFY2(m_widget->font().pointSize() == wanted,
                 qPrintable(QStringLiteral("%1 instead of %2 points for '%3' in %4 x %5, %6")
                                .arg(m_widget->font().pointSize())
                                .arg(wanted)
                                .arg(text)
                                .arg(m_widget->width())
                                .arg(m_widget->height())
                                .arg(font.toString())));
    }
}

void tst_scalableTextWidget::fitsTextOfNegativeSpacing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<setSpacing_t>("setSpacing");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    const auto row = [](const char* name, const char* text, int first, int last,
                        setSpacing_t setSpacing) {
        QTest::newRow(name) << QString(text) << setSpacing << first << last;
    };
    // Somewhere among the spacings the text has no width, or what a search adds to it is taken up.
    row("of letters, in pixels", "iiii", -25, -1,
        [](QFont& font, int spacing) { font.setLetterSpacing(QFont::AbsoluteSpacing, spacing); });
    row("of letters, in percent", "iiii", -100, -1,
        [](QFont& font, int spacing) { font.setLetterSpacing(QFont::PercentageSpacing, spacing); });
    row("of words", "i i i", -50, -1,
        [](QFont& font, int spacing) { font.setWordSpacing(spacing); });
    row("of both, by more than a screen", "12.5 m", -10000, -10000, [](QFont& font, int spacing) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
        font.setWordSpacing(spacing);
    });
}

void tst_scalableTextWidget::fitsTextOfNegativeSpacing()
{
    QFETCH(QString, text);
    QFETCH(setSpacing_t, setSpacing);
    QFETCH(int, first);
    QFETCH(int, last);
    for (int spacing = first; spacing <= last; ++spacing) {
        for (const int width : {200, 3}) {
            QFont font(QStringLiteral("DejaVu Sans"), 10);
            setSpacing(font, spacing);
            m_widget->setFont(font);
            m_widget->resize(width, 60);
            const int wanted = fittedPoints(text, m_widget->font(), m_widget->size());
            m_widget->setText(text);
            QVERIFY2(m_widget->font().pointSize() == wanted,
                     qPrintable(QStringLiteral("%1 instead of %2 points, %3 wide, spacing %4")
                                    .arg(m_widget->font().pointSize())
                                    .arg(wanted)
                                    .arg(width)
                                    .arg(spacing)));
        }
    }
}

void tst_scalableTextWidget::keepsTheSizeOfABitmapFontOfOneSize()
{
    QVERIFY(QFontDatabase::addApplicationFontFromData(
                bitmapFont(QStringLiteral("One size"), 12, 8)) != -1);
    m_widget->setFont(QFont(QStringLiteral("One size"), 9));
    QCOMPARE(extentOf(QStringLiteral("AAAA"), m_widget->font(), 9), QSize(32, 12));
    QCOMPARE(extentOf(QStringLiteral("AAAA"), m_widget->font(), 90), QSize(32, 12));
    m_widget->setText(QStringLiteral("AAAA"));
    QCOMPARE(m_widget->font().pointSize(), 9);
}

void tst_scalableTextWidget::findsWhereABitmapFontJumps_data()
{
    QTest::addColumn<int>("points"); // at first
    QTest::newRow("growing") << 9;
    QTest::newRow("shrinking") << 100;
}

void tst_scalableTextWidget::findsWhereABitmapFontJumps()
{
    QFETCH(int, points);
    for (const QSize size : {QSize(2, 8), QSize(100, 48)})
        QVERIFY(QFontDatabase::addApplicationFontFromData(
                    bitmapFont(QStringLiteral("Two sizes"), size.height(), size.width())) != -1);
    m_widget->setFont(QFont(QStringLiteral("Two sizes"), points));
    const QFont font = m_widget->font();
    const QString text = QStringLiteral("AAAA");
    QCOMPARE(extentOf(text, font, 9), QSize(8, 8));
    QCOMPARE(extentOf(text, font, 100), QSize(400, 48));
    m_widget->resize(300, 200);
    m_widget->resizeEvent(nullptr);
    m_widget->setText(text);
    const int wanted = fittedPoints(text, font, QSize(300, 200));
    QVERIFY(wanted > 9 && wanted < 100);
    QCOMPARE(m_widget->font().pointSize(), wanted);
}

void tst_scalableTextWidget::endsInTheGreatestWidget()
{
    const messageRecorder_t messages;
    const QFont before = m_widget->font();
    m_widget->resize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    m_widget->setText(QStringLiteral("12.5 m"));
    QCOMPARE(m_widget->font().pointSize(), 4000);
    m_widget->resize(100, 30);
    m_widget->setText(QStringLiteral("12.5 m"));
    QCOMPARE(m_widget->font().pointSize(),
             fittedPoints(QStringLiteral("12.5 m"), before, QSize(100, 30)));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_scalableTextWidget::fitsAWholeScreen()
{
    const QFont before = m_widget->font();
    m_widget->resize(1920, 1080);
    m_widget->setText(QStringLiteral("0"));
    QVERIFY(m_widget->font().pointSize() > 500);
    QCOMPARE(m_widget->font().pointSize(),
             fittedPoints(QStringLiteral("0"), before, QSize(1920, 1080)));
}

ZORBIN_TEST_MAIN(tst_scalableTextWidget, QApplication)
#include "tst_scalableTextWidget.moc"
