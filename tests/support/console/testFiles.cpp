#include "testFiles.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace survey_console {

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray twoColors(const QByteArray& first, const QByteArray& last)
{
    return "<palette><colorTable depth=\"24\"><color " + first + "/><color " + last +
           "/></colorTable><keyedColorTable/></palette>";
}

testPalettes_t::testPalettes_t(const QStringList& names)
{
    QDir(m_directory.path()).mkdir(QStringLiteral("palette"));
    for (const QString& name : names) {
        const QString path = m_directory.filePath(QStringLiteral("palette/%1.wp").arg(name));
        const QByteArray content = name == QLatin1String("bathy") ? twoColors(redEntry, greenEntry)
                                   : name == QLatin1String("imagery")
                                       ? twoColors(yellowEntry, cyanEntry)
                                       : twoColors(greenEntry, cyanEntry);
        if (!writeFile(path, content))
            qFatal("cannot write '%s'", qPrintable(path));
    }
}

void testPalettes_t::use() const
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(m_directory.path()));
}
} // namespace survey_console
