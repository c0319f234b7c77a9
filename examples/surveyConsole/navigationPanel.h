#pragma once
#include "recordingReader.h"

#include <QFrame>

class QButtonGroup;
class QHBoxLayout;
class QKeySequence;
class QLabel;
class QMenu;

namespace survey_console {

/// The strip on top: which page shows, which line is replayed, its time, the vessel's position, and
/// whether the replay runs.
class navigationPanel_t : public QFrame
{
    Q_OBJECT
public:
    /// \p recording must outlive the panel.
    navigationPanel_t(const QString& lineName, const lineCounts_t& counts,
                      const recording_t& recording, QWidget* parent = nullptr);

    /// Adds a button at the left that opens \p menu, which the caller owns, as does \p key.
    void setMenu(QMenu* menu, const QKeySequence& key);
    /// Adds a button for a page, right of the others, which \p key also shows.
    void addPage(int page, const QString& name, const QString& key);
    /// Marks the button of a page.
    void showPage(int page);

Q_SIGNALS:
    /// The button of a page was clicked.
    void pageChosen(int page_);

public Q_SLOTS:
    /// Shows the state at \p time_, in seconds.
    void showTime(double time_);
    /// Shows how the replay goes.
    void showReplay(bool running_, bool atEnd_, double speed_);

private:
    const recording_t& m_recording;
    QHBoxLayout* m_pageLayout;
    QButtonGroup* m_pageButtons;
    QLabel* m_timeLabel;
    QLabel* m_positionLabel;
    QLabel* m_stateLabel;
};

} // namespace survey_console
