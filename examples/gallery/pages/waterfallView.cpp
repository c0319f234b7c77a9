// A sidescan record. Look at the ruler, which shows where across the track the pointer is, and add
// pings: the view scrolls and renders nothing but their lines.

#include "pages.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <cmath>
#include <random>
#include <vector>
#include <zorbin-qt-gui/palette.h>
#include <zorbin-qt-gui/rangeColorer.h>
#include <zorbin-qt-gui/ruler.h>
#include <zorbin-qt-gui/waterfallModel.h>
#include <zorbin-qt-gui/waterfallRenderer.h>
#include <zorbin-qt-gui/waterfallView.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

constexpr double range = 75.0; // m to either side

// The application's own items: echo levels from 0 to 1, evenly spaced across the track.
class pings_t : public baseWaterfallModel_t
{
public:
    using baseWaterfallModel_t::baseWaterfallModel_t;

    // Sand ripples, a rock with its shadow and the water column, with speckle.
    void addNext()
    {
        const double along = itemCount();
        const double altitude = 9.0 + 1.5 * std::sin(along / 60.0); // m above the seabed
        std::vector<float> levels(1000);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            const double x = range * (2.0 * static_cast<double>(i) / 999.0 - 1.0); // m
            const double speckle = 0.6 + 0.8 * static_cast<double>(m_noise()) / 4294967295.0;
            const double ripple = 0.08 * std::sin(x / 1.3 + 0.8 * std::sin(along / 35.0));
            double level = 0.55 - std::abs(x) / 220.0 + (x > 20.0 ? ripple : 0.0);
            const double fromRock = std::hypot((x + 40.0) / 3.0, (along - 180.0) / 14.0);
            const double fromShadow = std::hypot((x + 49.0) / 8.0, (along - 180.0) / 14.0);
            if (fromRock < 1.0)
                level = 0.9;
            else if (fromShadow < 1.0)
                level = 0.04;
            if (std::abs(x) < altitude)
                level = 0.05;
            levels[i] = static_cast<float>(level * speckle);
        }
        m_pings.push_back(std::move(levels));
        _addItem(); // announces what has been stored
    }
    const std::vector<float>& ping(int index) const
    {
        return m_pings[static_cast<std::size_t>(index)]; // none is ever dropped
    }

private:
    std::vector<std::vector<float>> m_pings;
    std::mt19937 m_noise{1}; // the same record each time
};

// Turns a ping into a line of pixels.
class pingColors_t : public baseWaterfallRenderer_t
{
public:
    explicit pingColors_t(QObject* parent) : baseWaterfallRenderer_t(parent)
    {
        palette_t palette;
        palette.load(palette_t::SP_SIDESCAN);
        m_colorer.setPalette(palette);
        m_colorer.setRangeValues(0.0F, 0.9F);
    }
    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                unsigned int index) override
    {
        const auto& levels = static_cast<pings_t*>(model)->ping(static_cast<int>(index));
        for (unsigned int k = 0; k < context->numPixels; ++k) {
            const double x = context->beg + k / context->scale;
            const double i = (x / range + 1.0) / 2.0 * 999.0;
            if (i >= 0.0 && i <= 999.0)
                pixels[k] = m_colorer.color(levels[static_cast<std::size_t>(i)]);
        }
    }

private:
    rangeColorer_t m_colorer;
};

} // namespace

QWidget* makeWaterfallView()
{
    auto* const page = new QWidget;
    auto* const pings = new pings_t(page); // the view owns neither
    auto* const colors = new pingColors_t(page);
    auto* const view = new baseWaterfallView_t;
    view->_model(pings);
    view->_renderer(colors);
    for (int i = 0; i < 400; ++i)
        pings->addNext();

    auto* const across = new ruler_t;
    across->axisLocation(ruler_t::TOP);
    across->tickTable({{1.0, 10}, {2.0, 4}}, 10.0);
    QObject::connect(view, &baseWaterfallView_t::boundsChanged, across, &ruler_t::range);
    QObject::connect(view, &baseWaterfallView_t::pointedItemChanged, across,
                     [across](int, double x) {
                         if (std::isnan(x))
                             across->clearIndicator();
                         else
                             across->indicator(x);
                     });
    view->bounds(-range, range);
    auto* const add = new QPushButton(QStringLiteral("Add 10 pings"));
    QObject::connect(add, &QPushButton::clicked, pings, [pings] {
        for (int i = 0; i < 10; ++i)
            pings->addNext();
    });

    auto* const layout = new QGridLayout(page);
    layout->setVerticalSpacing(0);
    layout->setRowStretch(2, 1);
    layout->addWidget(new QLabel(QStringLiteral("m across the track")), 0, 0);
    layout->addWidget(add, 0, 1, Qt::AlignRight);
    layout->addWidget(across, 1, 0, 1, 2);
    layout->addWidget(view, 2, 0, 1, 2);
    return page;
}

} // namespace gallery
