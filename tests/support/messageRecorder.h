#pragma once
#include <QStringList>
#include <QtGlobal>

/// Collects Qt's messages of every kind while it lives, instead of printing them. Nests: the
/// innermost recorder gets the message. GUI thread only, but messages may come from any thread.
class messageRecorder_t
{
public:
    messageRecorder_t();
    ~messageRecorder_t();
    messageRecorder_t(const messageRecorder_t&) = delete;
    messageRecorder_t& operator=(const messageRecorder_t&) = delete;

    /// The messages' texts so far, oldest first.
    QStringList texts() const;
    /// The messages' kinds so far, oldest first: "debug", "info", "warning", "critical", "fatal".
    QStringList kinds() const;

private:
    static void record(QtMsgType type, const QMessageLogContext& context, const QString& text);

    messageRecorder_t* const m_outer; // the recorder that was innermost before
    const QtMessageHandler m_outerHandler;
    QStringList m_texts;
    QStringList m_kinds;
};

/// The name of a message's kind, as in messageRecorder_t::kinds().
QString messageKind(QtMsgType type);

/// Whether a test's surroundings make Qt say this, whatever the test does: an X server without a
/// window manager, a platform without OpenGL, the offscreen platform, fonts that lack a script.
bool isOfTheSurroundings(const QString& text);
