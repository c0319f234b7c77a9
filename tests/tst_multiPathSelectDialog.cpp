#include "multiPathSelectDialog.h"
#include "testCase.h"

#include "support/messageRecorder.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <fcntl.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<multiPathSelectDialog_t>::value, "dialogs aren't copied");

static QStringList entries(const QListView& view)
{
    return qobject_cast<QStringListModel*>(view.model())->stringList();
}

// What is offered, in alphabetical order: the dialog promises none.
static QStringList offered(multiPathSelectDialog_t& dialog)
{
    QStringList names = entries(*dialog.ui()->candidatesListView);
    names.sort();
    return names;
}

static QStringList history(multiPathSelectDialog_t& dialog)
{
    QStringList paths;
    for (int i = 0; i < dialog.ui()->directoryComboBox->count(); ++i)
        paths.append(dialog.ui()->directoryComboBox->itemText(i));
    return paths;
}

static void select(QListView* view, const QStringList& names)
{
    view->clearSelection();
    const QStringList all = entries(*view);
    for (const QString& name : names)
        view->selectionModel()->select(view->model()->index(static_cast<int>(all.indexOf(name)), 0),
                                       QItemSelectionModel::Select);
}

// Which of Add, Add All, Delete and Delete All can be pressed.
static QString enabledButtons(multiPathSelectDialog_t& dialog)
{
    const Ui_multiPathSelectDialog& ui = *dialog.ui();
    QStringList texts;
    for (const QPushButton* button :
         {ui.addButton, ui.addAllButton, ui.deleteButton, ui.deleteAllButton})
        if (button->isEnabled())
            texts.append(button->text());
    return texts.join(QStringLiteral(", "));
}

// Answers every text with the text in brackets.
class brackets_t : public QTranslator
{
public:
    using QTranslator::QTranslator;
    QString translate(const char* /*context*/, const char* text, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return QStringLiteral("[%1]").arg(QString::fromUtf8(text));
    }
    bool isEmpty() const override { return false; }
};

/// The dialogs that collect paths.
class tst_multiPathSelectDialog : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

private Q_SLOTS:
    void initTestCase();

    void looksAsDesigned();
    void laysItsWidgetsOut();
    void startsInTheDirectoryOfTheProcess();
    void startsWithoutCaptionAndFilters();
    void namesItsKind_data();
    void namesItsKind();
    void translatesItsTexts();
    void connectsByNames();

    void offersFilesButNoLinks();
    void offersDirectoriesButNoLinksAndDots();
    void offersWhatTheNameFiltersLetPass();
    void offersNothingUntilAKindIsAskedFor();
    void offersByNewFiltersFromTheNextDirectoryOn();
    void offersNothingWhereItCannotRead_data();
    void offersNothingWhereItCannotRead();
    void listsAnewWhenTheSameDirectoryIsChosen();
    void ignoresAnEmptyDirectory();
    void remembersEachDirectoryOnce();
    void leavesDirectoriesAsTheyAreWritten();
    void followsTheComboBox();
    void listsOncePerChange();
    void listsWhateverTheComboBoxAnnounces();
    void goesElsewhereInSlotsOfTheComboBox_data();
    void goesElsewhereInSlotsOfTheComboBox();
    void goesElsewhereAsTheFirstDirectoryIsAdded();
    void listsWhatASlotChoosesInTheComboBox();

    void addsWhatIsSelected();
    void addsEverything();
    void addsNothingTwiceAndSorts();
    void addsFromSeveralDirectories();
    void addsFromTheRootWithTwoSlashes();
    void sortsAndMergesEvenWithoutASelection();
    void addsWhatHasVanishedSince();
    void keepsOddNames();
    void offersNoNamesThatAreNoText();
    void deletesWhatIsSelected();
    void deletesEverything();
    void setsTheChoiceAsItIs();
    void ignoresAnEmptyChoice();
    void enablesTheButtonsThatCanAct();
    void keepsTheChoiceAfterItsEnd_data();
    void keepsTheChoiceAfterItsEnd();

    void browsesFromTheDirectoryShown();
    void goesWhereTheUserBrowses();
    void staysWhenBrowsingIsCancelled();
    void startsBrowsingBesideAMissingDirectory();
    void mayBeDeletedWhileBrowsing_data();
    void mayBeDeletedWhileBrowsing();
    void staysWhenTheBrowserIsDeleted();
    void worksWithTheKeyboardAlone();
    void copesWithManyEntries();

private:
    QString path(const QString& name) const { return m_dir->path() + QLatin1Char('/') + name; }
    void make(const QStringList& files) const
    {
        for (const QString& name : files) {
            QFile file(path(name));
            QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
        }
    }

    // Calls \p operate once the directory browser is open.
    template <typename operate_t>
    void whenBrowsing(const operate_t& operate)
    {
        m_wasOpen = false;
        QTimer::singleShot(0, this, [this, operate] {
            auto* const browser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            m_wasOpen = browser != nullptr;
            if (browser != nullptr)
                operate(browser);
        });
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    bool m_wasOpen = false;
};

void tst_multiPathSelectDialog::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_multiPathSelectDialog::setUp()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_multiPathSelectDialog::looksAsDesigned()
{
    multiPathSelectDialog_t dialog({});
    const Ui_multiPathSelectDialog& ui = *dialog.ui();
    QCOMPARE(dialog.objectName(), QStringLiteral("multiPathSelectDialog"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("N/A"));
    QCOMPARE(dialog.windowModality(), Qt::WindowModal);
    QVERIFY(dialog.isModal());
    QCOMPARE(dialog.size(), QSize(397, 486));
    QCOMPARE(ui.label->text(), QStringLiteral("Directory"));
    QCOMPARE(ui.browseButton->text(), QStringLiteral("Browse..."));
    QCOMPARE(ui.candidateLabel->text(), QStringLiteral("N/A"));
    QCOMPARE(ui.candidateLabel->alignment(), Qt::AlignCenter);
    QCOMPARE(ui.selectedLabel->text(), QStringLiteral("N/A"));
    QCOMPARE(ui.selectedLabel->alignment(), Qt::AlignCenter);
    QCOMPARE(ui.addButton->text(), QStringLiteral("Add"));
    QCOMPARE(ui.addAllButton->text(), QStringLiteral("Add All"));
    QCOMPARE(ui.deleteButton->text(), QStringLiteral("Delete"));
    QCOMPARE(ui.deleteAllButton->text(), QStringLiteral("Delete All"));
    QCOMPARE(ui.buttonBox->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(ui.buttonBox->orientation(), Qt::Horizontal);
    QVERIFY(!ui.buttonBox->centerButtons());
    for (const QListView* view : {ui.candidatesListView, ui.selectedListView}) {
        QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(view->selectionMode(), QAbstractItemView::ExtendedSelection);
        QCOMPARE(view->model()->parent(), static_cast<QObject*>(&dialog));
    }
}

void tst_multiPathSelectDialog::laysItsWidgetsOut()
{
    multiPathSelectDialog_t dialog({});
    const Ui_multiPathSelectDialog& ui = *dialog.ui();
    QCOMPARE(dialog.layout(), static_cast<QLayout*>(ui.verticalLayout_2));
    QCOMPARE(ui.verticalLayout_2->count(), 5);
    QCOMPARE(ui.verticalLayout_2->itemAt(0)->layout(),
             static_cast<QLayout*>(ui.horizontalLayout_2));
    QCOMPARE(ui.verticalLayout_2->itemAt(1)->layout(), static_cast<QLayout*>(ui.verticalLayout));
    QCOMPARE(ui.verticalLayout_2->itemAt(2)->layout(),
             static_cast<QLayout*>(ui.horizontalLayout_3));
    QCOMPARE(ui.verticalLayout_2->itemAt(3)->layout(), static_cast<QLayout*>(ui.verticalLayout_3));
    QCOMPARE(ui.verticalLayout_2->itemAt(4)->widget(), static_cast<QWidget*>(ui.buttonBox));
    const auto widgets = [](const QBoxLayout* layout) {
        QStringList names;
        for (int i = 0; i < layout->count(); ++i)
            names.append(layout->itemAt(i)->widget()->objectName());
        return names.join(QLatin1Char(' '));
    };
    QCOMPARE(widgets(ui.horizontalLayout_2),
             QStringLiteral("label directoryComboBox browseButton"));
    QCOMPARE(widgets(ui.verticalLayout), QStringLiteral("candidateLabel candidatesListView"));
    QCOMPARE(widgets(ui.horizontalLayout_3),
             QStringLiteral("addButton addAllButton deleteButton deleteAllButton"));
    QCOMPARE(widgets(ui.verticalLayout_3), QStringLiteral("selectedLabel selectedListView"));
    QCOMPARE(ui.horizontalLayout_2->stretch(0), 0);
    QCOMPARE(ui.horizontalLayout_2->stretch(1), 1);
    QCOMPARE(ui.horizontalLayout_2->stretch(2), 0);
}

void tst_multiPathSelectDialog::startsInTheDirectoryOfTheProcess()
{
    make({QStringLiteral("a.log")});
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    multiPathSelectDialog_t dialog({QStringLiteral("*.log")});
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(history(dialog), QStringList{m_dir->path()});
    QCOMPARE(offered(dialog), QStringList()); // no kind of entries has been asked for
    QCOMPARE(dialog.selected(), QStringList());
    QCOMPARE(dialog.numSelected(), 0u);
    QCOMPARE(enabledButtons(dialog), QString());
    dialog.setFdFilters(QDir::Files);
    dialog.setDirectory(m_dir->path());
    QCOMPARE(history(dialog), QStringList{m_dir->path()});
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::startsWithoutCaptionAndFilters()
{
    multiPathSelectDialog_t dialog({});
    QCOMPARE(dialog.fileDialogCaption(), QString());
    QCOMPARE(dialog.fdFilters(), QDir::Filters());
    dialog.setFileDialogCaption(QStringLiteral("Where"));
    dialog.setFdFilters(QDir::Hidden);
    QCOMPARE(dialog.fileDialogCaption(), QStringLiteral("Where"));
    QCOMPARE(dialog.fdFilters(), QDir::Filters(QDir::Hidden));
}

void tst_multiPathSelectDialog::namesItsKind_data()
{
    QTest::addColumn<bool>("isForFiles");
    QTest::addColumn<QString>("plural");
    QTest::addColumn<int>("filters");
    QTest::newRow("files") << true << QStringLiteral("Files")
                           << static_cast<int>(QDir::Files | QDir::NoSymLinks);
    QTest::newRow("directories") << false << QStringLiteral("Directories")
                                 << static_cast<int>(QDir::Dirs | QDir::NoSymLinks |
                                                     QDir::NoDotAndDotDot);
}

void tst_multiPathSelectDialog::namesItsKind()
{
    QFETCH(bool, isForFiles);
    QFETCH(QString, plural);
    QWidget parent;
    multiPathSelectDialog_t* dialog = nullptr;
    if (isForFiles)
        dialog = new mfsDialog_t({}, &parent);
    else
        dialog = new mdsDialog_t({}, &parent);
    QCOMPARE(dialog->parentWidget(), &parent);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Select ") + plural);
    QCOMPARE(dialog->fileDialogCaption(), QStringLiteral("Select %1 From").arg(plural));
    QCOMPARE(dialog->ui()->candidateLabel->text(), plural);
    QCOMPARE(dialog->ui()->selectedLabel->text(), QStringLiteral("Selected ") + plural);
    QTEST(static_cast<int>(dialog->fdFilters()), "filters");
}

void tst_multiPathSelectDialog::translatesItsTexts()
{
    brackets_t brackets;
    QCoreApplication::installTranslator(&brackets);
    mfsDialog_t files({});
    mdsDialog_t directories({});
    QCoreApplication::removeTranslator(&brackets);
    const Ui_multiPathSelectDialog& ui = *files.ui();
    QCOMPARE(files.windowTitle(), QStringLiteral("[Select Files]"));
    QCOMPARE(files.fileDialogCaption(), QStringLiteral("[Select Files From]"));
    QCOMPARE(ui.candidateLabel->text(), QStringLiteral("[Files]"));
    QCOMPARE(ui.selectedLabel->text(), QStringLiteral("[Selected Files]"));
    QCOMPARE(ui.label->text(), QStringLiteral("[Directory]"));
    QCOMPARE(ui.browseButton->text(), QStringLiteral("[Browse...]"));
    QCOMPARE(ui.addButton->text(), QStringLiteral("[Add]"));
    QCOMPARE(ui.addAllButton->text(), QStringLiteral("[Add All]"));
    QCOMPARE(ui.deleteButton->text(), QStringLiteral("[Delete]"));
    QCOMPARE(ui.deleteAllButton->text(), QStringLiteral("[Delete All]"));
    QCOMPARE(directories.windowTitle(), QStringLiteral("[Select Directories]"));
    QCOMPARE(directories.fileDialogCaption(), QStringLiteral("[Select Directories From]"));
    QCOMPARE(directories.ui()->candidateLabel->text(), QStringLiteral("[Directories]"));
    QCOMPARE(directories.ui()->selectedLabel->text(), QStringLiteral("[Selected Directories]"));
}

void tst_multiPathSelectDialog::connectsByNames()
{
    multiPathSelectDialog_t dialog({});
    QObject sender;
    for (const char* const slot :
         {SLOT(browseClicked()), SLOT(addClicked()), SLOT(addAllClicked()), SLOT(deleteClicked()),
          SLOT(deleteAllClicked()), SLOT(updateButtons())})
        QVERIFY2(connect(&sender, SIGNAL(destroyed()), &dialog, slot), slot);
    QVERIFY(connect(&sender, SIGNAL(objectNameChanged(QString)), &dialog,
                    SLOT(handleDirectoryChange(QString))));
    sender.disconnect();
}

void tst_multiPathSelectDialog::offersFilesButNoLinks()
{
    make({QStringLiteral("b.log"), QStringLiteral("a.log"), QStringLiteral(".hidden")});
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("directory")));
    QVERIFY(QFile::link(path(QStringLiteral("a.log")), path(QStringLiteral("link"))));
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), (QStringList{QStringLiteral("a.log"), QStringLiteral("b.log")}));
}

void tst_multiPathSelectDialog::offersDirectoriesButNoLinksAndDots()
{
    make({QStringLiteral("a.log")});
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("directory")));
    QVERIFY(QFile::link(path(QStringLiteral("directory")), path(QStringLiteral("link"))));
    mdsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("directory")});
}

void tst_multiPathSelectDialog::offersWhatTheNameFiltersLetPass()
{
    make({QStringLiteral("a.log"), QStringLiteral("b.txt"), QStringLiteral("c.raw")});
    mfsDialog_t dialog({QStringLiteral("*.log"), QStringLiteral("c.*")});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), (QStringList{QStringLiteral("a.log"), QStringLiteral("c.raw")}));
}

void tst_multiPathSelectDialog::offersNothingUntilAKindIsAskedFor()
{
    make({QStringLiteral("a.log")});
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("directory")));
    multiPathSelectDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList());
    dialog.setFdFilters(QDir::AllEntries | QDir::NoDotAndDotDot);
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), (QStringList{QStringLiteral("a.log"), QStringLiteral("directory")}));
}

void tst_multiPathSelectDialog::offersByNewFiltersFromTheNextDirectoryOn()
{
    make({QStringLiteral("a.log")});
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("directory")));
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    dialog.setFdFilters(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("directory")});

    // A dialog for files asks for them only after it has listed its first directory.
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_dir->path()));
    mfsDialog_t files({});
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(offered(files), QStringList());
    files.setDirectory(files.ui()->directoryComboBox->currentText());
    QCOMPARE(offered(files), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::offersNothingWhereItCannotRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("a file") << QStringLiteral("a.log");
    if (::geteuid() != 0) // root reads everything
        QTest::newRow("not readable") << QStringLiteral("locked");
}

void tst_multiPathSelectDialog::offersNothingWhereItCannotRead()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("locked")));
    make({QStringLiteral("a.log"), QStringLiteral("locked/b.log")});
    const QByteArray locked = QFile::encodeName(path(QStringLiteral("locked")));
    QCOMPARE(::chmod(locked.constData(), 0), 0);
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    messageRecorder_t messages;
    dialog.setDirectory(path(name));
    QCOMPARE(::chmod(locked.constData(), 0700), 0);
    QCOMPARE(offered(dialog), QStringList());
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), path(name));
    QCOMPARE(enabledButtons(dialog), QString());
    QCOMPARE(messages.texts(), QStringList());
}

void tst_multiPathSelectDialog::listsAnewWhenTheSameDirectoryIsChosen()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList());
    make({QStringLiteral("new.log")});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("new.log")});
}

void tst_multiPathSelectDialog::ignoresAnEmptyDirectory()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    const QStringList before = history(dialog);
    make({QStringLiteral("new.log")});
    dialog.setDirectory(QString());
    dialog.handleDirectoryChange(QStringLiteral(""));
    QCOMPARE(history(dialog), before);
    QCOMPARE(offered(dialog), QStringList()); // it wasn't even listed again
}

void tst_multiPathSelectDialog::remembersEachDirectoryOnce()
{
    mfsDialog_t dialog({});
    const QString first = dialog.ui()->directoryComboBox->currentText();
    dialog.setDirectory(m_dir->path());
    dialog.setDirectory(QStringLiteral("/"));
    dialog.setDirectory(m_dir->path());
    QCOMPARE(history(dialog), (QStringList{first, m_dir->path(), QStringLiteral("/")}));
    QCOMPARE(dialog.ui()->directoryComboBox->currentIndex(), 1);
    dialog.setDirectory(m_dir->path().toUpper()); // another name
    QCOMPARE(dialog.ui()->directoryComboBox->currentIndex(), 3);
}

void tst_multiPathSelectDialog::leavesDirectoriesAsTheyAreWritten()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({});
    const QString odd = m_dir->path() + QStringLiteral("/./");
    dialog.setDirectory(m_dir->path());
    dialog.setDirectory(odd);
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), odd);
    QCOMPARE(dialog.ui()->directoryComboBox->count(), 3);
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::followsTheComboBox()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({QStringLiteral("*.log")});
    dialog.setDirectory(m_dir->path());
    dialog.setDirectory(QStringLiteral("/"));
    QCOMPARE(offered(dialog), QStringList());
    dialog.ui()->directoryComboBox->setCurrentIndex(1);
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add All"));
    dialog.ui()->directoryComboBox->setCurrentIndex(-1);
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::listsOncePerChange()
{
    mfsDialog_t dialog({});
    QSignalSpy spy(dialog.ui()->candidatesListView->model(), &QAbstractItemModel::modelReset);
    dialog.setDirectory(m_dir->path());
    QCOMPARE(spy.count(), 1);
    dialog.ui()->directoryComboBox->setCurrentIndex(0);
    QCOMPARE(spy.count(), 2);
}

void tst_multiPathSelectDialog::listsWhateverTheComboBoxAnnounces()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({QStringLiteral("*.log")});
    dialog.setDirectory(QStringLiteral("/"));
    {
        const QSignalBlocker blocker(dialog.ui()->directoryComboBox);
        dialog.setDirectory(m_dir->path());
    }
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add All"));
    // The same path twice in the combo box: the first of them is chosen.
    dialog.ui()->directoryComboBox->addItem(QStringLiteral("/"));
    dialog.ui()->directoryComboBox->setCurrentIndex(3);
    QCOMPARE(dialog.ui()->directoryComboBox->currentIndex(),
             dialog.ui()->directoryComboBox->findText(QStringLiteral("/")));
    QCOMPARE(offered(dialog), QStringList());
}

void tst_multiPathSelectDialog::goesElsewhereInSlotsOfTheComboBox_data()
{
    QTest::addColumn<bool>("isChosenByUser");
    QTest::addColumn<bool>("isTold"); // by the text, not by the index
    QTest::newRow("set, index") << false << false;
    QTest::newRow("set, text") << false << true;
    QTest::newRow("chosen, index") << true << false;
    QTest::newRow("chosen, text") << true << true;
}

// Whoever comes to the first directory is sent on to the second.
void tst_multiPathSelectDialog::goesElsewhereInSlotsOfTheComboBox()
{
    QFETCH(bool, isChosenByUser);
    QFETCH(bool, isTold);
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("first")));
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("second")));
    make({QStringLiteral("first/a.log"), QStringLiteral("second/b.log")});
    mfsDialog_t dialog({});
    QComboBox* const box = dialog.ui()->directoryComboBox;
    if (isChosenByUser)
        box->addItem(path(QStringLiteral("first")));
    const auto guide = [&] {
        if (box->currentText() == path(QStringLiteral("first")))
            dialog.setDirectory(path(QStringLiteral("second")));
    };
    if (isTold)
        connect(box, &QComboBox::currentTextChanged, this, guide);
    else
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, guide);
    QSignalSpy lists(dialog.ui()->candidatesListView->model(), &QAbstractItemModel::modelReset);
    if (isChosenByUser)
        box->setCurrentIndex(1);
    else
        dialog.setDirectory(path(QStringLiteral("first")));
    QCOMPARE(history(dialog).mid(1),
             (QStringList{path(QStringLiteral("first")), path(QStringLiteral("second"))}));
    QCOMPARE(box->currentText(), path(QStringLiteral("second")));
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("b.log")});
    QCOMPARE(lists.count(), 2);
    dialog.addAllClicked();
    QCOMPARE(dialog.selected(), QStringList{path(QStringLiteral("second/b.log"))});
}

// An empty combo box announces the item that is added to it.
void tst_multiPathSelectDialog::goesElsewhereAsTheFirstDirectoryIsAdded()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({QStringLiteral("*.log")});
    QComboBox* const box = dialog.ui()->directoryComboBox;
    box->clear();
    connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, [&] {
        if (box->currentText() == QLatin1String("/"))
            dialog.setDirectory(m_dir->path());
    });
    dialog.setDirectory(QStringLiteral("/"));
    QCOMPARE(history(dialog), (QStringList{QStringLiteral("/"), m_dir->path()}));
    QCOMPARE(box->currentText(), m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::listsWhatASlotChoosesInTheComboBox()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({QStringLiteral("*.log")});
    QComboBox* const box = dialog.ui()->directoryComboBox;
    box->addItems({m_dir->path(), QStringLiteral("/"), QStringLiteral("/tmp")});
    connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, [&] {
        if (box->currentText() == QLatin1String("/")) {
            dialog.setDirectory(QStringLiteral("/tmp"));
            box->setCurrentIndex(1);
        }
    });
    dialog.setDirectory(QStringLiteral("/"));
    QCOMPARE(box->currentText(), m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::addsWhatIsSelected()
{
    make({QStringLiteral("a.log"), QStringLiteral("b.log"), QStringLiteral("c.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    select(dialog.ui()->candidatesListView, {QStringLiteral("c.log"), QStringLiteral("a.log")});
    dialog.ui()->addButton->click();
    QCOMPARE(dialog.selected(),
             (QStringList{path(QStringLiteral("a.log")), path(QStringLiteral("c.log"))}));
    QCOMPARE(dialog.numSelected(), 2u);
    QCOMPARE(entries(*dialog.ui()->selectedListView), dialog.selected());
}

void tst_multiPathSelectDialog::addsEverything()
{
    make({QStringLiteral("b.log"), QStringLiteral("a.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    dialog.ui()->addAllButton->click();
    QCOMPARE(dialog.selected(),
             (QStringList{path(QStringLiteral("a.log")), path(QStringLiteral("b.log"))}));
}

void tst_multiPathSelectDialog::addsNothingTwiceAndSorts()
{
    make({QStringLiteral("b"), QStringLiteral("B"), QStringLiteral("a")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    dialog.setSelected({path(QStringLiteral("b")), path(QStringLiteral("a"))});
    dialog.addAllClicked();
    dialog.addAllClicked();
    QCOMPARE(dialog.selected(), (QStringList{path(QStringLiteral("B")), path(QStringLiteral("a")),
                                             path(QStringLiteral("b"))}));
}

void tst_multiPathSelectDialog::addsFromSeveralDirectories()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("z")));
    make({QStringLiteral("y.log"), QStringLiteral("z/a.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(path(QStringLiteral("z")));
    dialog.addAllClicked();
    dialog.setDirectory(m_dir->path());
    dialog.addAllClicked();
    QCOMPARE(dialog.selected(),
             (QStringList{path(QStringLiteral("y.log")), path(QStringLiteral("z/a.log"))}));
}

void tst_multiPathSelectDialog::addsFromTheRootWithTwoSlashes()
{
    mdsDialog_t dialog({QStringLiteral("tmp")});
    dialog.setDirectory(QStringLiteral("/"));
    dialog.addAllClicked();
    QCOMPARE(dialog.selected(), QStringList{QStringLiteral("//tmp")});
}

void tst_multiPathSelectDialog::sortsAndMergesEvenWithoutASelection()
{
    mfsDialog_t dialog({});
    dialog.setSelected({QStringLiteral("/b"), QStringLiteral("/a"), QStringLiteral("/b")});
    dialog.addClicked();
    QCOMPARE(dialog.selected(), (QStringList{QStringLiteral("/a"), QStringLiteral("/b")}));
}

void tst_multiPathSelectDialog::addsWhatHasVanishedSince()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QVERIFY(QDir(m_dir->path()).removeRecursively());
    dialog.addAllClicked();
    QCOMPARE(dialog.selected(), QStringList{path(QStringLiteral("a.log"))});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList());
}

void tst_multiPathSelectDialog::keepsOddNames()
{
    const QStringList names{QStringLiteral(" leading blank"), QStringLiteral("\"quoted\""),
                            QStringLiteral("&ampersand"),     QStringLiteral("<b>bold"),
                            QStringLiteral("back\\slash"),    QStringLiteral("new\nline"),
                            QStringLiteral("Ärmelkanal ♒")};
    make(names);
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), names);
    dialog.addAllClicked();
    for (const QString& chosen : dialog.selected())
        QVERIFY2(QFile::exists(chosen), qPrintable(chosen));
    QCOMPARE(dialog.numSelected(), 7u);
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("two\nlines")));
    dialog.setDirectory(path(QStringLiteral("two\nlines")));
    dialog.setDirectory(path(QStringLiteral("two\nlines")));
    QCOMPARE(dialog.ui()->directoryComboBox->count(), 3);
}

// Qt leaves them out, as it couldn't open them either.
void tst_multiPathSelectDialog::offersNoNamesThatAreNoText()
{
    make({QStringLiteral("a.log")});
    const int file = ::open((QFile::encodeName(m_dir->path()) + "/\xFF.log").constData(),
                            O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(file != -1);
    ::close(file);
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
    ::unlink((QFile::encodeName(m_dir->path()) + "/\xFF.log").constData());
}

void tst_multiPathSelectDialog::deletesWhatIsSelected()
{
    mfsDialog_t dialog({});
    dialog.setSelected({QStringLiteral("/e"), QStringLiteral("/d"), QStringLiteral("/c"),
                        QStringLiteral("/b"), QStringLiteral("/a")});
    select(dialog.ui()->selectedListView,
           {QStringLiteral("/b"), QStringLiteral("/e"), QStringLiteral("/d")});
    dialog.ui()->deleteButton->click();
    QCOMPARE(dialog.selected(), (QStringList{QStringLiteral("/c"), QStringLiteral("/a")}));
    QCOMPARE(dialog.numSelected(), 2u);
    QVERIFY(!dialog.ui()->selectedListView->selectionModel()->hasSelection());
    QCOMPARE(dialog.ui()->selectedListView->currentIndex().row(), 0); // where the first one was
    dialog.deleteClicked();
    QCOMPARE(dialog.numSelected(), 2u);
}

void tst_multiPathSelectDialog::deletesEverything()
{
    mfsDialog_t dialog({});
    dialog.setSelected({QStringLiteral("/b"), QStringLiteral("/a")});
    dialog.ui()->deleteAllButton->click();
    QCOMPARE(dialog.selected(), QStringList());
    QVERIFY(!dialog.ui()->deleteAllButton->isEnabled());
}

void tst_multiPathSelectDialog::setsTheChoiceAsItIs()
{
    mfsDialog_t dialog({});
    const QStringList odd{QStringLiteral("/b"), QStringLiteral("relative"), QStringLiteral("/b")};
    dialog.setSelected({QStringLiteral("/a")});
    dialog.setSelected(odd);
    QCOMPARE(dialog.selected(), odd);
    QVERIFY(dialog.ui()->deleteAllButton->isEnabled());
}

void tst_multiPathSelectDialog::ignoresAnEmptyChoice()
{
    mfsDialog_t dialog({});
    dialog.setSelected({QStringLiteral("/a")});
    dialog.setSelected({});
    QCOMPARE(dialog.selected(), QStringList{QStringLiteral("/a")});
}

void tst_multiPathSelectDialog::enablesTheButtonsThatCanAct()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({QStringLiteral("*.log")});
    dialog.setDirectory(QStringLiteral("/"));
    QCOMPARE(enabledButtons(dialog), QString());
    dialog.setDirectory(m_dir->path());
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add All"));
    select(dialog.ui()->candidatesListView, {QStringLiteral("a.log")});
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add, Add All"));
    dialog.addClicked();
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add, Add All, Delete All"));
    select(dialog.ui()->selectedListView, dialog.selected());
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add, Add All, Delete, Delete All"));
    dialog.ui()->candidatesListView->clearSelection();
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add All, Delete, Delete All"));
    dialog.deleteClicked();
    QCOMPARE(enabledButtons(dialog), QStringLiteral("Add All"));
    dialog.setDirectory(QStringLiteral("/"));
    QCOMPARE(enabledButtons(dialog), QString());
    QVERIFY(dialog.ui()->buttonBox->button(QDialogButtonBox::Ok)->isEnabled());
}

void tst_multiPathSelectDialog::keepsTheChoiceAfterItsEnd_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("Ok") << true;
    QTest::newRow("Cancel") << false;
}

void tst_multiPathSelectDialog::keepsTheChoiceAfterItsEnd()
{
    QFETCH(bool, isAccepted);
    mfsDialog_t dialog({});
    dialog.setSelected({QStringLiteral("/a")});
    QTimer::singleShot(0, &dialog, [&] {
        dialog.ui()
            ->buttonBox->button(isAccepted ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)
            ->click();
    });
    const int result = dialog.exec();
    QCOMPARE(result == QDialog::Accepted, isAccepted);
    QCOMPARE(dialog.selected(), QStringList{QStringLiteral("/a")});
}

void tst_multiPathSelectDialog::browsesFromTheDirectoryShown()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    QString caption;
    QString start;
    QWidget* parent = nullptr;
    bool showsDirectoriesOnly = false;
    whenBrowsing([&](QFileDialog* browser) {
        caption = browser->windowTitle();
        start = browser->directory().path();
        parent = browser->parentWidget();
        showsDirectoriesOnly = browser->testOption(QFileDialog::ShowDirsOnly);
        browser->reject();
    });
    dialog.ui()->browseButton->click();
    QVERIFY(m_wasOpen);
    QCOMPARE(caption, QStringLiteral("Select Files From"));
    QCOMPARE(start, m_dir->path());
    QCOMPARE(parent, &dialog);
    QVERIFY(showsDirectoriesOnly);
}

void tst_multiPathSelectDialog::goesWhereTheUserBrowses()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("z")));
    make({QStringLiteral("z/a.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    whenBrowsing([this](QFileDialog* browser) {
        browser->setDirectory(path(QStringLiteral("z")));
        browser->selectFile(path(QStringLiteral("z")));
        browser->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(path(QStringLiteral("z")));
        static_cast<QDialog*>(browser)->accept();
    });
    dialog.browseClicked();
    QVERIFY(m_wasOpen);
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), path(QStringLiteral("z")));
    QCOMPARE(offered(dialog), QStringList{QStringLiteral("a.log")});
}

void tst_multiPathSelectDialog::staysWhenBrowsingIsCancelled()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    const QStringList before = history(dialog);
    whenBrowsing([](QFileDialog* browser) { browser->reject(); });
    dialog.browseClicked();
    QVERIFY(m_wasOpen);
    QCOMPARE(history(dialog), before);
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), m_dir->path());
}

void tst_multiPathSelectDialog::startsBrowsingBesideAMissingDirectory()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(path(QStringLiteral("missing")));
    QString start;
    QString name;
    whenBrowsing([&](QFileDialog* browser) {
        start = browser->directory().path();
        name = browser->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        browser->reject();
    });
    dialog.browseClicked();
    QVERIFY(m_wasOpen);
    QCOMPARE(start, m_dir->path());
    QCOMPARE(name, QStringLiteral("missing"));
}

void tst_multiPathSelectDialog::mayBeDeletedWhileBrowsing_data()
{
    QTest::addColumn<bool>("isByKey");
    QTest::addColumn<bool>("isWithParent");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("alone") << false << false << false;
    QTest::newRow("with its parent") << false << true << false;
    QTest::newRow("once a directory is chosen") << false << false << true;
    QTest::newRow("opened by a key") << true << false << false;
}

// The events come through the window, as those of the user do.
void tst_multiPathSelectDialog::mayBeDeletedWhileBrowsing()
{
    QFETCH(bool, isByKey);
    QFETCH(bool, isWithParent);
    QFETCH(bool, isAccepted);
    const QPointer<QWidget> parent = new QWidget;
    const QPointer<mfsDialog_t> dialog = new mfsDialog_t({}, parent);
    dialog->show();
    dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog, patienceMs()));
    dialog->setDirectory(m_dir->path());
    QPushButton* const button = dialog->ui()->browseButton;
    QWindow* const window = dialog->windowHandle();
    const QPoint place = button->mapTo(dialog, button->rect().center());
    button->setFocus();
    if (isByKey)
        QTest::keyPress(window, Qt::Key_Space);
    else
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, place);
    QPointer<QFileDialog> opened;
    whenBrowsing([&](QFileDialog* browser) {
        opened = browser;
        if (isAccepted)
            static_cast<QDialog*>(browser)->accept();
        delete (isWithParent ? parent.data() : dialog.data());
    });
    if (isByKey)
        QTest::keyRelease(window, Qt::Key_Space);
    else
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY(m_wasOpen);
    QVERIFY(dialog.isNull());
    QVERIFY(opened.isNull());
    QCOMPARE(parent.isNull(), isWithParent);
    delete parent;
}

void tst_multiPathSelectDialog::staysWhenTheBrowserIsDeleted()
{
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    whenBrowsing([](QFileDialog* browser) { delete browser; });
    dialog.browseClicked();
    QVERIFY(m_wasOpen);
    QCOMPARE(dialog.ui()->directoryComboBox->currentText(), m_dir->path());
    QVERIFY(dialog.findChildren<QFileDialog*>().isEmpty());
}

void tst_multiPathSelectDialog::worksWithTheKeyboardAlone()
{
    make({QStringLiteral("a.log")});
    mfsDialog_t dialog({});
    dialog.setDirectory(m_dir->path());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog, patienceMs()));
    Ui_multiPathSelectDialog& ui = *dialog.ui();
    ui.directoryComboBox->setFocus();
    const auto tabTo = [](const QWidget* wanted) {
        for (int i = 0; i < 12 && QApplication::focusWidget() != wanted; ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        return QApplication::focusWidget() == wanted;
    };
    QTest::keyClick(ui.directoryComboBox, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(ui.browseButton));
    QTest::keyClick(ui.browseButton, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(ui.candidatesListView));
    QTest::keyClick(ui.candidatesListView, Qt::Key_A, Qt::ControlModifier);
    QVERIFY(tabTo(ui.addButton));
    QTest::keyClick(ui.addButton, Qt::Key_Space);
    QCOMPARE(dialog.selected(), QStringList{path(QStringLiteral("a.log"))});
    QVERIFY(tabTo(ui.selectedListView));
    QTest::keyClick(ui.selectedListView, Qt::Key_A, Qt::ControlModifier);
    QVERIFY(tabTo(ui.deleteButton)); // around
    QTest::keyClick(ui.deleteButton, Qt::Key_Space);
    QCOMPARE(dialog.numSelected(), 0u);
    QVERIFY(tabTo(ui.buttonBox->button(QDialogButtonBox::Ok)));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
}

void tst_multiPathSelectDialog::copesWithManyEntries()
{
    constexpr int COUNT = 100000;
    QStringList paths;
    for (int i = 0; i < COUNT; ++i)
        paths.append(QStringLiteral("/survey/%1").arg(COUNT - i, 6, 10, QLatin1Char('0')));
    mfsDialog_t dialog({});
    dialog.show();
    dialog.setSelected(paths);
    dialog.addClicked(); // sorts
    QCoreApplication::processEvents();
    QItemSelection everyOther;
    const QAbstractItemModel* const model = dialog.ui()->selectedListView->model();
    for (int i = 0; i < COUNT; i += 2)
        everyOther.append(QItemSelectionRange(model->index(i, 0)));
    dialog.ui()->selectedListView->selectionModel()->select(everyOther,
                                                            QItemSelectionModel::ClearAndSelect);
    dialog.deleteClicked();
    QCOMPARE(dialog.numSelected(), static_cast<unsigned>(COUNT / 2));
    QCOMPARE(dialog.selected().first(), QStringLiteral("/survey/000002"));
    QCOMPARE(dialog.selected().last(), QStringLiteral("/survey/100000"));
}

ZORBIN_TEST_MAIN(tst_multiPathSelectDialog, QApplication)
#include "tst_multiPathSelectDialog.moc"
