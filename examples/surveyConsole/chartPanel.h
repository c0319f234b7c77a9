#pragma once
#include "curvePalette.h"
#include "rangeColorer.h"
#include "recording.h"

#include <QColor>
#include <QFrame>
#include <QString>
#include <vector>

class QLabel;
class QToolButton;

namespace zorbin_qt_gui {
class stripChart_t;
class stripChartCurve_t;
} // namespace zorbin_qt_gui

namespace survey_console {
class paletteChooser_t;
class valueRuler_t;

/// One curve of a chart panel.
struct panelCurve_t
{
    channelId_t channel;
    QString name; ///< beside the current value; may be empty for an only curve
    QColor color; ///< at first; the user may choose another
};

/// What a chart panel shows and how.
struct chartPanelSetup_t
{
    QString title;
    QString unit;
    int decimals = 1;      ///< of all values shown
    double minRange = 2.0; ///< smallest span of values that the chart shows
    bool isAngle = false;  ///< degrees: no jump at north, shown as 0 to below 360
    bool isDepth = false;  ///< grows downwards
    bool hasZeroLine = false;
    bool hasPalette = false; ///< the first curve may be coloured by value
    std::vector<panelCurve_t> curves;
};

/// A strip chart with its title, current values, value ruler and pointer read-out.
///
/// It follows a replay: showTime() feeds the samples the replay has come to and scrolls. A step
/// between samples that is long for their channel is drawn as a gap, and a current value older than
/// that is dimmed.
///
/// The value axis follows the data until the user chooses a scale on the ruler; the button "Auto"
/// below the ruler goes back to following.
///
/// The button beside a curve's value changes its colour, that of its past included. A panel with a
/// palette can colour its first curve by value instead; what the palettes have to report stands
/// where the pointer's read-out is while there is none.
class chartPanel_t : public QFrame
{
    Q_OBJECT
public:
    static constexpr double DEFAULT_SPAN = 300.0; // s of time window

    /// Copies the channels it shows from \p recording.
    chartPanel_t(const chartPanelSetup_t& setup, const recording_t& recording,
                 QWidget* parent = nullptr);
    ~chartPanel_t() override;

    zorbin_qt_gui::stripChart_t* chart() const { return m_chart; }
    paletteChooser_t* paletteChooser() const { return m_chooser; } ///< null without palettes
    valueRuler_t* valueRuler() const { return m_valueRuler; }

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /// Moves on to \p time_ (seconds), which must not be before the last one shown.
    void showTime(double time_);
    /// Shows the window that ends at \p time_, before or after what was shown.
    void jumpTo(double time_);
    /// Sets the length of the time window in seconds, DEFAULT_SPAN at first.
    void timeSpan(double seconds_);

Q_SIGNALS:
    /// The pointer is over \p time_ in the chart; NaN once it has left.
    void pointed(double time_);

private:
    struct shownCurve_t
    {
        std::vector<sample_t> samples; // as drawn: made continuous, or with depth turned negative
        std::size_t next = 0;          // the first one not fed yet
        double gap;                    // s; longer steps are gaps
        QColor color;                  // unless it is coloured by value
        zorbin_qt_gui::stripChartCurve_t* curve; // owned by the chart
        QLabel* valueLabel;                      // owned by its parent
    };

    // The chart takes the curve over.
    void addCurve(const panelCurve_t& wanted, const recording_t& recording,
                  zorbin_qt_gui::stripChartCurve_t* curve, QLabel* valueLabel);
    QWidget* makeColorPicker(std::size_t index, const QColor& color);
    QWidget* makePaletteChooser(const recording_t& recording);
    void addZeroLine(double from, double to, zorbin_qt_gui::stripChartCurve_t* line);
    void feed();
    void changeColor(std::size_t index, const QColor& color);
    void applyPalette();
    void feedAnew(shownCurve_t& shown);
    bool isColoredByValue(const shownCurve_t& shown) const;
    QColor pointColor(const shownCurve_t& shown, double drawnValue) const;
    QColor legendColor(const shownCurve_t& shown) const;
    void anchorWindow();
    void showValues();
    QWidget* makeAutoscaleButton();
    void showAutoscale(bool enabled);
    void showPointer(double time, double value);
    void showMessage();
    QString textOf(double drawnValue) const;

    const chartPanelSetup_t m_setup;
    std::vector<shownCurve_t> m_curves;
    double m_time = 0.0;          // shown last
    double m_span = DEFAULT_SPAN; // s
    zorbin_qt_gui::rangeColorer_t m_colorer;
    valueRange_t m_colorRange = {};        // of m_colorer
    paletteChooser_t* m_chooser = nullptr; // null without palettes
    bool m_hasPointer = false;             // over the chart
    zorbin_qt_gui::stripChart_t* m_chart;
    valueRuler_t* m_valueRuler;
    QToolButton* m_autoscaleButton = nullptr; // null without curves
    QLabel* m_pointerLabel;
};

} // namespace survey_console
