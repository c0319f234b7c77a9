#include "alarmLabel.h"
#include "childProcess.h"
#include "pictures.h"
#include "testCase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <type_traits>
#include <vector>
#include <zorbin/timestamp.h>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<alarmLabel_t>::value, "labels aren't copied");

static const char plain[] = "";
static const char redOnBlue[] =
    "border-radius: 3px;color: rgb(255,0,0);background-color: rgb(0,0,255);";

/// Labels that flash during an alarm.
class tst_alarmLabel : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_label.reset(); }

private Q_SLOTS:
    void startsItsClockOnAWholeSecond();
    void makesLaterLabelsWithoutDelay();
    void ticksEvery500Milliseconds();
    void flashesInALaterApplication();

    void startsPlain();
    void hasTheDeclaredSlots();
    void flashesInTheColorsOfTheApplicationAtFirst();
    void keepsTheColorsOfItsConstruction();
    void appliesAndClearsTheFlashByTurns();
    void paintsARoundedBox();
    void ignoresAlpha();
    void showsAnInvalidColorBlack();
    void repaintsNothingForANewColor();
    void clearsTheFlashOnRequest();
    void flashesDuringTheAlarm();
    void startsWithTheNextTick();
    void flashesOnceATick();
    void restoresThePlainLookAfterTheAlarm();
    void keepsItsLookWhenTheAlarmIsOffAlready();
    void clearsTheStyleSheetWithoutAFlash();
    void flashesWithOthersOnTheSameTick();
    void flashesInAPhaseOfItsOwn();
    void takesNewColorsFromTheNextFlashOn();
    void overwritesTheStyleSheet();
    void survivesItsDeletionInAnAlarm();

private:
    std::unique_ptr<alarmLabel_t> m_label;
};

// The start of the clock can be watched only once in a process: see the scenario.
void tst_alarmLabel::startsItsClockOnAWholeSecond()
{
    const childOutcome_t child = runChild(QStringLiteral("first label"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said.size(), 1);
    const QStringList times = child.said.first().split(QLatin1Char(' '));
    QCOMPARE(times.size(), 2);
    const double before = times[0].toDouble();
    const double after = times[1].toDouble();
    const double wholeSecond = std::floor(before) + 1.0;
    QVERIFY2(after >= wholeSecond - 1e-5, qPrintable(child.said.first()));
    QVERIFY2(after < wholeSecond + 1.0, qPrintable(child.said.first())); // not the one after it
}

void tst_alarmLabel::makesLaterLabelsWithoutDelay()
{
    const alarmLabel_t first;
    QElapsedTimer sinceThen;
    sinceThen.start();
    for (int i = 0; i < 5; ++i) // would be more than four seconds
        const alarmLabel_t later;
    QVERIFY(sinceThen.elapsed() < 2000);
}

void tst_alarmLabel::ticksEvery500Milliseconds()
{
    const childOutcome_t child = runChild(QStringLiteral("seven ticks"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said.size(), 1);
    const double duration = child.said.first().toDouble();
    QVERIFY2(duration > 1.9, qPrintable(child.said.first())); // four periods
    QVERIFY2(duration < 2.4, qPrintable(child.said.first()));
}

// In step with the wall clock, as in the first one, but without a wait.
void tst_alarmLabel::flashesInALaterApplication()
{
    const childOutcome_t child = runChild(QStringLiteral("later applications"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said, QStringList());
}

void tst_alarmLabel::setUp()
{
    m_label = std::make_unique<alarmLabel_t>();
    m_label->flashFgColor(Qt::red);
    m_label->flashBgColor(Qt::blue);
}

void tst_alarmLabel::startsPlain()
{
    const alarmLabel_t label(nullptr);
    QCOMPARE(label.indent(), 2);
    QCOMPARE(label.text(), QString());
    QCOMPARE(label.styleSheet(), QString(plain));
    QWidget parent;
    QCOMPARE((new alarmLabel_t(&parent))->parentWidget(), &parent);
}

void tst_alarmLabel::hasTheDeclaredSlots()
{
    const QMetaObject& meta = alarmLabel_t::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 3);
    const QMetaMethod alarm = meta.method(meta.indexOfSlot("alarm(bool)"));
    QCOMPARE(alarm.parameterNames(), QList<QByteArray>{"enable_"});
    QVERIFY(meta.indexOfSlot("flash()") >= 0);
    QVERIFY(meta.indexOfSlot("clearFlash()") >= 0);
}

static QString flashOf(const QColor& fg, const QColor& bg)
{
    return QStringLiteral("border-radius: 3px;color: rgb(%1,%2,%3);"
                          "background-color: rgb(%4,%5,%6);")
        .arg(fg.red())
        .arg(fg.green())
        .arg(fg.blue())
        .arg(bg.red())
        .arg(bg.green())
        .arg(bg.blue());
}

void tst_alarmLabel::flashesInTheColorsOfTheApplicationAtFirst()
{
    QWidget parent; // whose palette doesn't count
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::magenta);
    parent.setPalette(palette);
    alarmLabel_t label(&parent);
    label.flash();
    const QPalette colors = QApplication::palette();
    QCOMPARE(label.styleSheet(),
             flashOf(colors.color(QPalette::HighlightedText), colors.color(QPalette::Highlight)));
}

void tst_alarmLabel::keepsTheColorsOfItsConstruction()
{
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::HighlightedText, QColor(1, 20, 255));
    palette.setColor(QPalette::Highlight, QColor(0, 30, 4));
    QApplication::setPalette(palette);
    alarmLabel_t label;
    QApplication::setPalette(before);
    label.flash();
    QCOMPARE(label.styleSheet(), QStringLiteral("border-radius: 3px;color: rgb(1,20,255);"
                                                "background-color: rgb(0,30,4);"));
}

void tst_alarmLabel::appliesAndClearsTheFlashByTurns()
{
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(plain));
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
}

void tst_alarmLabel::paintsARoundedBox()
{
    QWidget panel;
    panel.resize(40, 20);
    auto* const label = new alarmLabel_t(&panel);
    label->resize(40, 20);
    label->flashFgColor(Qt::red);
    label->flashBgColor(Qt::blue);
    QCOMPARE(firstDifference(snapshot(panel), blank(panel)), QString());
    label->flash();
    const QImage flashed = snapshot(panel);
    QCOMPARE(flashed.pixelColor(20, 10), QColor(Qt::blue));
    QCOMPARE(flashed.pixelColor(20, 0), QColor(Qt::blue));
    QCOMPARE(flashed.pixelColor(0, 10), QColor(Qt::blue));
    QVERIFY(flashed.pixelColor(0, 0).red() > 200); // cut off by the corner, nearly
    label->setText(QStringLiteral("\u2588"));      // a block, which begins at the indent
    QCOMPARE(snapshot(panel).pixelColor(4, 10), QColor(Qt::red));
    label->setText(QString());
    label->flash();
    QCOMPARE(firstDifference(snapshot(panel), blank(panel)), QString());
}

void tst_alarmLabel::ignoresAlpha()
{
    m_label->flashBgColor(QColor(0, 0, 255, 7));
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
}

void tst_alarmLabel::showsAnInvalidColorBlack()
{
    m_label->flashFgColor(QColor());
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QStringLiteral("border-radius: 3px;color: rgb(0,0,0);"
                                                   "background-color: rgb(0,0,255);"));
}

void tst_alarmLabel::repaintsNothingForANewColor()
{
    m_label->flash();
    m_label->flashFgColor(Qt::green);
    m_label->flashBgColor(Qt::green);
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
}

void tst_alarmLabel::clearsTheFlashOnRequest()
{
    m_label->flash();
    m_label->clearFlash();
    QCOMPARE(m_label->styleSheet(), QString(plain));
    m_label->flash(); // the next one is a flash, not a second clearing
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
}

void tst_alarmLabel::flashesDuringTheAlarm()
{
    m_label->alarm(true);
    for (int cycle = 0; cycle < 2; ++cycle) {
        QTRY_COMPARE(m_label->styleSheet(), QString(redOnBlue));
        QTRY_COMPARE(m_label->styleSheet(), QString(plain));
    }
}

void tst_alarmLabel::startsWithTheNextTick()
{
    m_label->alarm(true);
    QCOMPARE(m_label->styleSheet(), QString(plain));
}

// Counts the changes of a label's look.
class styleLog_t : public QObject
{
public:
    explicit styleLog_t(QWidget& widget) { widget.installEventFilter(this); }

    int changes() const { return m_changes; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_changes += event->type() == QEvent::StyleChange ? 1 : 0;
        return false;
    }

private:
    int m_changes = 0;
};

void tst_alarmLabel::flashesOnceATick()
{
    alarmLabel_t once;
    once.alarm(true);
    m_label->alarm(true);
    m_label->alarm(true);
    const styleLog_t onceLog(once);
    const styleLog_t log(*m_label);
    QTRY_VERIFY(onceLog.changes() >= 3);
    QVERIFY(std::abs(log.changes() - onceLog.changes()) <= 1);
    m_label->alarm(false); // ends all of it
    const int changes = log.changes();
    const int ticks = onceLog.changes();
    QTRY_VERIFY(onceLog.changes() >= ticks + 2);
    QCOMPARE(log.changes(), changes);
}

void tst_alarmLabel::restoresThePlainLookAfterTheAlarm()
{
    m_label->alarm(true);
    QTRY_COMPARE(m_label->styleSheet(), QString(redOnBlue));
    m_label->alarm(false);
    QCOMPARE(m_label->styleSheet(), QString(plain));
}

void tst_alarmLabel::keepsItsLookWhenTheAlarmIsOffAlready()
{
    m_label->flash();
    m_label->alarm(false);
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
}

// Deliberate: the end of an alarm takes the application's style sheet along, too.
void tst_alarmLabel::clearsTheStyleSheetWithoutAFlash()
{
    m_label->setStyleSheet(QStringLiteral("color: green;"));
    m_label->alarm(true);
    m_label->alarm(false);
    QCOMPARE(m_label->styleSheet(), QString(plain));
}

void tst_alarmLabel::flashesWithOthersOnTheSameTick()
{
    alarmLabel_t other;
    m_label->alarm(true);
    other.alarm(true);
    for (const bool isFlash : {true, false, true}) {
        QTRY_COMPARE(!m_label->styleSheet().isEmpty(), isFlash);
        QCOMPARE(!other.styleSheet().isEmpty(), isFlash);
    }
}

// Deliberate: labels share the ticks, but each changes its own look on them. A label that joins
// while others show the flash is plain when they flash.
void tst_alarmLabel::flashesInAPhaseOfItsOwn()
{
    m_label->alarm(true);
    QTRY_COMPARE(m_label->styleSheet(), QString(redOnBlue));
    alarmLabel_t late;
    late.alarm(true);
    for (const bool isFlash : {false, true, false}) {
        QTRY_COMPARE(!m_label->styleSheet().isEmpty(), isFlash);
        QCOMPARE(late.styleSheet().isEmpty(), isFlash);
    }
}

void tst_alarmLabel::takesNewColorsFromTheNextFlashOn()
{
    m_label->alarm(true);
    QTRY_COMPARE(m_label->styleSheet(), QString(redOnBlue));
    m_label->flashFgColor(Qt::green);
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
    QTRY_COMPARE(m_label->styleSheet(), QString(plain));
    QTRY_COMPARE(m_label->styleSheet(), flashOf(Qt::green, Qt::blue));
}

void tst_alarmLabel::overwritesTheStyleSheet()
{
    m_label->setStyleSheet(QStringLiteral("color: green;"));
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(redOnBlue));
    m_label->flash();
    QCOMPARE(m_label->styleSheet(), QString(plain));
}

void tst_alarmLabel::survivesItsDeletionInAnAlarm()
{
    std::vector<QPointer<alarmLabel_t>> labels;
    for (int i = 0; i < 3; ++i)
        labels.emplace_back(new alarmLabel_t);
    for (const auto& label : labels)
        label->alarm(true);
    QTRY_VERIFY(!labels[2]->styleSheet().isEmpty());
    delete labels[1];
    QTRY_VERIFY(labels[2]->styleSheet().isEmpty());
    delete labels[0];
    QTRY_VERIFY(!labels[2]->styleSheet().isEmpty());
    delete labels[2];
}

int main(int argc, char* argv[])
{
    childScenarios_t scenarios;
    scenarios.insert("first label", [] {
        // Begins in the middle of a second, where neither a label without a wait nor one that waits
        // for a whole second could end on a whole one by chance.
        const auto fraction = [](double time) { return time - std::floor(time); };
        double before = zorbin::gettimestamp();
        while (fraction(before) < 0.3 || fraction(before) > 0.6)
            before = zorbin::gettimestamp();
        const alarmLabel_t label;
        std::printf("%.6f %.6f\n", before, zorbin::gettimestamp());
        return 0;
    });
    scenarios.insert("seven ticks", [] {
        alarmLabel_t label;
        label.alarm(true);
        const styleLog_t log(label);
        const auto waitFor = [&](int changes) {
            while (log.changes() < changes)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        };
        waitFor(3); // the first ones take longer, above all under memcheck
        const double first = zorbin::gettimestamp();
        waitFor(7);
        std::printf("%.3f\n", zorbin::gettimestamp() - first);
        return 0;
    });
    bareChildScenarios_t bareScenarios;
    bareScenarios.insert("later applications", [](int& count, char** arguments) {
        // How long after a half second of the wall clock it is, or before the next one.
        const auto distance = [](double time) {
            const double phase = std::fmod(time, 0.5);
            return std::min(phase, 0.5 - phase);
        };
        for (int i = 0; i < 10; ++i) {
            while (distance(zorbin::gettimestamp()) < 0.2)
                continue;
            const QApplication application(count, arguments);
            alarmLabel_t label;
            label.alarm(true);
            const styleLog_t log(label);
            const auto waitFor = [&](int changes) {
                return QTest::qWaitFor([&] { return log.changes() >= changes; }, 20000);
            };
            if (!waitFor(1))
                return 1;
            const double time = zorbin::gettimestamp();
            if (!waitFor(2))
                return 1;
            // Ticks may be late for other reasons, but hardly all of them.
            if (i >= 2 && distance(time) < 0.1)
                return 0;
        }
        return 2;
    });
    tst_alarmLabel tests;
    return runTestsOrScenario(argc, argv, tests, scenarios, bareScenarios);
}

#include "tst_alarmLabel.moc"
