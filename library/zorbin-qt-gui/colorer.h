#pragma once
#include "palette.h"
#include "zorbinQtGuiExport.h"

#include <QRgb>
#include <memory>
#include <vector>

namespace zorbin_qt_gui {

/// Maps a sample (a depth, an intensity, a backscatter value) to a colour of a table that it took
/// from a palette. How a value selects an entry is the subclass's business: rangeColorer_t
/// stretches a range over the table, cycleColorer_t repeats the table. Colours are 0xAARRGGBB.
///
/// Any thread, one at a time; operations that only read may run in several threads together.
class ZORBIN_QT_GUI_EXPORT colorer_t
{
public:
    /// Makes a colourer without a table.
    colorer_t();
    virtual ~colorer_t();

    /// Copies the table that \p p holds for the display's depth (palette_t::colorTable()).
    void setPalette(const palette_t& p);
    /// The table in use; empty until setPalette().
    const std::vector<unsigned int>& colorTable() const;
    /// Whether color() has what it needs: a table that isn't empty, and what the subclass asks for.
    bool isInitialized() const;

    /// The colour of \p value; 0 as long as the table is empty.
    virtual QRgb color(float value) const = 0;

    /// For subclasses: whether all but the table is there.
    virtual bool _isInitialized() const = 0;

    /// Writes color() of each of \p count \p values to \p colors. The colourers of this library do
    /// it faster than one by one, with the same result; a subclass may do likewise.
    virtual void colors(const float* values, QRgb* colors, unsigned count) const;

private:
    friend class cycleColorer_t;
    friend class rangeColorer_t;
    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
