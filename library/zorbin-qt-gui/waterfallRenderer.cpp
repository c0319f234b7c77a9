#include "waterfallRenderer.h"

namespace zorbin_qt_gui {

baseWaterfallRenderer_t::baseWaterfallRenderer_t(QObject* parent) : QObject(parent)
{
}

baseWaterfallRenderer_t::~baseWaterfallRenderer_t() = default;
} // namespace zorbin_qt_gui
