#pragma once

/// \file
/// Marks what `libzorbin-qt` exports; everything else is compiled with hidden visibility.

#define ZORBIN_QT_EXPORT __attribute__((visibility("default")))
