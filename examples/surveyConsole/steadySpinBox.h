#pragma once
#include <QDoubleSpinBox>
#include <QWheelEvent>

namespace survey_console {

/// A spin box that the wheel turns only while the user is at it: one that passes over, on the way
/// to something else, changes nothing.
class steadySpinBox_t : public QDoubleSpinBox
{
public:
    steadySpinBox_t()
    {
        setFocusPolicy(Qt::StrongFocus);
        setKeyboardTracking(false); // half a number is none
    }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QDoubleSpinBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace survey_console
