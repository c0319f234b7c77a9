#include "paletteFiles.h"

#include "xmlPaletteHandler.h"

#include <QDir>
#include <QFile>

using namespace zorbin_qt_gui;

namespace palette_file_tests {

QByteArray documentOf(const QByteArray& content)
{
    return "<palette>" + content + "</palette>";
}

QByteArray attributes(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i, 36) + "=\"\"";
    return text;
}

void write(const std::string& fileName, const QByteArray& text)
{
    QFile file(QFile::decodeName(fileName.c_str()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

QByteArray contentOf(const std::string& fileName)
{
    QFile file(QFile::decodeName(fileName.c_str()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be opened");
}

searchPaths_t::searchPaths_t(const QString& prefix, const QStringList& paths) : m_prefix(prefix)
{
    QDir::setSearchPaths(prefix, paths);
}

searchPaths_t::~searchPaths_t()
{
    QDir::setSearchPaths(m_prefix, {});
}

void paletteFileTestCase_t::setUp()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

QStringList paletteFileTestCase_t::namesOfFiles() const
{
    return QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

std::string paletteFileTestCase_t::path(const char* name) const
{
    return m_directory->filePath(QLatin1String(name)).toStdString();
}

bool paletteFileTestCase_t::load(const QByteArray& text, palette_t& palette) const
{
    write(path("a.wp"), text);
    return xmlPaletteHandler_t().load(path("a.wp"), &palette);
}
} // namespace palette_file_tests
