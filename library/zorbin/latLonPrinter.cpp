#include "latLonPrinter.h"

#include <GeographicLib/DMS.hpp>
#include <cmath>

using GeographicLib::DMS;

namespace zorbin {
namespace {

constexpr char marks[] = {'\xB0', '\'', '"'};

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
    std::string fields; // separated by colons
    if (std::isfinite(value)) {
        const auto last = m_coordFormat == CF_DMS  ? DMS::SECOND
                          : m_coordFormat == CF_DM ? DMS::MINUTE
                                                   : DMS::DEGREE;
        fields = DMS::Encode(std::abs(value), last, m_precision,
                             isLatitude ? DMS::LATITUDE : DMS::LONGITUDE, ':');
        fields.pop_back(); // the hemisphere
    }
    const bool isZero = fields.find_first_of("123456789") == std::string::npos;
    const bool isNegative = value < 0.0 && !isZero;

    std::string text;
    if (isNegative && m_hemiFormat != HF_CHAR_SUFFIX)
        text = "-";
    else if (m_hemiFormat == HF_SIGN_PREFIX)
        text = "+";
    std::size_t field = 0;
    const auto endField = [&] {
        if (m_sepFormat != SF_SPACE)
            text += marks[field];
        if (m_sepFormat != SF_MARK)
            text += ' ';
        ++field;
    };
    for (const char c : fields) {
        if (c == ':')
            endField();
        else
            text += c;
    }
    if (!fields.empty())
        endField();
    if (m_hemiFormat == HF_CHAR_SUFFIX)
        text += isLatitude ? (isNegative ? 'S' : 'N') : (isNegative ? 'W' : 'E');
    else if (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

} // namespace zorbin
