#include <zorbin-qt-gui/histogram.h>

bool showLevels(QWidget* window, const float* levels, unsigned count)
{
    auto* const histogram = new zorbin_qt_gui::histogram_t(window);
    histogram->range(-60.0F, 0.0F);
    histogram->numBins(60);
    histogram->addData(count, levels);
    histogram->highlightRange(-20.0F, -10.0F);
    return histogram->sizeHint().isValid();
}
