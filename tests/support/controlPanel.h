#pragma once
#include "indicator.h"
#include "spFbUiWrapper.h"
#include "testCase.h"

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QDial>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QVariant>
#include <memory>
#include <vector>

/// What tests of binders share: a control panel that is bound.
namespace binder_tests {

class lamp_t : public zorbin_qt_gui::indicator_t
{
public:
    lamp_t() { resize(20, 20); }

    QColor color();
};

/// A control panel with a widget of each kind, bound under 10, 20 and so on.
struct panel_t
{
    panel_t();

    /// Changes the widget of an id as an operator does.
    void edit(int id);

    lamp_t lamps[7];
    QCheckBox checkBox;
    QComboBox comboBox;
    QDoubleSpinBox doubleSpinBox;
    QLineEdit lineEdit;
    QSpinBox spinBox;
    QSlider slider;
    QDial dial;
    zorbin_qt_gui::spFbUiWrapper_t binder;
};

/// What edit() gives the widget of an id.
QVariant editedValue(int id);

inline const std::vector<int> allIds = {10, 20, 30, 40, 50, 60, 70};

/// Adds the rows of a test of each widget, with its id.
void addIds();

/// Gives each function a control panel.
class panelTestCase_t : public testCase_t
{
protected:
    void setUp() override { m_panel = std::make_unique<panel_t>(); }
    void tearDown() override { m_panel.reset(); }

    std::unique_ptr<panel_t> m_panel;
};
} // namespace binder_tests
