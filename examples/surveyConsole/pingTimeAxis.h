#pragma once
#include <QWidget>
#include <vector>

namespace survey_console {
class pingModel_t;
class timeRuler_t;

/// The time rulers below a waterfall whose pings run to the left: one for each stretch of pings
/// that came in order and without a gap, such as a record that starts over. Along a stretch time is
/// taken to pass evenly, as a ruler must.
class pingTimeAxis_t : public QWidget
{
    Q_OBJECT
public:
    /// Shows the times of the pings of \p model, which must outlive the axis.
    explicit pingTimeAxis_t(const pingModel_t* model, QWidget* parent = nullptr);

    /// Sets the time between two pings, in seconds, from which on it is a gap. Infinite at first.
    void setGap(double seconds);

    /// Shows the pings from \p begin up to, but without, \p end, one a column; those that there
    /// are.
    void follow(int begin, int end);
    /// Points an arrow at a ping; at none if it doesn't show.
    void point(int index);

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    // Pings that came in order, without a gap, and the ruler that shows their times.
    struct stretch_t
    {
        int begin; // the first one
        int end;   // one past the last one
        timeRuler_t* ruler;
    };

    int endOfStretch(int first, int end) const;
    double startOf(int index, const stretch_t& stretch) const;
    void place(const stretch_t& stretch);

    const pingModel_t* const m_model;
    double m_gap; // s
    int m_begin = 0;
    std::vector<stretch_t> m_stretches; // those that show, from the left
    std::vector<timeRuler_t*> m_rulers; // as many as have been needed; the first ones show
};

} // namespace survey_console
