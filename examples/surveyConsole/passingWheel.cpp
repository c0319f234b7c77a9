#include "passingWheel.h"

#include <QEvent>
#include <QWidget>

namespace survey_console {
namespace {

class wheelFilter_t : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus())
            return false;
        event->ignore(); // it is for whatever is around
        return true;
    }
};

} // namespace

void letWheelPass(QWidget* widget)
{
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(new wheelFilter_t(widget));
}

} // namespace survey_console
