// The levels of a sonar picture. Drag on the ruler below to look at a part of the range, and change
// the limits: the part that colours would be stretched over is highlighted.

#include "pages.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <random>
#include <vector>
#include <zorbin-qt-gui/histogram.h>
#include <zorbin-qt-gui/ruler.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

// Levels in dB of sand, of the darker water column and of a few bright rocks.
std::vector<float> sonarLevels()
{
    std::mt19937 noise(1); // the same picture each time
    const auto even = [&noise] { return static_cast<double>(noise()) / 4294967296.0; };
    const auto bell = [&even] { return even() + even() + even() + even() - 2.0; };
    std::vector<float> levels;
    for (int i = 0; i < 60000; ++i) {
        const double kind = even();
        const double level = kind < 0.2    ? -62.0 + 5.0 * bell()
                             : kind < 0.95 ? -38.0 + 11.0 * bell()
                                           : -14.0 + 4.0 * bell();
        levels.push_back(static_cast<float>(level));
    }
    return levels;
}

} // namespace

QWidget* makeHistogram()
{
    auto* const histogram = new histogram_t;
    const std::vector<float> levels = sonarLevels();
    histogram->addData(static_cast<unsigned int>(levels.size()), levels.data());
    histogram->numBins(160);
    histogram->setAutoFillBackground(true); // it has no background of its own
    histogram->setBackgroundRole(QPalette::Base);
    QPalette palette = histogram->palette();
    palette.setColor(QPalette::Text, QColor(0x60, 0x60, 0x60));
    palette.setColor(QPalette::Highlight, QColor(0xd6, 0xe6, 0xf5)); // behind the highlighted bars
    palette.setColor(QPalette::HighlightedText, QColor(0x1c, 0x4e, 0x9a)); // these bars themselves
    histogram->setPalette(palette);

    auto* const scale = new ruler_t;
    scale->interactive(true);
    scale->tickTable({{1.0, 10}, {2.0, 4}, {5.0, 5}}, 10.0);
    QObject::connect(scale, &ruler_t::boundsChanged, histogram,
                     [histogram](double from, double to) {
                         if (from < to) // anything else is a fatal error
                             histogram->range(static_cast<float>(from), static_cast<float>(to));
                     });
    scale->range(-80.0, 0.0);

    auto* const low = new QDoubleSpinBox;
    auto* const high = new QDoubleSpinBox;
    for (QDoubleSpinBox* const limit : {low, high}) {
        limit->setRange(-80.0, 0.0);
        limit->setSuffix(QStringLiteral(" dB"));
        QObject::connect(limit, qOverload<double>(&QDoubleSpinBox::valueChanged), histogram, [=] {
            histogram->highlightRange(static_cast<float>(low->value()),
                                      static_cast<float>(high->value()));
        });
    }
    low->setValue(-55.0);
    high->setValue(-22.0);

    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    layout->setVerticalSpacing(0);
    layout->setRowStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->addWidget(histogram, 0, 0, 1, 4);
    layout->addWidget(scale, 1, 0, 1, 4);
    layout->addWidget(new QLabel(QStringLiteral("Colours from")), 2, 0);
    layout->addWidget(low, 2, 1, Qt::AlignLeft);
    layout->addWidget(new QLabel(QStringLiteral("to")), 2, 2);
    layout->addWidget(high, 2, 3);
    return page;
}

} // namespace gallery
