#pragma once
#include <QWidget>

namespace zorbin_qt_gui {
class stripChart_t;
}

namespace survey_console {
class timeRuler_t;

/// The time ruler of a column of charts, below them. It is as long as the charts are wide, shows
/// their time bounds and points at the time under the pointer.
class timeAxis_t : public QWidget
{
    Q_OBJECT
public:
    /// Follows \p chart, one of the column, which must outlive the axis.
    explicit timeAxis_t(zorbin_qt_gui::stripChart_t* chart, QWidget* parent = nullptr);

    timeRuler_t* ruler() const { return m_ruler; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void alignRuler();

    zorbin_qt_gui::stripChart_t* const m_chart;
    timeRuler_t* m_ruler;
};

} // namespace survey_console
