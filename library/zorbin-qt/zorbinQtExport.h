#pragma once

/// \namespace zorbin_qt
/// What the Zorbin suite needs of Qt without windows: where its resources are.

/// \file
/// Marks what `libzorbin-qt` exports; everything else is compiled with hidden visibility.

/// Before the name of a class or in front of a function: it belongs to the interface.
#define ZORBIN_QT_EXPORT __attribute__((visibility("default")))
