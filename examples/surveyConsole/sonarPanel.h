#pragma once
#include "pingPanel.h"

namespace survey_console {
class sounderPanel_t;

/// A sidescan record as a waterfall between rulers of range and ping, running down or to the left.
/// Below the histogram are the controls of a simulated sounder.
class sonarPanel_t : public pingPanel_t
{
    Q_OBJECT
public:
    /// Shows \p record, which must outlive the panel and holds at least one ping.
    sonarPanel_t(const QString& name, const sonarRecord_t& record, QWidget* parent = nullptr);

    sounderPanel_t* sounderPanel() const { return m_sounderPanel; }

public Q_SLOTS:
    void showTime(double seconds_) override;

protected:
    QString pointedText(const ping_t& ping, double coord) const override;

private:
    void chooseOrientation(Qt::Orientation orientation);
    void pointPing(int index);

    valueRuler_t* m_pingRuler;
    sounderPanel_t* m_sounderPanel;
};

} // namespace survey_console
