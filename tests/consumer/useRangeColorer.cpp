#include <zorbin-qt-gui/rangeColorer.h>

unsigned colorOfLevel(float level)
{
    zorbin_qt_gui::palette_t palette;
    palette.load("levels.wp");
    zorbin_qt_gui::rangeColorer_t colorer;
    colorer.setPalette(palette);
    colorer.setRangeValues(-60.0F, 0.0F);
    return colorer.isInitialized() ? colorer.color(level) : 0;
}
