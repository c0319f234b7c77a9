#pragma once
#include "zorbinQtGuiExport.h"

#include <QRgb>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zorbin_qt_gui {

/// The colours with which survey data are drawn: for each of two display colour depths an ordered
/// colour table, which colourers index by value, and a set of named ("keyed") colours.
///
/// A palette is filled once, from a file or by hand, and then read. The first table set for a depth
/// stays for the object's life, unless load() set it and then failed: load each file into a fresh
/// palette. File names are bytes in the local encoding; a name with a 0 byte is refused. Colours
/// are 0xAARRGGBB; those from files are opaque. Needs a QApplication, from whose primary screen it
/// takes the display's depth when it is made. GUI thread only.
class ZORBIN_QT_GUI_EXPORT palette_t
{
public:
    /// Which displays a table is meant for. Of type int, so that any other number is well-defined.
    enum colorDepth_t : int
    {
        DEPTH_8 = 0, ///< fewer than 24 bits per pixel
        DEPTH_24 = 1 ///< 24 bits per pixel or more
    };

    /// The palettes installed with the library, by file name.
    enum standardPalette_t : int
    {
        SP_BATHY = 0,      ///< "bathy.wp"
        SP_IMAGERY = 1,    ///< "imagery.wp"
        SP_INTENSITY = 2,  ///< "intensity.wp"
        SP_SIDESCAN = 3,   ///< "sidescan.wp"
        SP_SUBBOTTOM = 4,  ///< "subbottom.wp"
        SP_WATERCOLUMN = 5 ///< "watercolumn.wp"
    };

    /// Makes an empty palette.
    palette_t();
    ~palette_t();

    /// The table to draw with on this display: the one set for its depth, else the one set for the
    /// other depth. Empty if there is none.
    std::vector<unsigned int> colorTable() const;
    /// The table set for \p depth itself; empty if none was set or \p depth is not a depth.
    std::vector<unsigned int> colorTable(const colorDepth_t& depth) const;
    /// Sets the table of \p depth, unless one has been set before: that one stays, whatever it
    /// holds, also after clear(). A \p depth that is not a depth is ignored.
    void setColorTable(const std::vector<unsigned int>& table, const colorDepth_t& depth);

    /// Looks a colour up by name. A 24-bit display searches its own colours first and then those of
    /// 8 bits, an 8-bit display only its own. Returns false and leaves \p color alone if there is
    /// no such name.
    bool keyedColor(const std::string& key, QRgb& color) const;
    /// The keyed colours of \p depth; empty if there are none or \p depth is not a depth.
    std::map<std::string, unsigned int> keyedColor(const colorDepth_t& depth) const;
    /// Sets or overwrites a keyed colour. A \p depth that is not a depth is ignored.
    void setKeyedColor(const std::string& key, QRgb color, const colorDepth_t& depth);

    /// Removes all keyed colours and empties the tables in place: a depth whose table was set keeps
    /// an empty one, which setColorTable() won't replace.
    void clear();

    /// Clears the palette, then reads a file in the format that the name ends in, in upper or lower
    /// case: ".xml" or ".wp" (xmlPaletteHandler_t) or ".jsp" (jspPaletteHandler_t). Returns false
    /// for any other ending and for a file that can't be opened or understood; the palette then
    /// holds what had been read before the fault, until the next load() replaces it.
    bool load(const std::string& fileName);
    /// Loads a standard palette from the directory "palette" of the installation's resource
    /// directory (zorbin_qt::resourceDir()). A value outside the enumeration clears the palette and
    /// returns false.
    bool load(standardPalette_t which);
    /// Writes the palette in the XML format to a file whose name ends in ".wp", in upper or lower
    /// case, beside a former file, which stays if that fails (xmlPaletteHandler_t::save()). Any
    /// other name, ".xml" included, returns false and writes nothing.
    bool save(const std::string& fileName) const;

private:
    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
