#pragma once

/// \namespace zorbin
/// What the Zorbin suite needs without Qt: time stamps and the texts of coordinates.

/// \namespace zorbinport
/// What operating systems do in different ways.

/// \file
/// Marks what `libzorbin` exports; everything else is compiled with hidden visibility.

/// Before the name of a class or in front of a function: it belongs to the interface.
#define ZORBIN_EXPORT __attribute__((visibility("default")))
