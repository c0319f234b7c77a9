#include "testConsole.h"

#include "chartPanel.h"
#include "colorPicker.h"
#include "paletteChooser.h"
#include "stripChart.h"
#include "timeAxis.h"
#include "valueRuler.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <QToolButton>

using zorbin_qt_gui::colorPicker_t;
using zorbin_qt_gui::stripChart_t;

namespace survey_console {

console_t::console_t(readResult_t line, const QString& lineName)
    : window(lineName, std::move(line), [this] { return realTime; })
{
    setWindow(&window);
    window.resize(1280, 800);
}

void console_t::pass(double seconds)
{
    realTime += seconds;
    clock()->advance();
}

stripChart_t* console_t::chart(chartIndex_t index)
{
    return panel(index)->chart();
}

QWidget* console_t::area(chartIndex_t index)
{
    return chart(index)->findChild<QWidget*>();
}

valueRuler_t* console_t::ruler(chartIndex_t index)
{
    return panel(index)->valueRuler();
}

timeRuler_t* console_t::timeRuler(const char* axis)
{
    return find<timeAxis_t>(axis)->ruler();
}

QToolButton* console_t::autoscaleButton(chartIndex_t index)
{
    return panel(index)->findChild<QToolButton*>(QStringLiteral("autoscaleButton"));
}

QLabel* console_t::label(chartIndex_t index, const char* name)
{
    return panel(index)->findChild<QLabel*>(QString::fromLatin1(name));
}

QString console_t::text(chartIndex_t index, const char* name)
{
    return label(index, name)->text();
}

QColor console_t::textColor(chartIndex_t index, const char* name)
{
    return label(index, name)->palette().color(QPalette::WindowText);
}

colorPicker_t* console_t::picker(chartIndex_t index, const char* name)
{
    return panel(index)->findChild<colorPicker_t*>(QString::fromLatin1(name));
}

paletteChooser_t* console_t::chooser()
{
    return window.findChild<paletteChooser_t*>();
}

QComboBox* console_t::paletteBox()
{
    return find<QComboBox>("paletteBox");
}

void console_t::choosePalette(int row)
{
    QComboBox* const box = paletteBox();
    box->setFocus();
    while (box->currentIndex() != row)
        QTest::keyClick(box, box->currentIndex() < row ? Qt::Key_Down : Qt::Key_Up);
}

wholeConsole_t::wholeConsole_t(readResult_t line) : console_t(std::move(line))
{
    window.addSonar(QStringLiteral("sonar.pgm"), testSonar());
    window.addEchograms(testEchograms());
    window.addSurvey();
}
} // namespace survey_console
