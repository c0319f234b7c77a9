#include "messageRecorder.h"

#include <mutex>

namespace {
std::mutex mutex; // guards all of this file's state
messageRecorder_t* innermost = nullptr;
} // namespace

messageRecorder_t::messageRecorder_t()
    : m_outer(innermost), m_outerHandler(qInstallMessageHandler(&messageRecorder_t::record))
{
    const std::lock_guard<std::mutex> lock(mutex);
    innermost = this;
}

messageRecorder_t::~messageRecorder_t()
{
    const std::lock_guard<std::mutex> lock(mutex);
    innermost = m_outer;
    qInstallMessageHandler(m_outerHandler);
}

QStringList messageRecorder_t::texts() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return m_texts;
}

QStringList messageRecorder_t::kinds() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return m_kinds;
}

void messageRecorder_t::record(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!innermost)
        return; // a message of another thread that overtook the recorder's construction
    innermost->m_texts.append(text);
    innermost->m_kinds.append(messageKind(type));
}

QString messageKind(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    case QtFatalMsg:
        return QStringLiteral("fatal");
    }
    Q_UNREACHABLE();
}

bool isOfTheSurroundings(const QString& text)
{
    // Without a window manager Qt may give the focus to a window before the X server shows it.
    if (text.startsWith(QLatin1String("QXcbConnection: XCB error: 8 (BadMatch)")))
        return text.contains(QLatin1String("(SetInputFocus)"));
    // In runs that are to do without OpenGL, for each widget that asks for it.
    if (text.startsWith(QLatin1String("QXcbIntegration: Cannot create platform ")) &&
        text.endsWith(QLatin1String("neither GLX nor EGL are enabled")))
        return qgetenv("QT_XCB_GL_INTEGRATION") == "none";
    // Fonts that are there needn't know all scripts.
    if (text.trimmed().startsWith(QLatin1String("OpenType support missing for ")))
        return true;
    // The offscreen platform has neither.
    return text == QLatin1String("This plugin does not support setParent!") ||
           text == QLatin1String("This plugin does not support propagateSizeHints()");
}
