#include "multiPathSelectDialog.h"

#include <QFileDialog>
#include <QItemSelectionModel>
#include <QPointer>
#include <QStringListModel>
#include <algorithm>
#include <vector>

namespace zorbin_qt_gui {

struct multiPathSelectDialog_t::private_t
{
    private_t(const QStringList& nameFilters, QObject* dialog)
        : filters(nameFilters), candidatesModel(new QStringListModel(dialog)),
          selectedModel(new QStringListModel(dialog))
    {
    }

    QString absolutePath(const QString& name) const
    {
        return currentDir.absolutePath() + QLatin1Char('/') + name;
    }

    Ui_multiPathSelectDialog ui;
    QDir currentDir; // whose entries are offered
    const QStringList filters;
    QStringListModel* const candidatesModel; // names
    QStringListModel* const selectedModel;   // absolute paths
    QString fileDialogCaption;
    QDir::Filters fdFilters;
    unsigned listings = 0; // of a directory, so far
};

multiPathSelectDialog_t::multiPathSelectDialog_t(const QStringList& nameFilters, QWidget* parent)
    : QDialog(parent), m_d(std::make_unique<private_t>(nameFilters, this))
{
    Ui_multiPathSelectDialog& ui = m_d->ui;
    ui.setupUi(this);
    ui.candidatesListView->setModel(m_d->candidatesModel);
    ui.selectedListView->setModel(m_d->selectedModel);
    connect(ui.browseButton, &QAbstractButton::clicked, this,
            &multiPathSelectDialog_t::browseClicked);
    connect(ui.addButton, &QAbstractButton::clicked, this, &multiPathSelectDialog_t::addClicked);
    connect(ui.addAllButton, &QAbstractButton::clicked, this,
            &multiPathSelectDialog_t::addAllClicked);
    connect(ui.deleteButton, &QAbstractButton::clicked, this,
            &multiPathSelectDialog_t::deleteClicked);
    connect(ui.deleteAllButton, &QAbstractButton::clicked, this,
            &multiPathSelectDialog_t::deleteAllClicked);
    connect(
        ui.directoryComboBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
        [this](int index) { handleDirectoryChange(m_d->ui.directoryComboBox->itemText(index)); });
    for (const QListView* const view : {ui.candidatesListView, ui.selectedListView})
        connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                &multiPathSelectDialog_t::updateButtons);
    updateButtons();
    handleDirectoryChange(m_d->currentDir.absolutePath());
}

multiPathSelectDialog_t::~multiPathSelectDialog_t() = default;

QStringList multiPathSelectDialog_t::selected() const
{
    return m_d->selectedModel->stringList();
}

unsigned int multiPathSelectDialog_t::numSelected() const
{
    return static_cast<unsigned>(m_d->selectedModel->rowCount());
}

void multiPathSelectDialog_t::setSelected(const QStringList& paths)
{
    if (paths.isEmpty())
        return;
    m_d->selectedModel->setStringList(paths);
    updateButtons();
}

void multiPathSelectDialog_t::setDirectory(const QString& path)
{
    handleDirectoryChange(path);
}

QString multiPathSelectDialog_t::fileDialogCaption() const
{
    return m_d->fileDialogCaption;
}

void multiPathSelectDialog_t::setFileDialogCaption(const QString& caption)
{
    m_d->fileDialogCaption = caption;
}

QDir::Filters multiPathSelectDialog_t::fdFilters() const
{
    return m_d->fdFilters;
}

void multiPathSelectDialog_t::setFdFilters(QDir::Filters filters)
{
    m_d->fdFilters = filters;
}

Ui_multiPathSelectDialog* multiPathSelectDialog_t::ui()
{
    return &m_d->ui;
}

void multiPathSelectDialog_t::browseClicked()
{
    // As QFileDialog::getExistingDirectory() does it, but not on the stack: slots may delete the
    // dialog as long as the browser is open, which deletes the browser, too.
    const QPointer<QFileDialog> browser =
        new QFileDialog(this, m_d->fileDialogCaption, m_d->ui.directoryComboBox->currentText());
    browser->setFileMode(QFileDialog::Directory);
    browser->setOption(QFileDialog::ShowDirsOnly);
    browser->setSupportedSchemes({QStringLiteral("file")});
    const bool isAccepted = browser->exec() == QDialog::Accepted;
    if (browser.isNull())
        return;
    const QString path = isAccepted ? browser->selectedFiles().value(0) : QString();
    delete browser;
    handleDirectoryChange(path);
}

void multiPathSelectDialog_t::addClicked()
{
    QStringList paths;
    const QModelIndexList rows = m_d->ui.candidatesListView->selectionModel()->selectedRows();
    for (const QModelIndex& row : rows)
        paths.append(m_d->absolutePath(row.data().toString()));
    addToSelected(paths);
}

void multiPathSelectDialog_t::addAllClicked()
{
    QStringList paths;
    const QStringList names = m_d->candidatesModel->stringList();
    for (const QString& name : names)
        paths.append(m_d->absolutePath(name));
    addToSelected(paths);
}

void multiPathSelectDialog_t::deleteClicked()
{
    // All at once: thousands of rows would take minutes one by one.
    QItemSelectionModel* const selection = m_d->ui.selectedListView->selectionModel();
    const QStringList paths = m_d->selectedModel->stringList();
    std::vector<bool> isSelected(static_cast<std::size_t>(paths.size()), false);
    int first = static_cast<int>(paths.size()); // row deleted
    const QItemSelection ranges = selection->selection();
    for (const QItemSelectionRange& range : ranges) {
        first = std::min(first, range.top());
        std::fill_n(isSelected.begin() + range.top(), range.height(), true);
    }
    if (ranges.isEmpty()) {
        updateButtons();
        return;
    }
    QStringList kept;
    for (int i = 0; i < paths.size(); ++i)
        if (!isSelected[static_cast<std::size_t>(i)])
            kept.append(paths[i]);
    m_d->selectedModel->setStringList(kept);
    // The keyboard goes on where rows are gone.
    selection->setCurrentIndex(
        m_d->selectedModel->index(std::min(first, static_cast<int>(kept.size()) - 1)),
        QItemSelectionModel::NoUpdate);
    updateButtons();
}

void multiPathSelectDialog_t::deleteAllClicked()
{
    m_d->selectedModel->setStringList({});
    updateButtons();
}

void multiPathSelectDialog_t::handleDirectoryChange(const QString& path_)
{
    if (path_.isEmpty())
        return;
    // What the combo box announces leads here again, and a slot of it may go elsewhere. In either
    // case the directory is listed on return, and nothing is left to be done.
    const unsigned listings = m_d->listings;
    QComboBox* const history = m_d->ui.directoryComboBox;
    int index = history->findText(path_, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index == -1) {
        index = history->count();
        history->addItem(path_);
    }
    if (m_d->listings == listings)
        history->setCurrentIndex(index);
    if (m_d->listings != listings)
        return;
    getCandidatesList();
    updateButtons();
}

void multiPathSelectDialog_t::updateButtons()
{
    const Ui_multiPathSelectDialog& ui = m_d->ui;
    ui.addButton->setEnabled(ui.candidatesListView->selectionModel()->hasSelection());
    ui.addAllButton->setEnabled(m_d->candidatesModel->rowCount() > 0);
    ui.deleteButton->setEnabled(ui.selectedListView->selectionModel()->hasSelection());
    ui.deleteAllButton->setEnabled(m_d->selectedModel->rowCount() > 0);
}

void multiPathSelectDialog_t::getCandidatesList()
{
    ++m_d->listings;
    m_d->currentDir = QDir(m_d->ui.directoryComboBox->currentText());
    m_d->candidatesModel->setStringList(
        m_d->currentDir.entryList(m_d->filters, m_d->fdFilters, QDir::NoSort));
}

void multiPathSelectDialog_t::addToSelected(const QStringList& paths)
{
    QStringList all = m_d->selectedModel->stringList() + paths;
    all.removeDuplicates();
    all.sort();
    m_d->selectedModel->setStringList(all);
    updateButtons();
}

mfsDialog_t::mfsDialog_t(const QStringList& nameFilters, QWidget* parent)
    : multiPathSelectDialog_t(nameFilters, parent)
{
    setWindowTitle(tr("Select Files"));
    setFileDialogCaption(tr("Select Files From"));
    setFdFilters(QDir::Files | QDir::NoSymLinks);
    ui()->candidateLabel->setText(tr("Files"));
    ui()->selectedLabel->setText(tr("Selected Files"));
}

mdsDialog_t::mdsDialog_t(const QStringList& nameFilters, QWidget* parent)
    : multiPathSelectDialog_t(nameFilters, parent)
{
    setWindowTitle(tr("Select Directories"));
    setFileDialogCaption(tr("Select Directories From"));
    setFdFilters(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    ui()->candidateLabel->setText(tr("Directories"));
    ui()->selectedLabel->setText(tr("Selected Directories"));
}
} // namespace zorbin_qt_gui
