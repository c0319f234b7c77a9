#pragma once
#include <QRgb>

/// How colours look: what pictures and palettes are judged by.

/// A colour in CIELAB, for the white point D65.
struct lab_t
{
    double l; ///< lightness, 0.0 (black) to 100.0 (white)
    double a; ///< green to red
    double b; ///< blue to yellow
};

/// Eyes to look with; the dichromats are simulated (Machado, Oliveira, Fernandes 2009).
enum class sight_t
{
    NORMAL,
    DEUTERANOPIA,
    PROTANOPIA
};

/// What \p sight makes of an sRGB colour.
lab_t perceived(QRgb color, sight_t sight = sight_t::NORMAL);

/// The perceived difference CIEDE2000; about 1.0 can just be seen.
double difference(const lab_t& first, const lab_t& second);

/// The contrast ratio of WCAG 2.1: 1.0 for equal luminance, 21.0 for black and white.
double contrast(QRgb first, QRgb second);
