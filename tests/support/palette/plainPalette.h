#pragma once
#include <QString>
#include <palette.h>

/// Reads a palette in the XML format as plainly as its rules can be told, by QFile and
/// QDomDocument, whatever that takes.
bool loadPlainly(const QString& fileName, zorbin_qt_gui::palette_t* palette);
