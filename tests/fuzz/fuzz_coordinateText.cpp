// The reader of coordinates that come from elsewhere, in UTF-8. What it reads lies within the
// limits, and is the same with blanks around it and when it is printed and read again in every
// notation. A pair has both its halves.
#include "coordinateText_p.h"
#include "fuzzSupport.h"

#include <cmath>
#include <zorbin/latLonPrinter.h>

using namespace zorbin_qt_gui;
using zorbin::latLonPrinter_t;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const bool isLatitude : {true, false}) {
        const auto read = isLatitude ? readLatitude : readLongitude;
        const std::optional<coordinateText_t> coordinate = read(text);
        if (!coordinate)
            continue;
        const double value = coordinate->value;
        require(std::abs(value) <= (isLatitude ? 90.0 : 180.0), "a value is within the limits");
        require(coordinate->hasHemisphere || value >= 0.0, "a sign is a hemisphere");
        require(!coordinate->hasHemisphere || !coordinate->isPlainMagnitude,
                "a magnitude has no hemisphere");
        require(!coordinate->isOfPair || coordinate->hasHemisphere, "one of a pair has");
        const auto other = (isLatitude ? readLongitude : readLatitude)(text);
        require(!coordinate->isOfPair || (other && other->isOfPair), "a pair has two");
        require(coordinate->isOfPair || !other || !other->isOfPair, "and only a pair has");

        // The limit to a text's length counts blanks, too.
        const auto amongBlanks = read(QLatin1Char('\t') + text.trimmed() + QLatin1Char('\n'));
        require(!amongBlanks || amongBlanks->value == value, "blanks change nothing");
        require(amongBlanks || text.trimmed().size() > 98, "nor do they hide anything");

        const auto paired =
            read(isLatitude ? text + QStringLiteral("; 7E") : QStringLiteral("7N; ") + text);
        require(!paired || paired->value == value, "nor does the other one of a pair");

        for (const auto format :
             {latLonPrinter_t::CF_D, latLonPrinter_t::CF_DM, latLonPrinter_t::CF_DMS}) {
            latLonPrinter_t printer;
            printer.coordFormat(format);
            printer.hemisphereFormat(latLonPrinter_t::HF_CHAR_SUFFIX);
            const std::string printed =
                isLatitude ? printer.printLatitude(value) : printer.printLongitude(value);
            const auto back = read(QString::fromLatin1(printed.c_str()));
            require(back.has_value(), "what is printed can be read");
            require(std::abs(back->value - value) <= 0.5001e-6, "and is the same to six decimals");
            require(back->hasHemisphere, "and has a hemisphere");
        }
    }
    return 0;
}
