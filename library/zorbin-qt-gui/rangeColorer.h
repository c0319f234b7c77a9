#pragma once
#include "colorer.h"

namespace zorbin_qt_gui {

/// Stretches a range of values over the whole table: the range's first value gets the first entry,
/// its last value and everything beyond the last one, everything before the range the first.
class ZORBIN_QT_GUI_EXPORT rangeColorer_t : public colorer_t
{
public:
    /// Makes a colourer that gives every value the first entry.
    rangeColorer_t();
    ~rangeColorer_t() override;

    /// Sets the value of the first entry and the one at the table's end, in the samples' unit. Call
    /// setPalette() first: the scale follows from the size of the table at this moment and stays
    /// when another one is set.
    ///
    /// Equal values move the start and keep the scale that was. With \p minVal above \p maxVal the
    /// scale is negative: the table runs downwards from \p minVal, above which all get the first
    /// entry.
    void setRangeValues(float minVal, float maxVal);

    /// The entry at (value - minVal) * entries / (maxVal - minVal), its fraction dropped, at least
    /// the first and at most the last. NaN and entries from 2^31 on get the first entry.
    QRgb color(float value) const override;

    /// Always true.
    bool _isInitialized() const override;

    void colors(const float* values, QRgb* colors, unsigned count) const override;

private:
    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
