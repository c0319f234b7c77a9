// What rulers can do. Look at those around the frames, one for each edge with its labels along or
// across the axis, and at the ticks of the custom tables. Drag, click and double-click on the
// framed rulers.

#include "pages.h"

#include <QGridLayout>
#include <QLabel>
#include <cmath>
#include <cstdio>
#include <zorbin-qt-gui/ruler.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

// Hours, minutes and seconds of a duration in seconds.
class timeRuler_t : public ruler_t
{
public:
    using ruler_t::ruler_t;

    std::string textFromValue(double value) const override
    {
        const long long seconds = std::llround(value);
        char text[32];
        std::snprintf(text, sizeof text, " %02lld:%02lld:%02lld ", seconds / 3600,
                      seconds / 60 % 60, seconds % 60);
        return text;
    }
};

// A compass in degrees and points.
class headingRuler_t : public ruler_t
{
public:
    using ruler_t::ruler_t;

    std::string textFromValue(double value) const override
    {
        static const char* const POINTS[] = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};
        const long turned = ((std::lround(value) % 360) + 360) % 360;
        return turned % 45 == 0 ? POINTS[turned / 45] : std::to_string(turned);
    }
};

QLabel* caption(const char* text)
{
    return new QLabel(QString::fromLatin1(text));
}

// A plot with a ruler at each edge.
QWidget* makeFramedPlot(Qt::Orientation textOrientation)
{
    auto* widget = new QWidget;
    auto* layout = new QGridLayout(widget);
    layout->setSpacing(0);
    auto* plot = new QFrame;
    plot->setAutoFillBackground(true);
    plot->setBackgroundRole(QPalette::Base);
    plot->setMinimumSize(240, 180);
    layout->addWidget(plot, 1, 1);
    const struct
    {
        ruler_t::location_t location;
        double start;
        double end;
        int row;
        int column;
    } edges[] = {{ruler_t::TOP, 0.0, 1.0, 0, 1},
                 {ruler_t::BOTTOM, 0.0, 250.0, 2, 1},
                 {ruler_t::LEFT, -40.0, 0.0, 1, 0},
                 {ruler_t::RIGHT, 1480.0, 1530.0, 1, 2}};
    for (const auto& edge : edges) {
        auto* ruler = new ruler_t;
        ruler->axisLocation(edge.location);
        ruler->textOrientation(textOrientation);
        ruler->range(edge.start, edge.end);
        ruler->interactive(true);
        layout->addWidget(ruler, edge.row, edge.column);
    }
    return widget;
}

// Adds a named ruler below the others.
template <typename anyRuler_t>
anyRuler_t* addRuler(QGridLayout* layout, const char* name, double start, double end)
{
    const int row = layout->rowCount();
    layout->addWidget(caption(name), row, 0, Qt::AlignTop);
    auto* ruler = new anyRuler_t;
    ruler->range(start, end);
    layout->addWidget(ruler, row, 1);
    layout->setRowMinimumHeight(row, 40);
    return ruler;
}

} // namespace

QWidget* makeRulers()
{
    auto* page = new QWidget;
    auto* framed = new QGridLayout;
    framed->addWidget(caption("text horizontal"), 0, 0, Qt::AlignHCenter);
    framed->addWidget(caption("text vertical"), 0, 1, Qt::AlignHCenter);
    framed->addWidget(makeFramedPlot(Qt::Horizontal), 1, 0);
    framed->addWidget(makeFramedPlot(Qt::Vertical), 1, 1);

    auto* list = new QGridLayout;
    list->setColumnStretch(1, 1);
    list->setHorizontalSpacing(16);
    addRuler<ruler_t>(list, "as it is", 0.0, 120.0);
    addRuler<ruler_t>(list, "invert(true)", 0.0, 120.0)->invert(true);
    addRuler<ruler_t>(list, "highlightRange(30, 45)", 0.0, 120.0)->highlightRange(30.0, 45.0);
    addRuler<ruler_t>(list, "indicator(62.5)", 0.0, 120.0)->indicator(62.5);
    addRuler<ruler_t>(list, "showMinorTicks(false)", 0.0, 120.0)->showMinorTicks(false);
    addRuler<timeRuler_t>(list, "a table of times, base 60", 0.0, 5400.0)
        ->tickTable({{1.0, 6}, {2.0, 4}, {5.0, 5}, {10.0, 10}, {15.0, 3}, {30.0, 6}}, 60.0);
    addRuler<headingRuler_t>(list, "a table of angles, no base", -60.0, 120.0)
        ->tickTable({{5.0, 5}, {15.0, 3}, {45.0, 9}}, 1.0);

    auto* layout = new QVBoxLayout(page);
    layout->addLayout(framed);
    layout->addLayout(list);
    return page;
}

} // namespace gallery
