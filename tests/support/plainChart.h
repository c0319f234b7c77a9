#pragma once
#include "plainCurve.h"

#include <QStringList>
#include <QWidget>
#include <vector>

class plainCanvas_t;

/// What a strip chart shows and says, written as plainly as its rules can be told: a window of its
/// own that asks Qt for the same scrolling and painting and draws every line by itself.
class plainChart_t : public QWidget
{
public:
    plainChart_t();

    /// The curves are drawn in the order in which they were added; not owned.
    void addCurve(plainCurve_t* curve);
    void removeCurve(plainCurve_t* curve);
    void scrollTime(double time);
    void timeBounds(double min, double max);
    void valueBounds(double min, double max);
    void minValueRange(double range);
    void autoscaleValue(bool enable);
    void setBackgroundColor(const QColor& color);

    /// The signals so far, e.g. "timeBoundsChanged(-15, 0)"; pointer positions are left out.
    QStringList takeSignals();

    double timeMin = -15.0;
    double timeMax = 0.0;
    double valueMin = -1.0;
    double valueMax = 1.0;

private:
    friend class plainCanvas_t;

    void updateSize(int width, int height);
    void updateChart(double fromTime, double toTime);
    void recalculateBounds();

    std::vector<plainCurve_t*> m_curves;
    plainCanvas_t* const m_canvas;
    QColor m_color;
    int m_width = 1;
    int m_height = 1;
    bool m_autoscale = true;
    double m_xScale = 1.0;
    double m_yScale = 1.0;
    double m_minRange = 2.0;
    int m_scroll = 0;
    QStringList m_signals;
};

/// One line of a log of signals.
QString boundsSignal(const char* name, double min, double max);
