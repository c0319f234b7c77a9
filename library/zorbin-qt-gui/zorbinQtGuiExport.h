#pragma once
#include <QtGlobal>

/// \file
/// Marks what `libzorbin-qt-gui` exports; everything else is compiled with hidden visibility.

#if defined(ZORBIN_QT_GUI_BUILDING)
#define ZORBIN_QT_GUI_EXPORT Q_DECL_EXPORT
#else
#define ZORBIN_QT_GUI_EXPORT Q_DECL_IMPORT
#endif
