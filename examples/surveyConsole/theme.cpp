#include "theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <QWidget>

namespace survey_console::theme {

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
