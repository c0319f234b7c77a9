#pragma once
#include "sounder.h"
#include "spFbUiWrapper.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QPushButton;

namespace survey_console {

/// The controls of a sounder. The lamp beside each tells whether the sounder has what is set, has
/// been asked for it, or has something else, and a line of text below says the same in words.
class sounderPanel_t : public QWidget
{
    Q_OBJECT
public:
    explicit sounderPanel_t(QWidget* parent = nullptr);

    sounder_t* sounder() { return &m_sounder; }
    const zorbin_qt_gui::spFbUiWrapper_t& binder() const { return m_binder; }

public Q_SLOTS:
    /// Lets the sounder drift as far as it does in \p seconds_ from the start of the replay.
    void showTime(double seconds_);

private:
    zorbin_qt_gui::indicator_t* addRow(const QString& name, const char* objectName,
                                       QWidget* widget);
    void send(int setting);
    void takeReport(int setting, const QVariant& value, bool isAnswer);
    void showState();

    sounder_t m_sounder;
    zorbin_qt_gui::spFbUiWrapper_t m_binder;
    QGridLayout* m_layout;
    QLabel* m_stateLabel;
    QPushButton* m_discardButton;
    std::array<int, sounder_t::SETTING_COUNT> m_underWay = {}; // requests without an answer
    int m_drifts = 0;                                          // that have been
};

} // namespace survey_console
