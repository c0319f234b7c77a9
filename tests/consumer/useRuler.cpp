#include <zorbin-qt-gui/ruler.h>

namespace {

class depthRuler_t : public zorbin_qt_gui::ruler_t
{
public:
    using ruler_t::ruler_t;
    std::string textFromValue(double value) const override
    {
        return ruler_t::textFromValue(-value) + " m";
    }
};

} // namespace

std::size_t countTicks(QWidget* window)
{
    auto* const ruler = new depthRuler_t(window);
    ruler->axisLocation(zorbin_qt_gui::ruler_t::LEFT);
    ruler->tickTable({{1.0, 10}, {2.0, 10}, {5.0, 5}}, 10.0);
    QObject::connect(ruler, &depthRuler_t::boundsChanged, window, [window] { window->update(); });
    ruler->range(-40.0, 0.0);
    zorbin_qt_gui::ruler_t::fit_t fit;
    ruler->calculateFit(5.0, fit);
    return fit.ticks.size();
}
