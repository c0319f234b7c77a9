#pragma once
#include "ui_multiPathSelectDialog.h"
#include "zorbinQtGuiExport.h"

#include <QDialog>
#include <QDir>
#include <QStringList>
#include <memory>

namespace zorbin_qt_gui {

/// A dialog in which the user goes to directories and collects entries of them in a list of paths.
/// Run it with exec() and read selected() once it was accepted; an empty list can be accepted, too.
/// Applications take one for files (mfsDialog_t) or for directories (mdsDialog_t).
///
/// The dialog may be deleted while its directory browser is open; the browser goes with it. Slots
/// of accepted(), rejected() and finished(), and of the widgets of ui(), need deleteLater(): Qt
/// still uses the dialog after them. GUI thread only. \image html multiPathSelectDialog.png
class ZORBIN_QT_GUI_EXPORT multiPathSelectDialog_t : public QDialog
{
    Q_OBJECT

public:
    /// Makes a dialog in the current directory of the process. It offers entries whose names match
    /// one of \p nameFilters, wildcards; of any name if there are none. It offers nothing until
    /// setFdFilters() has asked for a kind of entries and setDirectory() has listed them, or the
    /// user: mfsDialog_t and mdsDialog_t need setDirectory(), too.
    explicit multiPathSelectDialog_t(const QStringList& nameFilters, QWidget* parent = nullptr);
    ~multiPathSelectDialog_t() override;

    /// The paths chosen, absolute; sorted and each once, unless setSelected() has set them since.
    QStringList selected() const;
    /// How many paths are chosen.
    unsigned int numSelected() const;
    /// Chooses these paths, in this order, instead of those that were. An empty list is ignored.
    void setSelected(const QStringList& paths);

    /// Goes to a directory. An empty path is ignored, one that can't be read offers nothing. A slot
    /// of the combo box may call it: the dialog goes on to that directory.
    void setDirectory(const QString& path);

    /// The caption of the dialog that browses for a directory.
    QString fileDialogCaption() const;
    /// Sets it; empty at first.
    void setFileDialogCaption(const QString& caption);

    /// Which kinds of entries are offered.
    QDir::Filters fdFilters() const;
    /// Sets it, from the next change of the directory on; QDir::Filters() at first, which are none.
    void setFdFilters(QDir::Filters filters);

    /// The widgets of the dialog; owned by the dialog.
    Ui_multiPathSelectDialog* ui();

public Q_SLOTS:
    /// Asks the user for a directory and goes there.
    void browseClicked();
    /// Adds the selected entries of the directory to the paths chosen.
    void addClicked();
    /// Adds all entries.
    void addAllClicked();
    /// Removes the selected ones of the paths chosen.
    void deleteClicked();
    /// Removes all of them.
    void deleteAllClicked();
    /// Goes to a directory and keeps it among those to choose from. An empty path is ignored.
    void handleDirectoryChange(const QString& path_);
    /// Enables the buttons that have something to act on.
    void updateButtons();

private:
    void getCandidatesList();
    void addToSelected(const QStringList& paths);

    struct private_t;
    const std::unique_ptr<private_t> m_d;
};

/// A dialog that collects files, without symbolic links.
class ZORBIN_QT_GUI_EXPORT mfsDialog_t : public multiPathSelectDialog_t
{
    Q_OBJECT

public:
    /// Makes a dialog for files whose names match one of \p nameFilters, wildcards; of any name if
    /// there are none. It offers nothing before setDirectory().
    explicit mfsDialog_t(const QStringList& nameFilters, QWidget* parent = nullptr);
};

/// A dialog that collects directories, without symbolic links.
class ZORBIN_QT_GUI_EXPORT mdsDialog_t : public multiPathSelectDialog_t
{
    Q_OBJECT

public:
    /// Makes a dialog for directories whose names match one of \p nameFilters, wildcards; of any
    /// name if there are none. It offers nothing before setDirectory().
    explicit mdsDialog_t(const QStringList& nameFilters, QWidget* parent = nullptr);
};
} // namespace zorbin_qt_gui
