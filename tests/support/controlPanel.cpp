#include "controlPanel.h"

#include "pictures.h"

namespace binder_tests {

QColor lamp_t::color()
{
    return snapshot(*this).pixelColor(10, 10);
}

panel_t::panel_t()
{
    comboBox.addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    binder.addCheckBoxWrapper(false, false, &lamps[0], 10, &checkBox);
    binder.addComboBoxWrapper(0, 0, &lamps[1], 20, &comboBox);
    binder.addDoubleSpinBoxWrapper(0.0, 0.0, &lamps[2], 30, &doubleSpinBox);
    binder.addLineEditWrapper(QString(), QString(), &lamps[3], 40, &lineEdit);
    binder.addSpinBoxWrapper(0, 0, &lamps[4], 50, &spinBox);
    binder.addSliderWrapper(0, 0, &lamps[5], 60, &slider);
    binder.addSliderWrapper(0, 0, &lamps[6], 70, &dial);
}

void panel_t::edit(int id)
{
    switch (id) {
    case 10:
        checkBox.click();
        break;
    case 20:
        comboBox.setCurrentIndex(2);
        break;
    case 30:
        doubleSpinBox.setValue(1.5);
        break;
    case 40:
        QTest::keyClicks(&lineEdit, QStringLiteral("x"));
        break;
    case 50:
        spinBox.setValue(5);
        break;
    case 60:
        slider.setValue(6);
        break;
    default:
        dial.setValue(7);
    }
}

QVariant editedValue(int id)
{
    switch (id) {
    case 10:
        return true;
    case 20:
        return 2;
    case 30:
        return 1.5;
    case 40:
        return QStringLiteral("x");
    case 50:
        return 5;
    case 60:
        return 6;
    default:
        return 7;
    }
}

void addIds()
{
    QTest::addColumn<int>("id");
    const char* const names[] = {
        "check box", "combo box", "double spin box", "line edit", "spin box", "slider", "dial"};
    for (int i = 0; i < 7; ++i)
        QTest::newRow(names[i]) << 10 * (i + 1);
}
} // namespace binder_tests
