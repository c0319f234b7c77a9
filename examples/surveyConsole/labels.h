#pragma once
#include <QColor>
#include <QLabel>

namespace survey_console {

/// A new label in \p color, its font \p sizeFactor times the application's. Owned by the caller
/// until a layout or parent takes it.
QLabel* makeLabel(const QColor& color, double sizeFactor, Qt::Alignment alignment);

/// Changes the colour of a label's text.
void setTextColor(QLabel* label, const QColor& color);

/// Gives \p widget its own background.
void setBackground(QWidget* widget, const QColor& color);

} // namespace survey_console
