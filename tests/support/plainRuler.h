#pragma once
#include <QFont>
#include <QImage>
#include <QPalette>
#include <QSize>
#include <functional>
#include <limits>
#include <optional>
#include <ruler.h>
#include <string>
#include <vector>

/// A ruler's ticks and picture, written as plainly as their rules can be told: every tick is laid
/// and drawn, however many share a pixel, every label of every candidate is made and measured,
/// nothing is kept from one search for the next but what counts, and lines are filled column by
/// column. What is set here takes effect without any comparison; call forgetTicks() where a ruler
/// would compute them again.
class plainRuler_t
{
public:
    using ruler_t = zorbin_qt_gui::ruler_t;
    using location_t = ruler_t::location_t;
    using tick_t = ruler_t::tick_t;
    using fit_t = ruler_t::fit_t;

    explicit plainRuler_t(const QFont& font);

    void setRange(double a, double b);
    /// As a resize event does.
    void setSize(QSize size);
    void setLocation(location_t edge);
    void setTable(const std::vector<ruler_t::tickEntry_t>& entries, double base);
    void setStep(int n);
    void forgetTicks() { m_areTicksKnown = false; }

    double pixelToValue(int px) const;
    int valueToPixel(double value) const;
    unsigned numDecimals() const;
    /// The label of a ruler that isn't subclassed.
    std::string numberText(double value) const;
    fit_t calculateFit(double interval) const;
    bool labelFit(double interval);
    void calculateTickPlacement();

    /// What painting does before it draws: ticks if there are none, and the size that labels need.
    void prepareToPaint();
    /// Draws onto \p background, which must have the size().
    QImage drawnOn(const QImage& background, const QPalette& palette) const;

    const std::vector<tick_t>& ticks() const { return m_ticks; }
    QSize size() const { return m_size; }
    QSize minimumSize() const { return m_minimumSize; }
    double start() const { return m_start; }
    double end() const { return m_end; }

    std::function<std::string(double value)> textFromValue; ///< numberText() at first
    Qt::Orientation textOrientation = Qt::Horizontal;
    unsigned majorLength = 8;
    unsigned minorLength = 4;
    unsigned spacing = 5;
    bool isInverted = false;
    bool showMinor = true;
    bool showText = true;
    double axisMin = std::numeric_limits<double>::lowest();
    double axisMax = std::numeric_limits<double>::max();
    std::optional<std::pair<double, double>> highlight;
    std::optional<double> indicator;

private:
    bool isHorizontal() const;
    bool isVertical() const;
    double base() const;
    void updateScale();
    qint64 countTicks(double interval, fit_t& fit) const;
    void addTicks(tick_t::type_t type, double interval);
    void climbTo(int n);
    unsigned positionOf(double value) const;
    unsigned extentAlong(const std::string& label) const;
    bool isLabelDrawn(const tick_t& tick) const;
    void drawTick(QPainter& painter, const tick_t& tick) const;
    void drawLabel(QPainter& painter, const tick_t& tick) const;

    QFont m_font;
    location_t m_location = ruler_t::BOTTOM;
    QSize m_size;
    QSize m_minimumSize = QSize(0, 0);
    double m_start = 0.0;
    double m_end = 0.0;
    std::vector<ruler_t::tickEntry_t> m_table = {{1.0, 10}, {2.0, 10}, {2.5, 10}, {5.0, 10}};
    double m_base = 10.0;
    int m_step = 0;
    double m_scalar = 1.0;
    double m_interval = 1.0;
    unsigned m_pixels = 0;
    double m_range = 0.0;
    double m_pxScale = 1.0;
    fit_t m_majorFit;
    bool m_areTicksKnown = false;
    std::vector<tick_t> m_ticks;
};
