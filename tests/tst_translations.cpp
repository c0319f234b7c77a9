#include "multiPathSelectDialog.h"
#include "testCase.h"

#include "ui_multiPathSelectDialog.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <zorbin-qt/resourceDir.h>

using namespace zorbin_qt_gui;

// Translations as an application loads them: those of the build tree, unless the environment names
// the resource directory of an installed one.
static QString translationsDir()
{
    return QString::fromStdString(zorbin_qt::resourceDir(BUILT_RESOURCE_DIR)) +
           QStringLiteral("/translations");
}

static bool load(QTranslator* translator, const QString& locale)
{
    return translator->load(QLocale(locale), QStringLiteral("zorbin-qt-gui"), QStringLiteral("_"),
                            translationsDir());
}

// All texts of a dialog that don't depend on the file system.
static QStringList texts(multiPathSelectDialog_t& dialog)
{
    const Ui_multiPathSelectDialog& ui = *dialog.ui();
    return {dialog.windowTitle(),    dialog.fileDialogCaption(), ui.label->text(),
            ui.browseButton->text(), ui.candidateLabel->text(),  ui.addButton->text(),
            ui.addAllButton->text(), ui.deleteButton->text(),    ui.deleteAllButton->text(),
            ui.selectedLabel->text()};
}

// A message of a .ts file.
struct message_t
{
    QString source;      // after its context
    QString translation; // empty unless finished
};

static QVector<message_t> readMessages(QIODevice* device, QString* error)
{
    QVector<message_t> messages;
    QXmlStreamReader reader(device);
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("name")) {
            context = reader.readElementText();
        } else if (reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.name() == QLatin1String("translation")) {
            const bool isFinished = !reader.attributes().hasAttribute(QStringLiteral("type"));
            const QString text = reader.readElementText();
            messages.append(
                {context + QStringLiteral(": ") + source, isFinished ? text : QString()});
        }
    }
    *error = reader.errorString();
    return messages;
}

/// The library's texts in the languages they have been translated to.
class tst_translations : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void staysEnglishWithoutTranslator();
    void staysEnglishInALanguageThatIsMissing();
    void showsTheDialogOfFilesInGerman_data();
    void showsTheDialogOfFilesInGerman();
    void showsTheDialogOfDirectoriesInGerman();
    void hasEveryTextInEveryLanguage_data();
    void hasEveryTextInEveryLanguage();
};

void tst_translations::staysEnglishWithoutTranslator()
{
    mfsDialog_t files({});
    QCOMPARE(texts(files),
             QStringList({"Select Files", "Select Files From", "Directory", "Browse...", "Files",
                          "Add", "Add All", "Delete", "Delete All", "Selected Files"}));
}

void tst_translations::staysEnglishInALanguageThatIsMissing()
{
    QTranslator translator;
    QVERIFY(!load(&translator, QStringLiteral("fi_FI")));
}

void tst_translations::showsTheDialogOfFilesInGerman_data()
{
    QTest::addColumn<QString>("locale");

    QTest::newRow("Germany") << "de_DE";
    QTest::newRow("Austria") << "de_AT";
}

void tst_translations::showsTheDialogOfFilesInGerman()
{
    QFETCH(QString, locale);
    QTranslator translator;
    QVERIFY(load(&translator, locale));
    QVERIFY(QApplication::installTranslator(&translator));
    mfsDialog_t files({});
    QCOMPARE(texts(files), QStringList({QStringLiteral("Dateien auswählen"),
                                        QStringLiteral("Dateien auswählen aus"), "Verzeichnis",
                                        "Durchsuchen ...", "Dateien", QStringLiteral("Hinzufügen"),
                                        QStringLiteral("Alle hinzufügen"), "Entfernen",
                                        "Alle entfernen", QStringLiteral("Ausgewählte Dateien")}));
}

void tst_translations::showsTheDialogOfDirectoriesInGerman()
{
    QTranslator translator;
    QVERIFY(load(&translator, QStringLiteral("de_DE")));
    QVERIFY(QApplication::installTranslator(&translator));
    mdsDialog_t directories({});
    QCOMPARE(texts(directories),
             QStringList({QStringLiteral("Verzeichnisse auswählen"),
                          QStringLiteral("Verzeichnisse auswählen aus"), "Verzeichnis",
                          "Durchsuchen ...", "Verzeichnisse", QStringLiteral("Hinzufügen"),
                          QStringLiteral("Alle hinzufügen"), "Entfernen", "Alle entfernen",
                          QStringLiteral("Ausgewählte Verzeichnisse")}));
}

void tst_translations::hasEveryTextInEveryLanguage_data()
{
    QTest::addColumn<QString>("file");

    const QDir directory(QStringLiteral(TRANSLATION_SOURCES));
    const QStringList files = directory.entryList({QStringLiteral("*.ts")});
    QVERIFY(!files.isEmpty());
    for (const QString& file : files)
        QTest::newRow(qPrintable(file)) << file;
}

void tst_translations::hasEveryTextInEveryLanguage()
{
    QFETCH(QString, file);
    // Brought up to date with the sources, a copy holds what is missing as well as what is out of
    // date, both marked as such.
    const QTemporaryDir directory;
    const QString copy = directory.filePath(file);
    QVERIFY(QFile::copy(QStringLiteral(TRANSLATION_SOURCES "/") + file, copy));
    QFile updated(copy);
    QVERIFY(updated.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    QProcess lupdate;
    lupdate.start(QStringLiteral(LUPDATE), {"-locations", "none", SOURCES, "-ts", copy});
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitStatus(), QProcess::NormalExit);
    QCOMPARE(lupdate.exitCode(), 0);

    QVERIFY(updated.open(QIODevice::ReadOnly));
    QString error;
    const QVector<message_t> messages = readMessages(&updated, &error);
    QCOMPARE(error, QString());
    QVERIFY(!messages.isEmpty());
    QStringList untranslated;
    for (const message_t& message : messages)
        if (message.translation.isEmpty())
            untranslated.append(message.source);
    QCOMPARE(untranslated.join(QStringLiteral(", ")), QString());
}

ZORBIN_TEST_MAIN(tst_translations, QApplication)
#include "tst_translations.moc"
