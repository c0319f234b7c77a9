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
    /// Reads \p fileName into \p palette without clearing it first. The name is looked up as QFile
    /// looks it up: ":/NAME" is a resource, "PREFIX:NAME" may be in a search path. What is
    /// well-formed, and in which encodings, is decided as by QDomDocument of the Qt in use. Returns
    /// false, and leaves in the palette what was read before, if the file
    /// - has a name with a 0 byte, can't be opened, or is neither a regular file nor a resource;
    /// - isn't well-formed: a debug message gives QDomDocument's reason and the place;
    /// - isn't a palette: another root, a kind of table that is missing, an element that doesn't
    ///   belong in a table, a keyed colour without a key;
    /// - is too much, which a debug message says ("palette_t::load:  more than 64 MiB"): more than
    ///   64 MiB; more than a million entries in all tables; elements nested more than 5000 deep;
    ///   more than a million attributes in one element (Qt 6: 30000); a document type that declares
    ///   entities (Qt 6: or attributes) by more than 16 KiB, or that nests parentheses more than
    ///   5000 deep; entities in place of which there are more than 64 MiB of text.
    bool load(const std::string& fileName, palette_t* palette);

    /// Writes the tables and keyed colours that were set, always the same bytes for the same
    /// palette. In the colour tables green and blue are exchanged, and all keyed colours are
    /// written with a depth of "8"; so both come back when the file is read.
    ///
    /// The new file is written beside a former one and replaces it only when it is complete, so a
    /// full disk leaves the former file. Links are followed; permissions stay, and owner and group
    /// as far as the process may set them. A file is written in place if no other one can be made
    /// in its directory, if its directory doesn't let it be replaced, if its name is no text in the
    /// local encoding or leaves no room for an ending of 7 bytes, and if it is no regular file.
    ///
    /// Returns false if not everything was written or the name has a 0 byte. Returns false with a
    /// debug message, and leaves a former file, if load() would refuse the file: more than a
    /// million entries or 64 MiB; with Qt 6 a key with control characters other than tab and line
    /// ends. A palette with an empty key is written but can't be read.
    bool save(const std::string& fileName, const palette_t* palette);
};
} // namespace zorbin_qt_gui
