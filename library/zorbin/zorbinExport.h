#pragma once

/// \file
/// Marks what `libzorbin` exports; everything else is compiled with hidden visibility.

#define ZORBIN_EXPORT __attribute__((visibility("default")))
