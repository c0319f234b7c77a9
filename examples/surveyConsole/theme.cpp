#include "theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <QWidget>

namespace survey_console::theme {
namespace {

const colors_t DARK = {{0x15, 0x1d, 0x25},       {0x1d, 0x28, 0x32}, {0x0c, 0x13, 0x19},
                       {0x33, 0x43, 0x51},       {0xdd, 0xe6, 0xec}, {0x8f, 0xa3, 0xb2},
                       {0x2f, 0x7f, 0xa8},       {0x62, 0xc6, 0xe6}, {0xf0, 0xb0, 0x52},
                       {0x8f, 0xa3, 0xb2, 0x60}, {0x7c, 0xcf, 0x9a}, {0xf0, 0xb0, 0x52},
                       {0xf2, 0x6b, 0x5e}};
const colors_t LIGHT = {{0xdc, 0xe3, 0xe9},       {0xee, 0xf2, 0xf5}, {0xff, 0xff, 0xff},
                        {0xb6, 0xc3, 0xce},       {0x17, 0x21, 0x2b}, {0x4b, 0x5b, 0x69},
                        {0x2f, 0x7f, 0xa8},       {0x08, 0x63, 0x8c}, {0x9a, 0x52, 0x00},
                        {0x4b, 0x5b, 0x69, 0x60}, {0x12, 0x6b, 0x38}, {0x9a, 0x52, 0x00},
                        {0xbf, 0x22, 0x18}};

name_t theChosen = THEME_DARK;

} // namespace

QStringList names()
{
    return {QStringLiteral("dark"), QStringLiteral("light")};
}

void choose(name_t name)
{
    theChosen = name;
}

name_t chosen()
{
    return theChosen;
}

const colors_t& colors()
{
    return theChosen == THEME_LIGHT ? LIGHT : DARK;
}

void apply(QApplication* application)
{
    application->setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    palette.setColor(QPalette::Window, window());
    palette.setColor(QPalette::WindowText, text());
    palette.setColor(QPalette::Base, chart());
    palette.setColor(QPalette::AlternateBase, panel());
    palette.setColor(QPalette::Text, text());
    palette.setColor(QPalette::PlaceholderText, quietText());
    palette.setColor(QPalette::Button, panel());
    palette.setColor(QPalette::ButtonText, text());
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, accent());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, panel());
    palette.setColor(QPalette::ToolTipText, text());
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, quietText());
    application->setPalette(palette);
}

void setUpRuler(QWidget* ruler)
{
    QPalette palette = ruler->palette();
    palette.setColor(QPalette::WindowText, quietText());
    ruler->setPalette(palette);
}

void setUpNotifier(QWidget* notifier)
{
    QPalette palette = notifier->palette();
    palette.setColor(QPalette::Light, quietText());
    palette.setColor(QPalette::Dark, window());
    notifier->setPalette(palette);
}

} // namespace survey_console::theme
