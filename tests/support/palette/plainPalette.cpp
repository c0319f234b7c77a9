#include "plainPalette.h"

#include <QDomDocument>
#include <QFile>

using namespace zorbin_qt_gui;

static palette_t::colorDepth_t depthOf(const QDomElement& table)
{
    return table.attribute("depth") == "24" ? palette_t::DEPTH_24 : palette_t::DEPTH_8;
}

static QRgb colorOf(const QDomElement& entry)
{
    return qRgb(entry.attribute("r").toInt(), entry.attribute("g").toInt(),
                entry.attribute("b").toInt());
}

bool loadPlainly(const QString& fileName, palette_t* palette)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QDomDocument document;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    const QDomDocument::ParseResult result = document.setContent(&file);
    const bool isRead = bool(result);
    const QString fault = result.errorMessage;
    const auto line = static_cast<int>(result.errorLine);
    const auto column = static_cast<int>(result.errorColumn);
#else
    QString fault;
    int line = 0;
    int column = 0;
    const bool isRead = document.setContent(&file, &fault, &line, &column);
#endif
    if (!isRead) {
        qDebug("palette_t::load:  %s on line %d, column %d", qPrintable(fault), line, column);
        return false;
    }
    const QDomElement root = document.documentElement();
    if (root.tagName() != "palette" || root.firstChildElement("colorTable").isNull() ||
        root.firstChildElement("keyedColorTable").isNull())
        return false;
    for (QDomElement table = root.firstChildElement("colorTable"); !table.isNull();
         table = table.nextSiblingElement("colorTable")) {
        std::vector<unsigned int> colors;
        for (QDomElement entry = table.firstChildElement(); !entry.isNull();
             entry = entry.nextSiblingElement()) {
            if (entry.tagName() != "color")
                return false;
            colors.push_back(colorOf(entry));
        }
        palette->setColorTable(colors, depthOf(table));
    }
    for (QDomElement table = root.firstChildElement("keyedColorTable"); !table.isNull();
         table = table.nextSiblingElement("keyedColorTable")) {
        for (QDomElement entry = table.firstChildElement(); !entry.isNull();
             entry = entry.nextSiblingElement()) {
            const std::string key = entry.attribute("key").toLatin1().toStdString();
            if (entry.tagName() != "keyedColor" || key.empty())
                return false;
            palette->setKeyedColor(key, colorOf(entry), depthOf(table));
        }
    }
    return true;
}
