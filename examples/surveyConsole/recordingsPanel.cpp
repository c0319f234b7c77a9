#include "recordingsPanel.h"
#include "labels.h"
#include "multiPathSelectDialog.h"
#include "recordingReader.h"
#include "theme.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using zorbin_qt_gui::mdsDialog_t;
using zorbin_qt_gui::mfsDialog_t;

namespace survey_console {
namespace {

const int PATH_ROLE = Qt::UserRole;

// In folders, texts are mostly notes that lie beside the recordings.
QStringList nameFiltersInFolders()
{
    QStringList filters = recordingNameFilters();
    filters.removeAll(QStringLiteral("*.txt"));
    return filters;
}

// Left to the space bar, which pauses the replay, unless the user goes there by the Tab key.
QPushButton* makeButton(const char* name, const QString& text, const QString& toolTip)
{
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(toolTip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

recordingsPanel_t::recordingsPanel_t(QWidget* parent)
    : QFrame(parent), m_list(new QListWidget),
      m_removeButton(makeButton("removeButton", tr("Remove"),
                                tr("Take the selected recordings off the list; the files stay"))),
      m_replayButton(makeButton("replayRecordingButton", tr("Replay"),
                                tr("Replay the current recording (Enter)"))),
      m_messageLabel(makeLabel(theme::paused(), 1.0, Qt::AlignLeft | Qt::AlignTop))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(tr("Recordings"));
    m_list->setObjectName(QStringLiteral("recordingList"));
    m_list->setToolTip(tr("The recordings to choose from; Enter or a double click replays one"));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_messageLabel->setObjectName(QStringLiteral("recordingsMessageLabel"));
    m_messageLabel->setTextFormat(Qt::PlainText);
    m_messageLabel->setWordWrap(true);
    m_messageLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // keeps the width
    m_messageLabel->hide();
    auto* filesButton = makeButton("addFilesButton", tr("Add files\u2026"),
                                   tr("Choose recordings from any number of folders"));
    auto* foldersButton = makeButton("addFoldersButton", tr("Add folders\u2026"),
                                     tr("Choose folders whose recordings to add"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(filesButton);
    buttons->addWidget(foldersButton);
    buttons->addWidget(m_removeButton);
    buttons->addStretch();
    buttons->addWidget(m_replayButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 10);
    layout->setSpacing(6);
    layout->addWidget(title);
    layout->addLayout(buttons); // above the list: notices cover the lower edge
    layout->addWidget(m_messageLabel);
    layout->addWidget(m_list, 1);

    connect(filesButton, &QPushButton::clicked, this, &recordingsPanel_t::chooseFiles);
    connect(foldersButton, &QPushButton::clicked, this, &recordingsPanel_t::chooseFolders);
    connect(m_removeButton, &QPushButton::clicked, this, &recordingsPanel_t::removeSelected);
    connect(m_replayButton, &QPushButton::clicked, this, [this] { choose(m_list->currentItem()); });
    connect(m_list, &QListWidget::itemActivated, this, &recordingsPanel_t::choose);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &recordingsPanel_t::updateButtons);
    connect(m_list, &QListWidget::currentItemChanged, this, &recordingsPanel_t::updateButtons);
    updateButtons();
}

void recordingsPanel_t::addFiles(const QStringList& paths)
{
    QListWidgetItem* first = nullptr;
    for (const QString& path : paths) {
        QListWidgetItem* item = addFile(path);
        if (!first)
            first = item;
    }
    if (first)
        m_list->setCurrentItem(first, QItemSelectionModel::ClearAndSelect);
}

void recordingsPanel_t::addFolders(const QStringList& paths)
{
    QStringList files;
    QStringList without;
    for (const QString& path : paths) {
        const QDir folder(path);
        const QStringList names = folder.entryList(nameFiltersInFolders(), QDir::Files, QDir::Name);
        for (const QString& name : names)
            files += folder.filePath(name);
        if (names.isEmpty())
            without += QStringLiteral("'%1'").arg(path);
    }
    addFiles(files);
    showMessage(without.isEmpty()
                    ? QString()
                    : tr("no recordings in %1").arg(without.join(QStringLiteral(", "))));
}

QStringList recordingsPanel_t::files() const
{
    QStringList paths;
    for (int row = 0; row < m_list->count(); ++row)
        paths += m_list->item(row)->data(PATH_ROLE).toString();
    return paths;
}

void recordingsPanel_t::showReplayed(const QString& path)
{
    QListWidgetItem* replayed = addFile(path);
    m_replayed = replayed->data(PATH_ROLE).toString();
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem* item = m_list->item(row);
        QFont font = m_list->font();
        font.setBold(item == replayed); // seen in the selection, too, which has one colour
        item->setFont(font);
        item->setForeground(item == replayed ? theme::firstCurve() : theme::text());
    }
    m_list->setCurrentItem(replayed, QItemSelectionModel::ClearAndSelect);
}

void recordingsPanel_t::showMessage(const QString& message)
{
    m_messageLabel->setText(message);
    m_messageLabel->setVisible(!message.isEmpty());
}

// The entry of a file, a new one unless it is listed already. Recordings of several lines often
// have the same name, so that of the folder stands before it.
QListWidgetItem* recordingsPanel_t::addFile(const QString& path)
{
    const QFileInfo info(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    const auto row = static_cast<int>(files().indexOf(info.filePath()));
    if (row >= 0)
        return m_list->item(row);
    auto* item =
        new QListWidgetItem(info.dir().dirName() + QLatin1Char('/') + info.fileName(), m_list);
    item->setData(PATH_ROLE, info.filePath());
    item->setToolTip(info.filePath());
    return item;
}

// Where the dialogs start: beside what is replayed.
QString recordingsPanel_t::directory() const
{
    return m_replayed.isEmpty() ? QDir::currentPath() : QFileInfo(m_replayed).absolutePath();
}

// The replay goes on behind it.
void recordingsPanel_t::chooseFiles()
{
    auto* dialog = new mfsDialog_t(recordingNameFilters(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setDirectory(directory());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        showMessage(QString());
        addFiles(dialog->selected());
    });
    dialog->open();
}

void recordingsPanel_t::chooseFolders()
{
    auto* dialog = new mdsDialog_t({}, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setDirectory(QDir::cleanPath(directory() + QStringLiteral("/..")));
    connect(dialog, &QDialog::accepted, this, [this, dialog] { addFolders(dialog->selected()); });
    dialog->open();
}

void recordingsPanel_t::removeSelected()
{
    qDeleteAll(m_list->selectedItems());
    showMessage(QString());
    updateButtons();
}

void recordingsPanel_t::choose(const QListWidgetItem* item)
{
    if (item)
        Q_EMIT recordingChosen(item->data(PATH_ROLE).toString());
}

void recordingsPanel_t::updateButtons()
{
    m_removeButton->setEnabled(!m_list->selectedItems().isEmpty());
    m_replayButton->setEnabled(m_list->currentItem());
}

} // namespace survey_console
