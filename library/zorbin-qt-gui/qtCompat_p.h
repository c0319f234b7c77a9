#pragma once
#include <QApplication>
#include <QByteArray>
#include <QMouseEvent>
#include <QXmlStreamReader>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringConverter>
#else
#include <QTextCodec>
#endif

#include <string>

class QOpenGLContext;

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

/// The text of an XML file, by its byte order mark or the encoding that it declares, else as UTF-8.
/// Parsers disagree about the encoding of some bytes, so they get them decoded: one parser's word
/// about a text then holds for the other.
inline QString xmlText(const QByteArray& file)
{
    const auto declaredEncoding = [&file] {
        QXmlStreamReader reader(file);
        reader.readNext();
        return reader.documentEncoding().toLatin1();
    };
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const auto marked = QStringConverter::encodingForData(file, u'<');
    QStringDecoder decoder = marked ? QStringDecoder(*marked) : QStringDecoder(declaredEncoding());
    return decoder.isValid() ? decoder(file) : QString::fromUtf8(file);
#else
    QTextCodec* codec = QTextCodec::codecForUtfText(file, nullptr);
    if (codec == nullptr && file.startsWith(QByteArray("<\0", 2)))
        codec = QTextCodec::codecForName("UTF-16LE");
    if (codec == nullptr && file.startsWith(QByteArray("\0<", 2)))
        codec = QTextCodec::codecForName("UTF-16BE");
    if (codec == nullptr)
        codec = QTextCodec::codecForName(declaredEncoding());
    return codec == nullptr ? QString::fromUtf8(file) : codec->toUnicode(file);
#endif
}

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

/// The context of a glWidgetBase_t; null as long as it has none with the fixed-function OpenGL.
QOpenGLContext* glContextOf(const QWidget& glWidget);
/// What such a context says of its vendor; empty if none can be had.
std::string glVendor();
/// Whether one can be had in this process; found out once.
bool isGlUsable();

} // namespace zorbin_qt_gui
