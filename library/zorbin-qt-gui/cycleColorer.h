#pragma once
#include "colorer.h"

namespace zorbin_qt_gui {

/// Repeats the table every interval times its size, so that values are banded like contours.
/// Negative values mirror positive ones.
class ZORBIN_QT_GUI_EXPORT cycleColorer_t : public colorer_t
{
public:
    /// Makes a colourer whose interval is 0.
    cycleColorer_t();
    ~cycleColorer_t() override;

    /// Sets the width of one entry's band, in the samples' unit. Taken as it is: a negative
    /// interval does what its absolute value would; with 0 or NaN all values get the entry of band
    /// 2^31.
    void setInterval(float interval);

    /// The entry at |value / interval|, its fraction dropped, counted round and round the table.
    /// The band around 0 is therefore twice as wide as the others. Bands from the 2^31st on and NaN
    /// get the entry of band 2^31.
    QRgb color(float value) const override;

    /// Always true, also while the interval is 0.
    bool _isInitialized() const override;

    void colors(const float* values, QRgb* colors, unsigned count) const override;

private:
    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
