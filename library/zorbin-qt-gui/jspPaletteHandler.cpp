#include "jspPaletteHandler.h"

#include "palette.h"
#include "regularFile_p.h"

#include <cstdio>
#include <unistd.h>

namespace zorbin_qt_gui {

bool jspPaletteHandler_t::load(const std::string& fileName, palette_t* palette)
{
    const int descriptor = openRegularFile(fileName);
    if (descriptor == -1)
        return false;
    std::FILE* const file = fdopen(descriptor, "r");
    if (file == nullptr) { // GCOVR_EXCL_START It takes a lack of memory.
        close(descriptor);
        return false;
    } // GCOVR_EXCL_STOP
    std::vector<unsigned int> table;
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    // The format is what this conversion makes of the text: signs are taken, numbers wrap.
    while (std::fscanf(file, "%*u %u %u %u", &red, &green, &blue) == 3) // NOLINT(cert-err34-c)
        table.push_back(0xFF000000U | (red & 0xFFU) << 16U | (green & 0xFFU) << 8U |
                        (blue & 0xFFU));
    std::fclose(file);
    palette->setColorTable(table, palette_t::DEPTH_24);
    return true;
}

bool jspPaletteHandler_t::save(const std::string& /*fileName*/, const palette_t* /*palette*/)
{
    return false;
}
} // namespace zorbin_qt_gui
