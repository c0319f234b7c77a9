#include "notices.h"
#include "recordingLoader.h"
#include "testCase.h"
#include "testConsole.h"
#include "testFiles.h"

#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTestEventLoop>
#include <memory>

using namespace survey_console;

namespace {

constexpr int longCount = 300000; // lines

// Lines of headings, ten a second.
QByteArray headings(int count)
{
    QByteArray lines;
    for (int second = 0; second * 10 < count; ++second) {
        const QByteArray time = QStringLiteral("2014-08-01T%1:%2:%3.")
                                    .arg(second / 3600, 2, 10, QLatin1Char('0'))
                                    .arg(second / 60 % 60, 2, 10, QLatin1Char('0'))
                                    .arg(second % 60, 2, 10, QLatin1Char('0'))
                                    .toLatin1();
        for (int tenth = 0; tenth < 10; ++tenth)
            lines += time + QByteArray::number(tenth) + "00000Z $HEHDT,218.53,T*12\n";
    }
    return lines;
}

// Lengthens a file by zeros, which take no room on the disk, or cuts it off.
bool resizeFile(const QString& path, qint64 size)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.resize(size);
}

// A loader and what it has read.
struct reading_t
{
    recordingLoader_t loader;
    std::shared_ptr<readResult_t> result; // null until it is finished

    explicit reading_t(const QString& path) : loader(path)
    {
        QObject::connect(&loader, &recordingLoader_t::finished, &m_loop,
                         [this](const std::shared_ptr<readResult_t>& line) {
                             result = line;
                             m_loop.exitLoop();
                         });
    }
    // Waits for the end of the reading.
    bool finishes()
    {
        m_loop.enterLoopMSecs(60000 * patience());
        return result != nullptr;
    }

private:
    QTestEventLoop m_loop;
};

// The console as it is while it waits for a recording to be chosen.
struct waitingConsole_t : console_t
{
    waitingConsole_t() { window.restore(consoleState_t()); }
    QWidget* prompt(const char* name) { return find<QWidget>(name); }
};

} // namespace

class tst_recordingLoader : public testCase_t
{
    Q_OBJECT
private:
    QTemporaryDir m_directory;
    QString m_endless; // path of a recording that nobody reads to its end

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

void tst_recordingLoader::initTestCase()
{
    m_endless = m_directory.filePath("endless.log");
    QVERIFY(writeFile(m_endless, headings(100)));
    QVERIFY(resizeFile(m_endless, qint64(1) << 40)); // 1 TiB
}

void tst_recordingLoader::readsAShortOneAtOnce()
{
    const QString path = m_directory.filePath("short.log");
    QVERIFY(writeFile(path, "2014-08-01T00:00:00.183000Z $HEHDT,218.53,T*12\n"));
    reading_t reading(path);
    const QSignalSpy progress(&reading.loader, &recordingLoader_t::progressed);
    reading.loader.start();
    QVERIFY(reading.result);
    QCOMPARE(reading.result->error, QString());
    QCOMPARE(reading.result->counts.used, 1);
    QCOMPARE(progress.count(), 0);
}

void tst_recordingLoader::saysAtOnceWhatCannotBeRead()
{
    reading_t reading(QStringLiteral("/nowhere/line.log"));
    reading.loader.start();
    QVERIFY(reading.result);
    QCOMPARE(reading.result->error,
             QStringLiteral("cannot open '/nowhere/line.log': No such file or directory"));
}

void tst_recordingLoader::readsALongOneInSlices()
{
    const QString path = m_directory.filePath("long.log");
    QVERIFY(writeFile(path, headings(longCount)));
    reading_t reading(path);
    const QSignalSpy progress(&reading.loader, &recordingLoader_t::progressed);
    reading.loader.start();
    QVERIFY(!reading.result);
    QVERIFY(reading.finishes());
    QVERIFY2(progress.count() > 5, qPrintable(QString::number(progress.count())));
    double last = 0.0;
    for (const QList<QVariant>& arguments : progress) {
        const double share = arguments.front().toDouble();
        QVERIFY2(share > last && share < 1.0, qPrintable(QString::number(share)));
        last = share;
    }
    const readResult_t& result = *reading.result;
    QCOMPARE(result.counts.lines, longCount);
    QCOMPARE(result.counts.used, longCount);
    QCOMPARE(result.recording.channel(CHANNEL_GYRO_HEADING).samples.size(), std::size_t(longCount));
    QCOMPARE(result.recording.endTime(), lineStart + 29999.9);
}

void tst_recordingLoader::readsALineWithoutEndInSlices()
{
    const QString path = m_directory.filePath("zeros.log");
    QVERIFY(writeFile(path, QByteArray()));
    QVERIFY(resizeFile(path, qint64(100) << 20)); // 100 MiB
    reading_t reading(path);
    reading.loader.start();
    QVERIFY(!reading.result);
    QVERIFY(reading.finishes());
    QCOMPARE(reading.result->counts.lines, 1);
    QCOMPARE(reading.result->counts.bad, 1);
}

// No machine reads the file to its end before it is cut off.
void tst_recordingLoader::windowStaysAliveAndAsksAtTheEnd()
{
    const QString path = m_directory.filePath("cut off.log");
    const QByteArray lines = headings(100);
    QVERIFY(writeFile(path, lines));
    QVERIFY(resizeFile(path, qint64(8) << 30)); // 8 GiB, of which a hundredth is soon read
    waitingConsole_t console;
    QVERIFY(console.show());
    console.window.openRecording(path);
    QVERIFY(console.prompt("loadingPrompt"));
    auto* bar = console.find<QProgressBar>("loadingBar");
    QTRY_VERIFY(bar->isVisible() && bar->value() > 0);
    QTest::keyClick(&console.window, Qt::Key_Space); // which is nothing to the reading
    QVERIFY(console.window.clock()->isRunning());
    QVERIFY(!console.prompt("openPrompt"));
    QVERIFY(console.prompt("loadingPrompt"));
    QVERIFY(resizeFile(path, lines.size()));
    QTRY_VERIFY(console.prompt("openPrompt"));
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
}

void tst_recordingLoader::windowCancelsByTheButton()
{
    waitingConsole_t console;
    QVERIFY(console.show());
    console.window.openRecording(m_endless);
    auto* button = console.find<QPushButton>("cancelButton");
    QTRY_VERIFY(isInSight(button));
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    QVERIFY(!console.window.findChild<recordingLoader_t*>());
    QVERIFY(!console.prompt("openPrompt"));
    QCOMPARE(console.window.notices()->texts(), QStringList());
}

void tst_recordingLoader::windowCancelsByEscape()
{
    waitingConsole_t console;
    QVERIFY(console.show());
    console.window.openRecording(m_endless);
    QVERIFY(console.prompt("loadingPrompt"));
    QTest::keyClick(&console.window, Qt::Key_Escape);
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    QVERIFY(!console.window.findChild<recordingLoader_t*>());
}

void tst_recordingLoader::windowReadsAnotherInstead()
{
    waitingConsole_t console;
    QVERIFY(console.show());
    QString chosen;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path) { chosen = path; });
    console.window.openRecording(m_endless);
    console.window.openRecording(boatLog);
    QTRY_VERIFY(console.prompt("openPrompt"));
    QTRY_VERIFY(!console.prompt("loadingPrompt"));
    auto* button = console.find<QPushButton>("replayButton");
    QTRY_VERIFY(isInSight(button));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(chosen, boatLog);
}

ZORBIN_TEST_MAIN(tst_recordingLoader, QApplication)
#include "tst_recordingLoader.moc"
