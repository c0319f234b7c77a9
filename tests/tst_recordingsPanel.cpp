#include "multiPathSelectDialog.h"
#include "recordingsPanel.h"
#include "testCase.h"
#include "testFiles.h"
#include "testWindow.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace survey_console;
using zorbin_qt_gui::mdsDialog_t;
using zorbin_qt_gui::mfsDialog_t;
using zorbin_qt_gui::multiPathSelectDialog_t;

namespace {

// A survey of two days, the recordings of which have the same names, and a folder without any.
struct survey_t
{
    QTemporaryDir directory;

    survey_t()
    {
        for (const char* name : {"mon/b.log", "mon/a.LOG", "mon/c.nmea", "mon/notes.txt",
                                 "mon/a.log.gz", "mon/old/z.log", "tue/a.log", "photos/1.jpg"})
            make(name);
    }
    void make(const QString& name)
    {
        QDir(directory.path()).mkpath(QFileInfo(name).path());
        if (!writeFile(path(name), QByteArray()))
            qFatal("cannot write '%s'", qPrintable(path(name)));
    }
    QString path(const QString& name) const { return directory.filePath(name); }
    QStringList paths(QStringList names) const
    {
        for (QString& name : names)
            name = path(name);
        return names;
    }
};

struct panel_t : testWindow_t
{
    recordingsPanel_t panel;

    panel_t()
    {
        setWindow(&panel);
        panel.show();
    }
    QListWidget* list() { return find<QListWidget>("recordingList"); }
    QPushButton* button(const char* name) { return find<QPushButton>(name); }
    QString message() { return find<QLabel>("recordingsMessageLabel")->text(); }
    QStringList entries()
    {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row)
            texts += list()->item(row)->text();
        return texts;
    }
    // The dialog that a button opens.
    template <typename dialog_t>
    dialog_t* open(const char* buttonName)
    {
        QTest::mouseClick(button(buttonName), Qt::LeftButton);
        return panel.findChild<dialog_t*>();
    }
};

// What a dialog offers, in alphabetical order.
QStringList offered(multiPathSelectDialog_t* dialog)
{
    dialog->addAllClicked();
    QStringList names;
    for (const QString& path : dialog->selected())
        names += QFileInfo(path).fileName();
    dialog->deleteAllClicked();
    return names;
}

} // namespace

class tst_recordingsPanel : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void isEmptyAtFirst();
    void listsEachFileOnce();
    void tellsFilesOfOneNameApart();
    void selectsTheFirstOfThoseAdded();
    void addsTheRecordingsInFolders();
    void namesFoldersWithoutRecordings();
    void choosesFilesFromSeveralFolders();
    void choosesFolders();
    void addsNothingThatIsCancelled();
    void marksWhatIsReplayed();
    void replaysByButtonAndEnter();
    void takesFilesOffTheList();
};

void tst_recordingsPanel::isEmptyAtFirst()
{
    panel_t shown;
    QCOMPARE(shown.panel.files(), QStringList());
    QVERIFY(!shown.button("replayRecordingButton")->isEnabled());
    QVERIFY(!shown.button("removeButton")->isEnabled());
    shown.panel.addFiles({});
    shown.panel.addFolders({});
    QCOMPARE(shown.panel.files(), QStringList());
    QCOMPARE(shown.message(), QString());
}

void tst_recordingsPanel::listsEachFileOnce()
{
    panel_t shown;
    shown.panel.addFiles({"/survey/b.log", "/survey/a.log", "/survey/b.log"});
    shown.panel.addFiles(
        {"/survey/mon/../a.log", QDir::current().relativeFilePath("/survey/c.log")});
    QCOMPARE(shown.panel.files(),
             QStringList({"/survey/b.log", "/survey/a.log", "/survey/c.log"})); // as they came
}

void tst_recordingsPanel::tellsFilesOfOneNameApart()
{
    panel_t shown;
    shown.panel.addFiles({"/survey/mon/a.log", "/survey/tue/a.log"});
    QCOMPARE(shown.entries(), QStringList({"mon/a.log", "tue/a.log"}));
    QCOMPARE(shown.list()->item(1)->toolTip(), QString("/survey/tue/a.log"));
}

void tst_recordingsPanel::selectsTheFirstOfThoseAdded()
{
    panel_t shown;
    shown.panel.addFiles({"/survey/a.log", "/survey/b.log"});
    QCOMPARE(shown.list()->currentRow(), 0);
    QVERIFY(shown.button("replayRecordingButton")->isEnabled());
    shown.panel.addFiles({"/survey/c.log", "/survey/d.log"});
    QCOMPARE(shown.list()->currentRow(), 2);
    shown.list()->selectAll();
    shown.panel.addFiles({"/survey/b.log"}); // is there
    QCOMPARE(shown.list()->currentRow(), 1);
    QCOMPARE(shown.list()->selectedItems(), QList<QListWidgetItem*>{shown.list()->item(1)});
}

// By name within a folder, without notes and what lies in folders below.
void tst_recordingsPanel::addsTheRecordingsInFolders()
{
    const survey_t survey;
    panel_t shown;
    shown.panel.addFolders(survey.paths({"tue", "mon"}));
    QCOMPARE(shown.panel.files(),
             survey.paths({"tue/a.log", "mon/a.LOG", "mon/b.log", "mon/c.nmea"}));
    QCOMPARE(shown.message(), QString());
}

void tst_recordingsPanel::namesFoldersWithoutRecordings()
{
    const survey_t survey;
    panel_t shown;
    shown.panel.addFolders(survey.paths({"photos", "tue", "nowhere"}));
    QCOMPARE(shown.panel.files(), survey.paths({"tue/a.log"}));
    QCOMPARE(shown.message(), QStringLiteral("no recordings in '%1', '%2'")
                                  .arg(survey.path("photos"), survey.path("nowhere")));
    QVERIFY(shown.find<QLabel>("recordingsMessageLabel")->isVisible());
    shown.panel.addFolders(survey.paths({"mon"})); // has got some
    QVERIFY(!shown.find<QLabel>("recordingsMessageLabel")->isVisible());
}

void tst_recordingsPanel::choosesFilesFromSeveralFolders()
{
    const survey_t survey;
    panel_t shown;
    shown.panel.showReplayed(survey.path("mon/b.log"));
    auto* dialog = shown.open<mfsDialog_t>("addFilesButton");
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible()); // and the replay goes on
    QCOMPARE(offered(dialog), QStringList({"a.LOG", "b.log", "c.nmea", "notes.txt"}));
    dialog->addAllClicked();
    dialog->setDirectory(survey.path("tue"));
    dialog->addAllClicked();
    dialog->accept();
    QCOMPARE(shown.panel.files(),
             survey.paths({"mon/b.log", "mon/a.LOG", "mon/c.nmea", "mon/notes.txt", "tue/a.log"}));
    QTRY_VERIFY(!shown.panel.findChild<mfsDialog_t*>());
}

void tst_recordingsPanel::choosesFolders()
{
    const survey_t survey;
    panel_t shown;
    shown.panel.showReplayed(survey.path("mon/b.log"));
    auto* dialog = shown.open<mdsDialog_t>("addFoldersButton");
    QVERIFY(dialog);
    QCOMPARE(offered(dialog), QStringList({"mon", "photos", "tue"})); // what lies beside mon, too
    dialog->addAllClicked();
    dialog->accept();
    QCOMPARE(shown.panel.files(),
             survey.paths({"mon/b.log", "mon/a.LOG", "mon/c.nmea", "tue/a.log"}));
    QCOMPARE(shown.message(), QStringLiteral("no recordings in '%1'").arg(survey.path("photos")));
    QTRY_VERIFY(!shown.panel.findChild<mdsDialog_t*>());
}

void tst_recordingsPanel::addsNothingThatIsCancelled()
{
    const survey_t survey;
    panel_t shown;
    shown.panel.showReplayed(survey.path("mon/b.log"));
    for (const char* name : {"addFilesButton", "addFoldersButton"}) {
        auto* dialog = shown.open<multiPathSelectDialog_t>(name);
        QVERIFY(dialog);
        dialog->addAllClicked();
        dialog->reject();
        QTRY_VERIFY(!shown.panel.findChild<multiPathSelectDialog_t*>());
    }
    QCOMPARE(shown.panel.files(), survey.paths({"mon/b.log"}));
}

void tst_recordingsPanel::marksWhatIsReplayed()
{
    panel_t shown;
    shown.panel.addFiles({"/survey/a.log", "/survey/b.log"});
    shown.panel.showReplayed("/survey/b.log");
    QCOMPARE(shown.list()->currentRow(), 1);
    QVERIFY(!shown.list()->item(0)->font().bold());
    QVERIFY(shown.list()->item(1)->font().bold());
    shown.panel.showReplayed("/survey/c.log"); // is new
    QCOMPARE(shown.list()->currentRow(), 2);
    QVERIFY(!shown.list()->item(1)->font().bold());
    QVERIFY(shown.list()->item(2)->font().bold());
}

void tst_recordingsPanel::replaysByButtonAndEnter()
{
    panel_t shown;
    QSignalSpy chosen(&shown.panel, &recordingsPanel_t::recordingChosen);
    shown.panel.addFiles({"/survey/a.log", "/survey/b.log"});
    QTest::mouseClick(shown.button("replayRecordingButton"), Qt::LeftButton);
    QTest::keyClick(shown.list(), Qt::Key_Down);
    QTest::keyClick(shown.list(), Qt::Key_Return);
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(chosen[0][0].toString(), QString("/survey/a.log"));
    QCOMPARE(chosen[1][0].toString(), QString("/survey/b.log"));
}

void tst_recordingsPanel::takesFilesOffTheList()
{
    panel_t shown;
    shown.panel.addFiles({"/survey/a.log", "/survey/b.log", "/survey/c.log"});
    QTest::keyClick(shown.list(), Qt::Key_Down, Qt::ShiftModifier); // a and b
    QTest::mouseClick(shown.button("removeButton"), Qt::LeftButton);
    QCOMPARE(shown.panel.files(), QStringList("/survey/c.log"));
    shown.list()->selectAll();
    QTest::mouseClick(shown.button("removeButton"), Qt::LeftButton);
    QCOMPARE(shown.panel.files(), QStringList());
    QVERIFY(!shown.button("replayRecordingButton")->isEnabled());
    QVERIFY(!shown.button("removeButton")->isEnabled());
    shown.panel.addFiles({"/survey/a.log"}); // comes back
    QCOMPARE(shown.panel.files(), QStringList("/survey/a.log"));
}

ZORBIN_TEST_MAIN(tst_recordingsPanel, QApplication)
#include "tst_recordingsPanel.moc"
