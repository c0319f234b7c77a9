#include "palette.h"

#include "jspPaletteHandler.h"
#include "xmlPaletteHandler.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <zorbin-qt/resourceDir.h>

namespace zorbin_qt_gui {
namespace {

constexpr std::size_t depthCount = 2;

bool isDepth(palette_t::colorDepth_t depth)
{
    return depth == palette_t::DEPTH_8 || depth == palette_t::DEPTH_24;
}

palette_t::colorDepth_t displayDepth()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen == nullptr || screen->depth() > 23 ? palette_t::DEPTH_24 : palette_t::DEPTH_8;
}

// From the last "." on, in lower case; empty if there is none. Letters beyond ASCII stay: no format
// has one.
std::string extension(const std::string& fileName)
{
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string::npos)
        return {};
    std::string lower = fileName.substr(dot);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lower;
}

const char* standardFileName(palette_t::standardPalette_t which)
{
    switch (which) {
    case palette_t::SP_BATHY:
        return "bathy.wp";
    case palette_t::SP_IMAGERY:
        return "imagery.wp";
    case palette_t::SP_INTENSITY:
        return "intensity.wp";
    case palette_t::SP_SIDESCAN:
        return "sidescan.wp";
    case palette_t::SP_SUBBOTTOM:
        return "subbottom.wp";
    case palette_t::SP_WATERCOLUMN:
        return "watercolumn.wp";
    }
    return nullptr;
}

bool loadFormat(const std::string& fileName, palette_t* palette)
{
    const std::string format = extension(fileName);
    if (format == ".xml" || format == ".wp")
        return xmlPaletteHandler_t().load(fileName, palette);
    return format == ".jsp" && jspPaletteHandler_t().load(fileName, palette);
}

} // namespace

// Invariant: the table in effect for a depth is its own one if that is set, else the other depth's.
struct palette_t::privateData_t
{
    using table_t = std::vector<unsigned int>;

    std::array<table_t*, depthCount> colorTable = {};           // in effect, not owned
    std::array<std::unique_ptr<table_t>, depthCount> colorInit; // as set
    std::array<bool, depthCount> isOfFailedLoad = {};           // then the next load sets it
    std::array<std::map<std::string, unsigned int>, depthCount> keyedColor;
    const colorDepth_t colorDepth = displayDepth();

    void updateTablesInEffect();
    void forgetFailedLoad();
};

void palette_t::privateData_t::updateTablesInEffect()
{
    table_t* const own8 = colorInit[DEPTH_8].get();
    table_t* const own24 = colorInit[DEPTH_24].get();
    colorTable[DEPTH_8] = own8 != nullptr ? own8 : own24;
    colorTable[DEPTH_24] = own24 != nullptr ? own24 : own8;
}

void palette_t::privateData_t::forgetFailedLoad()
{
    for (std::size_t depth = 0; depth < depthCount; ++depth) {
        if (isOfFailedLoad[depth])
            colorInit[depth].reset();
        isOfFailedLoad[depth] = false;
    }
    updateTablesInEffect();
}

palette_t::palette_t() : m_d(std::make_unique<privateData_t>())
{
}

palette_t::~palette_t() = default;

std::vector<unsigned int> palette_t::colorTable() const
{
    const privateData_t::table_t* const table = m_d->colorTable[m_d->colorDepth];
    return table == nullptr ? privateData_t::table_t() : *table;
}

std::vector<unsigned int> palette_t::colorTable(const colorDepth_t& depth) const
{
    if (!isDepth(depth) || m_d->colorInit[depth] == nullptr)
        return {};
    return *m_d->colorInit[depth];
}

void palette_t::setColorTable(const std::vector<unsigned int>& table, const colorDepth_t& depth)
{
    if (!isDepth(depth))
        return;
    // Deliberate: the first table of a depth stays, so an object can't be loaded twice.
    if (m_d->colorInit[depth] == nullptr)
        m_d->colorInit[depth] = std::make_unique<privateData_t::table_t>(table);
    m_d->updateTablesInEffect();
}

bool palette_t::keyedColor(const std::string& key, QRgb& color) const
{
    // Deliberate: unlike the tables, an 8-bit display doesn't fall back to the colours of 24 bits.
    for (int depth = m_d->colorDepth; depth >= DEPTH_8; --depth) {
        const auto& colors = m_d->keyedColor[static_cast<std::size_t>(depth)];
        const auto found = colors.find(key);
        if (found != colors.end()) {
            color = found->second;
            return true;
        }
    }
    return false;
}

std::map<std::string, unsigned int> palette_t::keyedColor(const colorDepth_t& depth) const
{
    if (!isDepth(depth))
        return {};
    return m_d->keyedColor[depth];
}

void palette_t::setKeyedColor(const std::string& key, QRgb color, const colorDepth_t& depth)
{
    if (isDepth(depth))
        m_d->keyedColor[depth][key] = color;
}

void palette_t::clear()
{
    for (std::size_t depth = 0; depth < depthCount; ++depth) {
        if (m_d->colorTable[depth] != nullptr)
            m_d->colorTable[depth]->clear();
        m_d->keyedColor[depth].clear();
    }
}

bool palette_t::load(const std::string& fileName)
{
    m_d->forgetFailedLoad();
    clear();
    std::array<bool, depthCount> wasUnset = {};
    for (std::size_t depth = 0; depth < depthCount; ++depth)
        wasUnset[depth] = m_d->colorInit[depth] == nullptr;
    const bool isLoaded = loadFormat(fileName, this);
    for (std::size_t depth = 0; depth < depthCount; ++depth)
        m_d->isOfFailedLoad[depth] =
            !isLoaded && wasUnset[depth] && m_d->colorInit[depth] != nullptr;
    return isLoaded;
}

bool palette_t::load(standardPalette_t which)
{
    const char* const name = standardFileName(which);
    if (name == nullptr) {
        clear();
        return false;
    }
    return load(zorbin_qt::resourceDir(ZORBIN_SHARE_DIR) + "/palette/" + name);
}

bool palette_t::save(const std::string& fileName) const
{
    // Deliberate: ".xml" is read but never written.
    return extension(fileName) == ".wp" && xmlPaletteHandler_t().save(fileName, this);
}
} // namespace zorbin_qt_gui
