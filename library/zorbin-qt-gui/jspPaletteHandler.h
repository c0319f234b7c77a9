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
    /// complete; an empty table is fine. The name is looked up as QFile looks it up: ":/NAME" is a
    /// resource, "PREFIX:NAME" may be in a search path. Returns false, and sets no table, if the
    /// file
    /// - has a name with a 0 byte, can't be opened, or is neither a regular file nor a resource;
    /// - can't be read to its end;
    /// - is larger than 64 MiB or has more than a million entries, which a debug message says.
    bool load(const std::string& fileName, palette_t* palette);

    /// Returns false: this format isn't written.
    bool save(const std::string& fileName, const palette_t* palette);
};
} // namespace zorbin_qt_gui
