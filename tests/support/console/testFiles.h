#pragma once
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace survey_console {

/// Returns false if that can't be done.
bool writeFile(const QString& path, const QByteArray& content);

/// Attributes of a palette file's colour.
constexpr char redEntry[] = "r=\"255\" g=\"0\" b=\"0\"";
constexpr char greenEntry[] = "r=\"0\" g=\"255\" b=\"0\"";
constexpr char yellowEntry[] = "r=\"255\" g=\"255\" b=\"0\"";
constexpr char cyanEntry[] = "r=\"0\" g=\"255\" b=\"255\"";

/// The content of a palette file of two colours, such as redEntry and greenEntry.
QByteArray twoColors(const QByteArray& first, const QByteArray& last);

/// A resource directory with the standard palettes in two colours each: bathy is red and green,
/// imagery yellow and cyan, the others are green and cyan.
class testPalettes_t
{
public:
    /// Without some of the palettes where \p names lists those that there are.
    explicit testPalettes_t(const QStringList& names = {"bathy", "imagery", "intensity", "sidescan",
                                                        "subbottom", "watercolumn"});

    /// Has the library read them from here on.
    void use() const;

private:
    QTemporaryDir m_directory;
};
} // namespace survey_console
