#include "mainWindow.h"
#include "notices.h"
#include "recordingLoader.h"
#include "testCase.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace survey_console;

namespace {

const char SHORT[] = EXAMPLE_DATA "/plaka-sailing/plaka-10min.log";
const int LONG_COUNT = 300000; // lines

readResult_t testLine()
{
    readResult_t line;
    for (int second = 0; second <= 60; ++second)
        line.recording.add(CHANNEL_DEPTH, "SDDPT", {double(second), 10.0});
    return line;
}

struct console_t
{
    mainWindow_t window{"test line", testLine(), [] { return 0.0; }};

    console_t()
    {
        window.restore(consoleState_t());
        window.show();
        window.activateWindow();
    }
    QWidget* prompt(const char* name) { return window.findChild<QWidget*>(name); }
};

} // namespace

class tst_recordingLoader : public testCase_t
{
    Q_OBJECT
private:
    QTemporaryDir m_directory;
    QString m_long; // path of a recording that takes a while

private Q_SLOTS:
    void initTestCase();
    void readsAShortOneAtOnce();
    void saysAtOnceWhatCannotBeRead();
    void readsALongOneInSlices();
    void readsALineWithoutEndInSlices();
    void windowStaysAliveAndAsksAtTheEnd();
    void windowCancelsByTheButton();
    void windowCancelsByEscape();
    void windowReadsAnotherInstead();
};

// Headings, ten a second.
void tst_recordingLoader::initTestCase()
{
    m_long = m_directory.filePath("long.log");
    QFile file(m_long);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray sentence = " $HEHDT,218.53,T*12\n";
    for (int line = 0; line < LONG_COUNT; ++line) {
        const int seconds = line / 10;
        file.write(QStringLiteral("2014-08-01T%1:%2:%3.%4")
                       .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
                       .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
                       .arg(seconds % 60, 2, 10, QLatin1Char('0'))
                       .arg(line % 10)
                       .toLatin1() +
                   "00000Z" + sentence);
    }
}

void tst_recordingLoader::readsAShortOneAtOnce()
{
    const QString path = m_directory.filePath("short.log");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("2014-08-01T00:00:00.183000Z $HEHDT,218.53,T*12\n");
    file.close();
    recordingLoader_t loader(path);
    std::shared_ptr<readResult_t> result;
    connect(&loader, &recordingLoader_t::finished, this,
            [&](const std::shared_ptr<readResult_t>& line) { result = line; });
    const QSignalSpy progress(&loader, &recordingLoader_t::progressed);
    loader.start();
    QVERIFY(result);
    QCOMPARE(result->error, QString());
    QCOMPARE(result->counts.used, 1);
    QCOMPARE(progress.count(), 0);
}

void tst_recordingLoader::saysAtOnceWhatCannotBeRead()
{
    recordingLoader_t loader(QStringLiteral("/nowhere/line.log"));
    QString error;
    connect(&loader, &recordingLoader_t::finished, this,
            [&](const std::shared_ptr<readResult_t>& line) { error = line->error; });
    loader.start();
    QCOMPARE(error, QStringLiteral("cannot open '/nowhere/line.log': No such file or directory"));
}

void tst_recordingLoader::readsALongOneInSlices()
{
    recordingLoader_t loader(m_long);
    std::shared_ptr<readResult_t> result;
    connect(&loader, &recordingLoader_t::finished, this,
            [&](const std::shared_ptr<readResult_t>& line) { result = line; });
    QSignalSpy progress(&loader, &recordingLoader_t::progressed);
    loader.start();
    QVERIFY(!result);
    QTRY_VERIFY_WITH_TIMEOUT(result, 60000);
    QVERIFY2(progress.count() > 5, qPrintable(QString::number(progress.count())));
    double last = 0.0;
    for (const QList<QVariant>& arguments : progress) {
        const double share = arguments.front().toDouble();
        QVERIFY2(share > last && share < 1.0, qPrintable(QString::number(share)));
        last = share;
    }
    const readResult_t whole = readRecording(m_long);
    QCOMPARE(result->counts.lines, LONG_COUNT);
    QCOMPARE(result->counts.used, whole.counts.used);
    QCOMPARE(result->recording.channel(CHANNEL_GYRO_HEADING).samples.size(),
             whole.recording.channel(CHANNEL_GYRO_HEADING).samples.size());
    QCOMPARE(result->recording.endTime(), whole.recording.endTime());
}

void tst_recordingLoader::readsALineWithoutEndInSlices()
{
    const QString path = m_directory.filePath("zeros.log");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(qint64(100) * 1024 * 1024)); // takes no room on the disk
    file.close();
    recordingLoader_t loader(path);
    std::shared_ptr<readResult_t> result;
    connect(&loader, &recordingLoader_t::finished, this,
            [&](const std::shared_ptr<readResult_t>& line) { result = line; });
    loader.start();
    QVERIFY(!result);
    QTRY_VERIFY_WITH_TIMEOUT(result, 60000);
    QCOMPARE(result->counts.lines, 1);
    QCOMPARE(result->counts.bad, 1);
}

void tst_recordingLoader::windowStaysAliveAndAsksAtTheEnd()
{
    console_t console;
    QVERIFY(QTest::qWaitForWindowActive(&console.window, patienceMs()));
    console.window.openRecording(m_long);
    QVERIFY(console.prompt("loadingPrompt"));
    auto* bar = console.window.findChild<QProgressBar*>("loadingBar");
    QTRY_VERIFY(bar->isVisible() && bar->value() > 0);
    QTest::keyClick(&console.window, Qt::Key_Space); // meanwhile
    QVERIFY(console.window.clock()->isRunning());
    QVERIFY(!console.prompt("openPrompt"));
    QTRY_VERIFY_WITH_TIMEOUT(console.prompt("openPrompt"), 60000);
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
}

void tst_recordingLoader::windowCancelsByTheButton()
{
    console_t console;
    QVERIFY(QTest::qWaitForWindowActive(&console.window, patienceMs()));
    console.window.openRecording(m_long);
    auto* button = console.window.findChild<QPushButton*>("cancelButton");
    QTRY_VERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    QVERIFY(!console.window.findChild<recordingLoader_t*>());
    QVERIFY(!console.prompt("openPrompt"));
    QCOMPARE(console.window.notices()->texts(), QStringList());
}

void tst_recordingLoader::windowCancelsByEscape()
{
    console_t console;
    QVERIFY(QTest::qWaitForWindowActive(&console.window, patienceMs()));
    console.window.openRecording(m_long);
    QVERIFY(console.prompt("loadingPrompt"));
    QTest::keyClick(&console.window, Qt::Key_Escape);
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    QVERIFY(!console.window.findChild<recordingLoader_t*>());
}

void tst_recordingLoader::windowReadsAnotherInstead()
{
    console_t console;
    QVERIFY(QTest::qWaitForWindowActive(&console.window, patienceMs()));
    QString chosen;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path) { chosen = path; });
    console.window.openRecording(m_long);
    console.window.openRecording(SHORT);
    QTRY_VERIFY(console.prompt("openPrompt"));
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    auto* button = console.window.findChild<QPushButton*>("replayButton");
    QTRY_VERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(chosen, QString(SHORT));
}

ZORBIN_TEST_MAIN(tst_recordingLoader, QApplication)
#include "tst_recordingLoader.moc"
