#pragma once
#include <QtGlobal>

/// \namespace zorbin_qt_gui
/// Widgets for marine survey, sonar and vehicle-control displays, and what they draw.

/// \file
/// Marks what `libzorbin-qt-gui` exports; everything else is compiled with hidden visibility.

/// Before the name of a class: it belongs to the interface. While the library itself is compiled,
/// with ZORBIN_QT_GUI_BUILDING, it exports the class, elsewhere it imports it.
#if defined(ZORBIN_QT_GUI_BUILDING)
#define ZORBIN_QT_GUI_EXPORT Q_DECL_EXPORT
#else
#define ZORBIN_QT_GUI_EXPORT Q_DECL_IMPORT
#endif
