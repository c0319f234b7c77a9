#pragma once
#include <QApplication>
#include <QByteArray>
#include <QMouseEvent>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#include <QXmlStreamReader>
#endif

// All that differs between Qt 5 and Qt 6 for this library.

namespace zorbin_qt_gui {

/// The pointer's position in whole pixels of the widget.
inline QPoint pointerPos(const QMouseEvent* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

/// The text of an XML file, to be given to all parsers. Those of Qt 5 disagree about the encoding
/// of some bytes, so they get them decoded: one parser's word about a text then holds for the
/// other.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using xmlText_t = QByteArray;
inline xmlText_t xmlText(const QByteArray& file)
{
    return file;
}
#else
using xmlText_t = QString;
inline xmlText_t xmlText(const QByteArray& file)
{
    QTextCodec* codec = QTextCodec::codecForUtfText(file, nullptr); // by the byte order mark
    if (codec == nullptr && file.startsWith(QByteArray("<\0", 2)))
        codec = QTextCodec::codecForName("UTF-16LE");
    if (codec == nullptr && file.startsWith(QByteArray("\0<", 2)))
        codec = QTextCodec::codecForName("UTF-16BE");
    if (codec == nullptr) {
        QXmlStreamReader reader(file);
        reader.readNext();
        codec = QTextCodec::codecForName(reader.documentEncoding().toLatin1());
    }
    return codec == nullptr ? QString::fromUtf8(file) : codec->toUnicode(file);
}
#endif

/// The least size that the application asks for of all widgets.
inline QSize globalStrut()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return {0, 0}; // no longer asked for
#else
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return QApplication::globalStrut();
    QT_WARNING_POP
#endif
}

} // namespace zorbin_qt_gui
