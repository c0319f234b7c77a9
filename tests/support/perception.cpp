#include "perception.h"

#include <QtMath>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

using vector_t = std::array<double, 3>;
using matrix_t = std::array<vector_t, 3>;

const matrix_t linearToXyz = {{{0.4124564, 0.3575761, 0.1804375},
                               {0.2126729, 0.7151522, 0.0721750},
                               {0.0193339, 0.1191920, 0.9503041}}};
const vector_t whiteXyz = {0.95047, 1.0, 1.08883}; // D65
const matrix_t deuteranopia = {{{0.367322, 0.860646, -0.227968},
                                {0.280085, 0.672501, 0.047413},
                                {-0.011820, 0.042940, 0.968881}}};
const matrix_t protanopia = {{{0.152286, 1.052583, -0.204868},
                              {0.114503, 0.786281, 0.099216},
                              {-0.003882, -0.048116, 1.051998}}};

vector_t operator*(const matrix_t& matrix, const vector_t& v)
{
    vector_t product;
    std::transform(matrix.begin(), matrix.end(), product.begin(), [&v](const vector_t& row) {
        return row[0] * v[0] + row[1] * v[1] + row[2] * v[2];
    });
    return product;
}

double linear(int component)
{
    const double c = component / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

vector_t linear(QRgb color)
{
    return {linear(qRed(color)), linear(qGreen(color)), linear(qBlue(color))};
}

double luminance(QRgb color)
{
    const vector_t rgb = linear(color);
    return 0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2];
}

// CIELAB's cube root with its linear foot.
double root(double t)
{
    return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
}

// How grey a mean chroma is to the eye; CIEDE2000 needs it twice.
double chromaWeight(double chroma)
{
    const double c7 = std::pow(chroma, 7.0);
    return std::sqrt(c7 / (c7 + 6103515625.0)); // 25^7
}

double sinDegrees(double angle)
{
    return std::sin(qDegreesToRadians(angle));
}

double cosDegrees(double angle)
{
    return std::cos(qDegreesToRadians(angle));
}

// In degrees from 0 up to 360, 0 for grey.
double hue(double a, double b)
{
    const double angle = qRadiansToDegrees(std::atan2(b, a));
    return angle < 0.0 ? angle + 360.0 : angle;
}

} // namespace

lab_t perceived(QRgb color, sight_t sight)
{
    vector_t rgb = linear(color);
    if (sight != sight_t::NORMAL) {
        rgb = (sight == sight_t::DEUTERANOPIA ? deuteranopia : protanopia) * rgb;
        for (double& component : rgb)
            component = std::clamp(component, 0.0, 1.0);
    }
    const vector_t xyz = linearToXyz * rgb;
    const double x = root(xyz[0] / whiteXyz[0]);
    const double y = root(xyz[1] / whiteXyz[1]);
    const double z = root(xyz[2] / whiteXyz[2]);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

// Sharma, Wu, Dalal 2005: "The CIEDE2000 Color-Difference Formula", with all weights 1.
double difference(const lab_t& first, const lab_t& second)
{
    const double stretch =
        1.5 -
        0.5 * chromaWeight((std::hypot(first.a, first.b) + std::hypot(second.a, second.b)) / 2.0);
    const double c1 = std::hypot(first.a * stretch, first.b);
    const double c2 = std::hypot(second.a * stretch, second.b);
    const double h1 = hue(first.a * stretch, first.b);
    const double h2 = hue(second.a * stretch, second.b);

    double turn = 0.0; // from the first hue to the second, the short way
    double meanHue = h1 + h2;
    if (c1 > 0.0 && c2 > 0.0) {
        turn = h2 - h1;
        meanHue /= 2.0;
        if (std::abs(turn) > 180.0) {
            turn -= std::copysign(360.0, turn);
            meanHue += meanHue < 180.0 ? 180.0 : -180.0;
        }
    }
    const double meanChroma = (c1 + c2) / 2.0;
    const double fromMiddle = std::pow((first.l + second.l) / 2.0 - 50.0, 2.0);
    const double t = 1.0 - 0.17 * cosDegrees(meanHue - 30.0) + 0.24 * cosDegrees(2.0 * meanHue) +
                     0.32 * cosDegrees(3.0 * meanHue + 6.0) -
                     0.20 * cosDegrees(4.0 * meanHue - 63.0);
    const double l =
        (second.l - first.l) / (1.0 + 0.015 * fromMiddle / std::sqrt(20.0 + fromMiddle));
    const double c = (c2 - c1) / (1.0 + 0.045 * meanChroma);
    const double h =
        2.0 * std::sqrt(c1 * c2) * sinDegrees(turn / 2.0) / (1.0 + 0.015 * meanChroma * t);
    const double inTheBlue = 60.0 * std::exp(-std::pow((meanHue - 275.0) / 25.0, 2.0)); // degrees
    const double rotation = -2.0 * sinDegrees(inTheBlue) * chromaWeight(meanChroma);
    return std::sqrt(l * l + c * c + h * h + rotation * c * h);
}

double contrast(QRgb first, QRgb second)
{
    const auto [dark, light] = std::minmax({luminance(first), luminance(second)});
    return (light + 0.05) / (dark + 0.05);
}
