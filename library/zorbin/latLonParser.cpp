#include "latLonParser.h"

#include <GeographicLib/DMS.hpp>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace zorbin {
namespace {

// Reads a text from its start to its end.
class scanner_t
{
public:
    explicit scanner_t(const std::string& text)
        : m_next(text.data()), m_end(text.data() + text.size())
    {
    }

    void skipBlanks()
    {
        while (m_next != m_end && *m_next == ' ')
            ++m_next;
    }

    bool isAtEnd() const { return m_next == m_end; }

    bool isAtDigit() const { return m_next != m_end && *m_next >= '0' && *m_next <= '9'; }

    bool take(char c)
    {
        if (m_next == m_end || *m_next != c)
            return false;
        ++m_next;
        return true;
    }

    // To be called at a digit. Takes all of them, and behind a point more digits, which may not be
    // missing.
    bool takeNumber(double& number, bool& hasDecimals)
    {
        const char* const from = m_next;
        skipDigits();
        hasDecimals = take('.');
        if (hasDecimals) {
            if (!isAtDigit())
                return false;
            skipDigits();
        }
        return std::from_chars(from, m_next, number, std::chars_format::fixed).ec == std::errc();
    }

private:
    void skipDigits()
    {
        while (isAtDigit())
            ++m_next;
    }

    const char* m_next;
    const char* m_end;
};

int parse(const std::string& text, char positive, char negative, double limit, double& value)
{
    constexpr char marks[] = {'\xB0', '\'', '"'};
    scanner_t scanner(text);
    scanner.skipBlanks();
    const bool hasMinus = scanner.take('-');
    const bool hasSign = hasMinus || scanner.take('+');

    double fields[] = {0.0, 0.0, 0.0};
    std::size_t count = 0;
    bool hasDecimals = false;
    scanner.skipBlanks();
    while (scanner.isAtDigit()) {
        if (count == 3 || hasDecimals || !scanner.takeNumber(fields[count], hasDecimals))
            return -1;
        scanner.skipBlanks();
        scanner.take(marks[count]);
        scanner.skipBlanks();
        ++count;
    }
    if (count == 0 || fields[1] >= 60.0 || fields[2] >= 60.0)
        return -1;

    const bool isNegative = scanner.take(negative);
    const bool hasLetter = isNegative || scanner.take(positive);
    scanner.skipBlanks();
    if (!scanner.isAtEnd() || (hasSign && hasLetter))
        return -1;
    const double magnitude = GeographicLib::DMS::Decode(fields[0], fields[1], fields[2]);
    if (magnitude > limit)
        return -1;
    value = hasMinus || isNegative ? -magnitude : magnitude;
    return 0;
}

} // namespace

int latLonParser_t::parseLatitude(const std::string& text, double& value) const
{
    return parse(text, 'N', 'S', 90.0, value);
}

int latLonParser_t::parseLongitude(const std::string& text, double& value) const
{
    return parse(text, 'E', 'W', 180.0, value);
}

} // namespace zorbin
