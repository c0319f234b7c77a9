// Uses the dialogs that collect paths, with their header alone.
#include <zorbin-qt-gui/multiPathSelectDialog.h>

using zorbin_qt_gui::mfsDialog_t;

QStringList chooseRecordings(const QString& directory);

QStringList chooseRecordings(const QString& directory)
{
    mfsDialog_t dialog({QStringLiteral("*.log")});
    dialog.setDirectory(directory);
    dialog.ui()->selectedLabel->setText(QStringLiteral("Recordings"));
    dialog.ui()->selectedListView->setAlternatingRowColors(true);
    dialog.ui()->buttonBox->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Replay"));
    return dialog.exec() == QDialog::Accepted ? dialog.selected() : QStringList();
}
