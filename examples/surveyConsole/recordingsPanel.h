#pragma once
#include <QFrame>
#include <QStringList>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace survey_console {

/// The recordings to choose from: what was added file by file or as the contents of folders, each
/// once. The one that is replayed stands out.
class recordingsPanel_t : public QFrame
{
    Q_OBJECT
public:
    explicit recordingsPanel_t(QWidget* parent = nullptr);

    /// Adds files, absolute or from the current directory on, and selects the first of them.
    void addFiles(const QStringList& paths);
    /// Adds the recordings in folders, by name, without those in folders below. Folders that hold
    /// none are named in a message.
    void addFolders(const QStringList& paths);
    /// The files, absolute, in the order of the list.
    QStringList files() const;

    /// Marks and selects the file that is replayed, adding it if need be.
    void showReplayed(const QString& path);

Q_SIGNALS:
    /// The user wants to replay the recording in the file \p path_.
    void recordingChosen(const QString& path_);

private:
    QListWidgetItem* addFile(const QString& path);
    void showMessage(const QString& message);
    QString directory() const;
    void chooseFiles();
    void chooseFolders();
    void removeSelected();
    void choose(const QListWidgetItem* item);
    void updateButtons();

    QListWidget* m_list;
    QPushButton* m_removeButton;
    QPushButton* m_replayButton;
    QLabel* m_messageLabel;
    QString m_replayed; // absolute; empty at first
};

} // namespace survey_console
