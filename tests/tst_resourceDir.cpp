#include "testCase.h"

#include <zorbin-qt/resourceDir.h>

#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

/// Where libzorbin-qt looks for installed resources.
class tst_resourceDir : public testCase_t
{
    Q_OBJECT

protected:
    void tearDown() override;

private Q_SLOTS:
    void isTheDefaultWithoutOverride_data();
    void isTheDefaultWithoutOverride();
    void isTheDirectoryNamedByTheEnvironment();
    void keepsTheSpellingOfTheOverride();
    void keepsBytesThatAreNoUtf8();
    void ignoresAnEmptyOverride();
    void ignoresAnOverrideThatIsNoDirectory();
    void readsTheEnvironmentAtEachCall();
};

static const char variable[] = "ZORBIN_QT_RESOURCE_DIR";
static const std::string fallback = "/usr/share/Zorbin-qt";

void tst_resourceDir::tearDown()
{
    qunsetenv(variable);
}

void tst_resourceDir::isTheDefaultWithoutOverride_data()
{
    QTest::addColumn<QByteArray>("defaultDir");

    QTest::newRow("absolute") << QByteArray("/usr/share/Zorbin-qt");
    QTest::newRow("relative") << QByteArray("../share");
    QTest::newRow("trailing slash") << QByteArray("/usr/share/");
    QTest::newRow("missing") << QByteArray("/no/such/directory");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no UTF-8") << QByteArray("/tmp/\xe9t\xe9");
}

void tst_resourceDir::isTheDefaultWithoutOverride()
{
    QFETCH(QByteArray, defaultDir);
    QCOMPARE(QByteArray::fromStdString(zorbin_qt::resourceDir(defaultDir.toStdString())),
             defaultDir);
}

void tst_resourceDir::isTheDirectoryNamedByTheEnvironment()
{
    const QTemporaryDir directory;
    qputenv(variable, QFile::encodeName(directory.path()));
    QCOMPARE(zorbin_qt::resourceDir(fallback), directory.path().toStdString());
}

void tst_resourceDir::keepsTheSpellingOfTheOverride()
{
    qputenv(variable, "/usr/./share//");
    QCOMPARE(zorbin_qt::resourceDir(fallback), std::string("/usr/./share//"));
    qputenv(variable, ".");
    QCOMPARE(zorbin_qt::resourceDir(fallback), std::string("."));
}

void tst_resourceDir::keepsBytesThatAreNoUtf8()
{
    const QTemporaryDir directory;
    const QByteArray path = QFile::encodeName(directory.path()) + "/\xe9t\xe9";
    QCOMPARE(mkdir(path.constData(), 0700), 0);
    qputenv(variable, path);
    const std::string found = zorbin_qt::resourceDir(fallback);
    QCOMPARE(rmdir(path.constData()), 0); // QTemporaryDir can't name it
    QCOMPARE(QByteArray::fromStdString(found), path);
}

void tst_resourceDir::ignoresAnEmptyOverride()
{
    qputenv(variable, "");
    QCOMPARE(zorbin_qt::resourceDir(fallback), fallback);
}

void tst_resourceDir::ignoresAnOverrideThatIsNoDirectory()
{
    const QTemporaryDir directory;
    qputenv(variable, QFile::encodeName(directory.filePath("missing")));
    QCOMPARE(zorbin_qt::resourceDir(fallback), fallback);

    QFile file(directory.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv(variable, QFile::encodeName(file.fileName()));
    QCOMPARE(zorbin_qt::resourceDir(fallback), fallback);
}

void tst_resourceDir::readsTheEnvironmentAtEachCall()
{
    qputenv(variable, "/usr");
    QCOMPARE(zorbin_qt::resourceDir(fallback), std::string("/usr"));
    qputenv(variable, "/tmp");
    QCOMPARE(zorbin_qt::resourceDir(fallback), std::string("/tmp"));
    qunsetenv(variable);
    QCOMPARE(zorbin_qt::resourceDir(fallback), fallback);
}

ZORBIN_TEST_MAIN(tst_resourceDir, QCoreApplication)
#include "tst_resourceDir.moc"
