#include "latLonPrinter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <vector>

namespace zorbin {
namespace {

constexpr char marks[] = {'\xB0', '\'', '"'};

std::string padded(int number, std::size_t digits)
{
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

// The fields of a magnitude in degrees: 1 to 3 of them, whose degrees take the given digits. None
// if the degrees don't fit, or the magnitude is no number.
//
// Digits are made without streams and printf(): those follow the locale of the application.
std::vector<std::string> fieldsOf(double magnitude, int count, unsigned decimals,
                                  std::size_t degreeDigits)
{
    const double limit = std::pow(10.0, static_cast<double>(degreeDigits));
    if (!(magnitude < limit))
        return {};
    // The last field is rounded, and then what exceeds it is carried. The whole degrees stay apart,
    // as they would cost the rest digits.
    const double unitsPerDegree = std::pow(60.0, count - 1);
    const double wholeDegrees = count == 1 ? 0.0 : std::floor(magnitude);
    const int sensibleDecimals = static_cast<int>(std::min(decimals, 17U - 2U * count));
    char text[32]; // at most 4 digits, a point and 15 decimals
    const char* const end =
        std::to_chars(std::begin(text), std::end(text), (magnitude - wholeDegrees) * unitsPerDegree,
                      std::chars_format::fixed, sensibleDecimals)
            .ptr;
    const char* const point = std::find<const char*>(text, end, '.');
    int units = 0;
    std::from_chars(text, point, units);

    std::vector<std::string> fields(static_cast<std::size_t>(count));
    for (std::size_t i = fields.size() - 1; i > 0; --i) {
        fields[i] = padded(units % 60, 2);
        units /= 60;
    }
    const int degrees = static_cast<int>(wholeDegrees) + units;
    if (degrees >= limit) // once rounded
        return {};
    fields.front() = padded(degrees, degreeDigits);
    fields.back().append(point, end);
    return fields;
}

} // namespace

void latLonPrinter_t::coordFormat(const coordFormat_t& format)
{
    m_coordFormat = format;
}

void latLonPrinter_t::hemisphereFormat(const hemiFormat_t& format)
{
    m_hemiFormat = format;
}

void latLonPrinter_t::separatorFormat(const sepFormat_t& format)
{
    m_sepFormat = format;
}

void latLonPrinter_t::precision(unsigned int decimals)
{
    m_precision = decimals;
}

std::string latLonPrinter_t::printLatitude(double value) const
{
    return print(value, true);
}

std::string latLonPrinter_t::printLongitude(double value) const
{
    return print(value, false);
}

std::string latLonPrinter_t::print(double value, bool isLatitude) const
{
    const std::vector<std::string> fields =
        fieldsOf(std::abs(value), m_coordFormat + 1, m_precision, isLatitude ? 2 : 3);
    const bool isZero = std::all_of(fields.begin(), fields.end(), [](const std::string& field) {
        return field.find_first_of("123456789") == std::string::npos;
    });
    const bool isNegative = value < 0.0 && !isZero;

    std::string text;
    if (isNegative && m_hemiFormat != HF_CHAR_SUFFIX)
        text = "-";
    else if (m_hemiFormat == HF_SIGN_PREFIX)
        text = "+";
    for (std::size_t i = 0; i < fields.size(); ++i) {
        text += fields[i];
        if (m_sepFormat != SF_SPACE)
            text += marks[i];
        if (m_sepFormat != SF_MARK)
            text += ' ';
    }
    if (m_hemiFormat == HF_CHAR_SUFFIX)
        text += isLatitude ? (isNegative ? 'S' : 'N') : (isNegative ? 'W' : 'E');
    else if (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

} // namespace zorbin
