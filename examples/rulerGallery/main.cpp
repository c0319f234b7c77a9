// Shows what rulers and gauges can do. Look at the rulers around the frame, one for each edge with
// its labels along or across the axis, at the ticks of the custom tables, and at how the gauges'
// bars grow from their reference points. Drag, click and double-click on the framed rulers.

#include <QApplication>
#include <QCommandLineParser>
#include <QGridLayout>
#include <QLabel>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <zorbin-qt-gui/ruler.h>
#include <zorbin-qt-gui/slidingGauge.h>

using namespace zorbin_qt_gui;

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
    plot->setMinimumSize(320, 180);
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

QWidget* makeRulers()
{
    auto* window = new QWidget;
    window->setWindowTitle(QStringLiteral("Rulers"));
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

    auto* layout = new QVBoxLayout(window);
    layout->addLayout(framed);
    layout->addLayout(list);
    return window;
}

slidingGauge_t* makeGauge(Qt::Orientation orientation, double min, double max)
{
    auto* gauge = new slidingGauge_t;
    gauge->setOrientation(orientation);
    gauge->setRange(min, max);
    gauge->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    gauge->setFillColor(QColor(0x8c, 0xc4, 0xe0));
    gauge->setLineColor(QColor(0xc0, 0x30, 0x20));
    if (orientation == Qt::Horizontal)
        gauge->setFixedHeight(26);
    else
        gauge->setFixedWidth(48);
    return gauge;
}

ruler_t* makeScale(const slidingGauge_t& gauge)
{
    auto* ruler = new ruler_t;
    ruler->axisLocation(gauge.orientation() == Qt::Horizontal ? ruler_t::BOTTOM : ruler_t::LEFT);
    ruler->range(gauge.minimum(), gauge.maximum());
    return ruler;
}

QWidget* makeGauges()
{
    auto* window = new QWidget;
    window->setWindowTitle(QStringLiteral("Sliding gauges"));
    const struct
    {
        const char* name;
        double min;
        double max;
        double reference;
        double setpoint;
        double feedback;
    } gauges[] = {{"speed, kn", 0.0, 12.0, 0.0, 9.0, 8.0},
                  {"rudder, deg", -40.0, 40.0, 0.0, -25.0, -18.0},
                  {"depth, m", -200.0, 0.0, 0.0, -150.0, -120.0}};
    auto* upright = new QHBoxLayout;
    auto* flat = new QGridLayout;
    flat->setVerticalSpacing(0);
    for (const auto& values : gauges) {
        for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
            slidingGauge_t* gauge = makeGauge(orientation, values.min, values.max);
            gauge->setReferencePoint(values.reference);
            gauge->setSetpoint(values.setpoint);
            gauge->setFeedback(values.feedback);
            ruler_t* scale = makeScale(*gauge);
            if (orientation == Qt::Vertical) {
                auto* named = new QGridLayout;
                named->setHorizontalSpacing(0);
                named->addWidget(caption(values.name), 0, 0, 1, 2, Qt::AlignHCenter);
                named->addWidget(scale, 1, 0, Qt::AlignRight);
                named->addWidget(gauge, 1, 1, Qt::AlignLeft);
                upright->addLayout(named);
            } else {
                const int row = flat->rowCount();
                flat->addWidget(caption(values.name), row, 0);
                flat->addWidget(gauge, row, 1);
                flat->addWidget(scale, row + 1, 1);
                flat->setRowMinimumHeight(row + 1, 40);
            }
        }
    }
    flat->setColumnStretch(1, 1);
    auto* layout = new QHBoxLayout(window);
    layout->setSpacing(24);
    layout->addLayout(upright, 2);
    layout->addLayout(flat, 3);
    return window;
}

// Lays out twice: rulers ask for the room of their labels when they are first painted.
bool save(QWidget* window, const QString& path)
{
    window->grab();
    QApplication::processEvents();
    if (window->grab().save(path))
        return true;
    std::fprintf(stderr, "rulerGallery: cannot write the picture '%s'\n", qUtf8Printable(path));
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows rulers and gauges."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of the rulers to FILE and quit."), QStringLiteral("FILE"));
    const QCommandLineOption gaugeScreenshot(
        QStringLiteral("gauge-screenshot"),
        QStringLiteral("Write a picture of the gauges to FILE and quit."), QStringLiteral("FILE"));
    parser.addOptions({screenshot, gaugeScreenshot});
    parser.process(application);

    const std::unique_ptr<QWidget> rulers(makeRulers());
    const std::unique_ptr<QWidget> gauges(makeGauges());
    rulers->resize(900, 620);
    gauges->resize(900, 240);
    rulers->show();
    gauges->show();
    if (!parser.isSet(screenshot) && !parser.isSet(gaugeScreenshot))
        return QApplication::exec();
    if (parser.isSet(screenshot) && !save(rulers.get(), parser.value(screenshot)))
        return EXIT_FAILURE;
    if (parser.isSet(gaugeScreenshot) && !save(gauges.get(), parser.value(gaugeScreenshot)))
        return EXIT_FAILURE;
    return EXIT_SUCCESS;
}
