#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QFrame>
#include <memory>

namespace zorbin_qt_gui {
struct slidingGaugePrivate_t;

/// A bar gauge for one controlled quantity: a bar from a reference point to the measured value
/// (feedback) and a line across it at the commanded value (setpoint), on a linear scale. The
/// feedback is also shown as a whole number.
///
/// Values are in the caller's unit and never clamped; what lies outside the scale is clipped by the
/// widget. Every setter repaints when something changes and emits nothing. GUI thread only.
/// \image html slidingGauges.png
class ZORBIN_QT_GUI_EXPORT slidingGauge_t : public QFrame
{
    Q_OBJECT
    /// Where the bar begins, 0.0 at first.
    Q_PROPERTY(double referencePoint READ referencePoint WRITE setReferencePoint)
    /// The commanded value, where the line is; 0.0 at first.
    Q_PROPERTY(double setpoint READ setpoint WRITE setSetpoint)
    /// The measured value, where the bar ends; 0.0 at first.
    Q_PROPERTY(double feedback READ feedback WRITE setFeedback)
    /// The direction of the bar, Qt::Vertical at first.
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)

public:
    /// Makes a vertical gauge from 0 to 1, all values 0, without a frame.
    explicit slidingGauge_t(QWidget* parent = nullptr);
    ~slidingGauge_t() override;

    double minimum() const;              ///< The scale's lower or left end.
    double maximum() const;              ///< The scale's upper or right end.
    double range() const;                ///< maximum() - minimum().
    double referencePoint() const;       ///< Where the bar begins.
    double setpoint() const;             ///< Where the line is.
    double feedback() const;             ///< Where the bar ends.
    Qt::Orientation orientation() const; ///< The direction of the bar.

    /// Sets the scale's ends. Unless \p max exceeds \p min the call is refused: the scale stays as
    /// it was and a debug message is written.
    void setRange(double min, double max);
    /// Sets where the bar begins, 0.0 at first.
    void setReferencePoint(double value);
    /// Sets the commanded value, 0.0 at first.
    void setSetpoint(double value);
    /// Sets the measured value, 0.0 at first.
    void setFeedback(double value);
    /// Sets the direction of the bar: Qt::Vertical, with values growing upwards, at first.
    void setOrientation(const Qt::Orientation& orientation);
    /// Sets whether the feedback is shown as text, true at first.
    void showValue(bool show);
    /// Sets the colour of the bar, Qt::green at first.
    void setFillColor(const QColor& color);
    /// Sets the colour of the setpoint's line, Qt::red at first.
    void setLineColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const std::unique_ptr<slidingGaugePrivate_t> m_d;
};
} // namespace zorbin_qt_gui
