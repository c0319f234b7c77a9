#include <zorbin-qt-gui/cycleColorer.h>

unsigned colorOfDepth(float depth)
{
    zorbin_qt_gui::palette_t palette;
    palette.load("depths.wp");
    zorbin_qt_gui::cycleColorer_t colorer;
    colorer.setPalette(palette);
    colorer.setInterval(5.0F);
    return colorer.isInitialized() ? colorer.color(depth) : 0;
}
