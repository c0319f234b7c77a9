#include "glStripChartImpl.h"

#include "glStripChartWidget.h"
#include "qtCompat_p.h"

#include <QApplication>
#include <QThread>
#include <string>

namespace zorbin_qt_gui {
namespace {

bool isGuiThread()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
           QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

glStripChartImpl_t::glStripChartImpl_t(QWidget* parent)
    : stripChartImpl_t(parent), m_widget(std::make_unique<glStripChartWidget_t>(this))
{
    connect(m_widget.get(), &glStripChartWidget_t::mousePos, this, &stripChartImpl_t::mousePos);
    static bool isTold = false;
    if (!isGlUsable() && !isTold) {
        isTold = true;
        qWarning("glStripChartImpl_t::%s: No usable OpenGL context - Charts stay empty",
                 "glStripChartImpl_t");
    }
}

glStripChartImpl_t::~glStripChartImpl_t() = default;

QWidget* glStripChartImpl_t::widget()
{
    return m_widget.get();
}

bool glStripChartImpl_t::supported()
{
    if (!isGuiThread())
        return false;
    const std::string vendor = glVendor();
    return vendor == "NVIDIA Corporation" || vendor == "nouveau";
}

} // namespace zorbin_qt_gui
