// Loads the standard palettes from where the installation keeps them, which works only if that is
// where the library was built for. Its exit status says whether all are there.
#include <zorbin-qt-gui/palette.h>

#include <QGuiApplication>
#include <cstdio>

using zorbin_qt_gui::palette_t;

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    for (int which = palette_t::SP_BATHY; which <= palette_t::SP_WATERCOLUMN; ++which) {
        palette_t palette;
        if (!palette.load(static_cast<palette_t::standardPalette_t>(which)) ||
            palette.colorTable().empty()) {
            std::fprintf(stderr, "standardPalettes: palette %d is not there\n", which);
            return 1;
        }
    }
    return 0;
}
