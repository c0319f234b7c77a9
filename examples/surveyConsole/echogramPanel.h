#pragma once
#include "pingPanel.h"

class QCheckBox;
class QComboBox;

namespace survey_console {
class pingTimeAxis_t;

/// An echosounder's record and what it is called.
struct echogram_t
{
    QString name;
    sonarRecord_t record; ///< holds at least one ping
};

/// Records of an echosounder, such as those of its frequencies, one of them as a waterfall that
/// runs to the left between rulers of depth and time. The depth that the instrument itself has
/// found is drawn over it and shown as a number.
///
/// At first it shows twice the depth of what the instrument took for the bottom.
class echogramPanel_t : public pingPanel_t
{
    Q_OBJECT
public:
    /// Shows the first of \p echograms, which must outlive the panel and of which there is at least
    /// one.
    explicit echogramPanel_t(const std::vector<echogram_t>& echograms, QWidget* parent = nullptr);

    /// Which record is chosen, to be chosen again in another run; empty for the first one.
    QString beamChoice() const;
    /// Goes over to such a record, if it is there.
    void chooseBeamAgain(const QString& choice);
    /// Whether the depth that the instrument has found is drawn, true at first.
    bool showsDepth() const;
    void showDepth(bool show);

protected:
    QString pointedText(const ping_t& ping, double coord) const override;

private:
    QWidget* makeDepth();
    void chooseBeam(int row);
    void showPings(int begin, int end);

    const std::vector<echogram_t>& m_echograms;
    pingTimeAxis_t* m_timeAxis;
    QComboBox* m_beamBox;
    QCheckBox* m_depthBox;
    QLabel* m_depthLabel;
};

} // namespace survey_console
