#include "testCase.h"

#include "messageRecorder.h"

#include <QApplication>
#include <QStringList>
#include <cstdio>
#include <mutex>

namespace {

std::mutex mutex;        // guards the two below
QStringList unannounced; // messages since they were last looked at
QtMessageHandler outerHandler = nullptr;

void watchMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    QtMessageHandler forward = nullptr;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (type != QtDebugMsg && type != QtInfoMsg && !isOfTheSurroundings(text))
            unannounced.append(text);
        forward = outerHandler;
    }
    forward(type, context, text);
}

void watchMessages()
{
    const QtMessageHandler before = qInstallMessageHandler(watchMessage);
    const std::lock_guard<std::mutex> lock(mutex);
    if (before != watchMessage)
        outerHandler = before;
}

QStringList takeUnannounced()
{
    const std::lock_guard<std::mutex> lock(mutex);
    QStringList messages;
    messages.swap(unannounced);
    return messages;
}

// Widgets that nobody owns. Qt's own stand-in for the desktop is none of them.
QWidgetList unownedWidgets()
{
    QWidgetList widgets;
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return widgets;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const widget : all) {
        if (widget->parent() == nullptr && widget->windowType() != Qt::Desktop)
            widgets.append(widget);
    }
    return widgets;
}

} // namespace

void testCase_t::initTestCase_data()
{
    watchMessages(); // on top of QtTest's own, which has been installed by now
}

void testCase_t::init()
{
    const QStringList messages = takeUnannounced();
    if (!messages.isEmpty())
        QFAIL(qPrintable("before the function: " + messages.join(QLatin1String("; "))));
    m_widgetsBefore = unownedWidgets();
    setUp();
}

void testCase_t::cleanup()
{
    tearDown();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QStringList faults = takeUnannounced();
    const QWidgetList widgets = unownedWidgets();
    for (const QWidget* const widget : widgets) {
        if (!m_widgetsBefore.contains(const_cast<QWidget*>(widget)))
            faults.append(QStringLiteral("a %1 is left").arg(widget->metaObject()->className()));
    }
    if (!faults.isEmpty())
        QFAIL(qPrintable(faults.join(QLatin1String("; "))));
}

int patience()
{
    static const int factor = qMax(1, qEnvironmentVariableIntValue("ZORBIN_TEST_PATIENCE"));
    return factor;
}

int patienceMs()
{
    return 5000 * patience();
}

int runTests(testCase_t& tests, int argc, char** argv)
{
    // A function that hangs tells where it does before ctest ends the program.
    if (!qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(290000 * patience()));
    const int failures = QTest::qExec(&tests, argc, argv);
    watchMessages(); // QtTest has put back the handler from before it
    return failures;
}

int messagesOutsideFunctions()
{
    const QStringList messages = takeUnannounced();
    for (const QString& message : messages)
        std::fprintf(stderr, "FAIL!  : outside of the functions: %s\n", qPrintable(message));
    return static_cast<int>(messages.size());
}
