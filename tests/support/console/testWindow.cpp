#include "testWindow.h"

#include "pictures.h"
#include "testCase.h"

namespace survey_console {

bool appears(QWidget* window)
{
    window->show();
    window->activateWindow();
    const bool isActive = QTest::qWaitForWindowActive(window, patienceMs());
    settle();
    return isActive;
}

bool isInSight(const QWidget* widget)
{
    const QSize needed = widget->minimumSizeHint();
    const QRect place(widget->mapTo(widget->window(), QPoint()), widget->size());
    return widget->isVisible() && place.width() >= needed.width() &&
           place.height() >= needed.height() && widget->window()->rect().contains(place);
}

bool testWindow_t::resize(const QSize& size)
{
    m_window->resize(size);
    settle();
    return m_window->size() == size;
}
} // namespace survey_console
