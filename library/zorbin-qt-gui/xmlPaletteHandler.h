#pragma once
#include "zorbinQtGuiExport.h"

#include <string>

namespace zorbin_qt_gui {
class palette_t;

/// Reads and writes palettes in the XML format, the one of the standard palettes:
/// \code{.xml}
/// <palette>
///   <colorTable depth="8"> <color r="0" g="0" b="128"/> ... </colorTable>
///   <colorTable depth="24"> <color r="0" g="0" b="128"/> ... </colorTable>
///   <keyedColorTable depth="8"> <keyedColor key="grid" r="160" g="120" b="60"/> </keyedColorTable>
/// </palette>
/// \endcode
/// Both kinds of table are required, in any order and number; an empty one will do. A depth of "24"
/// means the 24-bit table, anything else the 8-bit one. Numbers are decimal, their low 8 bits
/// count, and what isn't a number counts as 0. Other children of the root, text and comments are
/// skipped.
///
/// palette_t::load() and palette_t::save() call it and are what an application normally uses.
class ZORBIN_QT_GUI_EXPORT xmlPaletteHandler_t
{
public:
    /// Reads \p fileName into \p palette without clearing it first. Returns false, and leaves in
    /// the palette what was read before, if the file
    /// - can't be opened, isn't a regular file or is larger than 16 MiB;
    /// - isn't well-formed, for which a debug message gives the place;
    /// - nests elements more than 5000 deep, has thousands of attributes in one element, or more
    ///   than a million elements, attributes, texts and comments in all;
    /// - declares entities and is larger than 16 KiB;
    /// - isn't a palette: another root, a kind of table that is missing, an element that doesn't
    ///   belong in a table, a keyed colour without a key.
    bool load(const std::string& fileName, palette_t* palette);

    /// Writes the tables and keyed colours that were set, always the same bytes for the same
    /// palette. Returns whether everything was written. In the colour tables green and blue are
    /// exchanged, and all keyed colours are written with a depth of "8"; so both come back when the
    /// file is read. Keys lose control characters other than tab and line ends, which XML lacks.
    bool save(const std::string& fileName, const palette_t* palette);
};
} // namespace zorbin_qt_gui
