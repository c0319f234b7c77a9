#include "page.h"
#include "pages/pages.h"

#include <QFile>

// Outside of any namespace, as the macro demands: a static library doesn't register its resources.
static void initResources()
{
    Q_INIT_RESOURCE(gallery);
}

namespace gallery {

const std::vector<page_t>& pages()
{
    static const std::vector<page_t> pages = [] {
        initResources(); // pages may need them, too
        return std::vector<page_t>{
            {"stripChart", "Strip chart", makeStripChart, {640, 320}},
            {"waterfallView", "Waterfall", makeWaterfallView, {600, 400}},
            {"histogram", "Histogram", makeHistogram, {600, 260}},
            {"standardPalettes", "Standard palettes", makeStandardPalettes, {1238, 646}},
            {"colorPicker", "Colour pickers", makeColorPicker, {220, 110}},
            {"rulers", "Rulers", makeRulers, {900, 620}},
            {"slidingGauges", "Sliding gauges", makeSlidingGauges, {900, 240}},
            {"indicators", "Lamps", makeIndicators, {260, 160}},
            {"alarmLabel", "Alarm labels", makeAlarmLabel, {260, 60}},
            {"scalableTextWidget", "Text as large as fits", makeScalableTextWidget, {360, 130}},
            {"imageFrame", "Picture in a frame", makeImageFrame, {360, 200}},
            {"notifierWidget", "Notifications", makeNotifierWidget, {480, 200}},
            {"aboutBox", "About box", makeAboutBox, {360, 140}},
            {"spFbUiWrapper", "Setpoints and feedback", makeSpFbUiWrapper, {360, 120}},
            {"statusWidgets", "All status widgets", makeStatusWidgets, {760, 560}},
            {"latLonEditors", "Coordinates", makeLatLonEditors, {328, 130}},
            {"multiPathSelectDialog", "Dialog for files", makeMultiPathSelectDialog, {397, 486}},
        };
    }();
    return pages;
}

QString sourceOf(const page_t& page)
{
    initResources();
    QFile file(QStringLiteral(":/gallery/pages/%1.cpp").arg(QLatin1String(page.name)));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace gallery
