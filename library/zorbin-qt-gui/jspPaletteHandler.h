#pragma once
#include "zorbinQtGuiExport.h"

#include <string>

namespace zorbin_qt_gui {
class palette_t;

/// Reads palettes in the JSP format: plain text, for each entry of the table four decimal numbers
/// between white space: entry number (ignored; entries count in their order), red, green, blue. The
/// low 8 bits of a component count. palette_t::load() calls it and is what an application normally
/// uses.
class ZORBIN_QT_GUI_EXPORT jspPaletteHandler_t
{
public:
    /// Reads \p fileName as the 24-bit table of \p palette, up to the first record that isn't
    /// complete. Returns false only if the file can't be opened or isn't a regular file; an empty
    /// table is fine.
    bool load(const std::string& fileName, palette_t* palette);

    /// Returns false: this format isn't written.
    bool save(const std::string& fileName, const palette_t* palette);
};
} // namespace zorbin_qt_gui
