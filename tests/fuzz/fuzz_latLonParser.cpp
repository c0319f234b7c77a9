// The parser of coordinates. What it reads lies within the limits, and is printed and read again in
// every notation.
#include "fuzzSupport.h"

#include <cmath>
#include <initializer_list>
#include <zorbin/latLonParser.h>
#include <zorbin/latLonPrinter.h>

using zorbin::latLonParser_t;
using zorbin::latLonPrinter_t;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr double UNTOUCHED = 1234.5;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const latLonParser_t parser;
    for (const bool isLatitude : {true, false}) {
        const auto parse = [&](const std::string& coordinate, double& value) {
            return isLatitude ? parser.parseLatitude(coordinate, value)
                              : parser.parseLongitude(coordinate, value);
        };
        double value = UNTOUCHED;
        const int result = parse(text, value);
        require(result == 0 || result == -1, "there are two results");
        if (result == -1) {
            require(value == UNTOUCHED, "a failure leaves the value alone");
            continue;
        }
        require(std::abs(value) <= (isLatitude ? 90.0 : 180.0), "a value is within the limits");
        for (const auto format :
             {latLonPrinter_t::CF_D, latLonPrinter_t::CF_DM, latLonPrinter_t::CF_DMS}) {
            latLonPrinter_t printer;
            printer.coordFormat(format);
            printer.hemisphereFormat(latLonPrinter_t::HF_CHAR_SUFFIX);
            const std::string printed =
                isLatitude ? printer.printLatitude(value) : printer.printLongitude(value);
            double back = UNTOUCHED;
            require(parse(printed, back) == 0, "what is printed can be read");
            require(std::abs(back - value) <= 0.5001e-6, "and is the same to six decimals");
        }
    }
    return 0;
}
