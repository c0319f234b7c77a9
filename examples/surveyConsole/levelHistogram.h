#pragma once
#include "histogram.h"

namespace survey_console {

/// A histogram of levels on which the user drags the range that the colours are stretched over. The
/// range is highlighted.
class levelHistogram_t : public zorbin_qt_gui::histogram_t
{
    Q_OBJECT
public:
    static constexpr float MIN_SPAN = 1.0F; ///< The smallest range that can be chosen.

    explicit levelHistogram_t(QWidget* parent = nullptr);

    /// Sets the levels at the two edges.
    void setScale(float min, float max);
    /// Sets the range. Emits rangeChosen() if it is another one.
    void chooseRange(float min, float max);

    float chosenMin() const { return m_min; }
    float chosenMax() const { return m_max; }

Q_SIGNALS:
    void rangeChosen(float min_, float max_);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    float levelAt(int x) const;

    float m_scaleMin = 0.0F;
    float m_scaleMax = 1.0F;
    float m_min = 0.0F; // chosen
    float m_max = 1.0F;
    float m_dragStart = 0.0F;
};

} // namespace survey_console
