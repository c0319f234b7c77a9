#include "messageRecorder.h"
#include "notifierWidget.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "testCase.h"

#include <QBoxLayout>
#include <QElapsedTimer>
#include <QFrame>
#include <QLabel>
#include <QMetaMethod>
#include <QMoveEvent>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <iterator>
#include <memory>
#include <type_traits>
#include <vector>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<notifierWidget_t>::value, "notifiers aren't copied");

// A notification of a given height.
static QWidget* ofHeight(int height)
{
    auto* const widget = new QWidget;
    widget->setFixedHeight(height);
    return widget;
}

static QFrame* frameOf(QWidget* notification)
{
    return qobject_cast<QFrame*>(notification->parentWidget());
}

// A field in one colour, which an application changes as it does a read-out.
class field_t : public QWidget
{
public:
    void setColor(const QColor& color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), m_color); }

private:
    QColor m_color = Qt::red;
};

// A notifier on the screen, a window itself or all of one.
struct board_t
{
    explicit board_t(bool isWindow)
    {
        if (isWindow) {
            notifier = new notifierWidget_t;
            window.reset(notifier);
        } else {
            window = std::make_unique<QWidget>();
            notifier = new notifierWidget_t(window.get());
            auto* const layout = new QVBoxLayout(window.get());
            layout->setContentsMargins(0, 0, 0, 0);
            layout->addWidget(notifier);
        }
        window->resize(300, 200);
        window->show();
    }

    // The colour on the screen near the top.
    QColor color() const { return shown(*window).pixelColor(150, 10); }

    std::unique_ptr<QWidget> window;
    notifierWidget_t* notifier;
};

// Requests layouts of a notifier and watches that it settles after them in time: 20 ms after the
// last one or 100 ms after the first one, whichever is sooner. A timer that is started after
// another one, for longer, comes after that one even if both are late; so this asks for no speed.
class settlingWatch_t : public QObject
{
public:
    settlingWatch_t(notifierWidget_t* notifier, QWidget* strip)
        : m_notifier(notifier), m_strip(strip)
    {
        for (QTimer* const timer : {&m_afterLast, &m_afterFirst}) {
            timer->setTimerType(Qt::PreciseTimer);
            timer->setSingleShot(true);
            connect(timer, &QTimer::timeout, this, [this] { note(!m_isPending, "is late"); });
        }
        strip->installEventFilter(this);
    }

    void request()
    {
        const bool isFirst = !m_isPending;
        m_isPending = true;
        m_strip->move(0, -1000); // settling moves it back
        if (isFirst)
            m_sinceFirst.start();
        m_sinceLast.start();
        QEvent layoutRequest(QEvent::LayoutRequest);
        QCoreApplication::sendEvent(m_notifier, &layoutRequest);
        if (isFirst)
            m_afterFirst.start(101);
        m_afterLast.start(21);
    }

    int settlings() const { return m_settlings; }
    QString fault() const { return m_fault; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::Move || static_cast<QMoveEvent*>(event)->pos().y() < 0)
            return false;
        note(m_isPending, "settles twice");
        note(m_sinceLast.nsecsElapsed() >= 20000000 || m_sinceFirst.nsecsElapsed() >= 100000000,
             "is early");
        ++m_settlings;
        m_isPending = false;
        m_afterLast.stop();
        m_afterFirst.stop();
        return false;
    }

private:
    void note(bool isRight, const char* fault)
    {
        if (!isRight && m_fault.isEmpty())
            m_fault = QStringLiteral("%1, after %2 ms, of which %3 without a request")
                          .arg(fault)
                          .arg(m_sinceFirst.elapsed())
                          .arg(m_sinceLast.elapsed());
    }

    notifierWidget_t* const m_notifier;
    QWidget* const m_strip;
    bool m_isPending = false; // has not settled since the last request
    QElapsedTimer m_sinceFirst;
    QElapsedTimer m_sinceLast;
    QTimer m_afterFirst;
    QTimer m_afterLast;
    int m_settlings = 0;
    QString m_fault; // the first one
};

/// Notifications and prompts over the bottom of a main widget.
class tst_notifierWidget : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_notifier.reset(); }

private Q_SLOTS:
    void startsEmpty();
    void hasTheDeclaredSlots();

    void wrapsAMainWidget();
    void deletesTheMainWidgetBeforeLater();
    void ignoresTheMainWidgetThatItHas();
    void forgetsADeletedMainWidget();
    void endsWithUpdatesEnabledAfterANewMainWidget();

    void framesANotification();
    void stacksTheNewestOnTop();
    void placesTheStripAtTheBottom();
    void followsTheNotificationsHeight();
    void dismissesANotification();
    void showsADismissedNotificationAgain();
    void movesANotificationShownTwice();
    void ignoresWidgetsThatItDoesNotShow();
    void removesADeletedNotification();

    void framesAPrompt();
    void coversPromptsByTheNewest();
    void uncoversThePromptBefore();
    void removesADeletedPrompt();
    void keepsNotificationsAbovePrompts();
    void dismissesOneAsTheOther();

    void refusesNull();
    void suspendsRepaintsUntilTheStripHasSettled_data();
    void suspendsRepaintsUntilTheStripHasSettled();
    void settlesOnceAfterABurst();
    void settlesInTime_data();
    void settlesInTime();
    void suspendsRepaintsFor100MillisecondsAtMost();
    void resumesRepaintsWhileHidden();
    void paintsWhatAChildAskedFor_data();
    void paintsWhatAChildAskedFor();
    void paintsAfterTheApplicationEnabledUpdates();
    void paintsDuringEndlessLayoutRequests_data();
    void paintsDuringEndlessLayoutRequests();
    void paintsDuringAnEndlessResize();
    void paintsDuringAFloodOfNotifications_data();
    void paintsDuringAFloodOfNotifications();
    void paintsBeforeTheNextChange_data();
    void paintsBeforeTheNextChange();

    void slidesANotificationIn();
    void jumpsToTheEndOfTheSlide_data();
    void jumpsToTheEndOfTheSlide();
    void slidesNothingUnlessAnimated();
    void doesNotSlidePrompts();
    void keepsASlideArmed();
    void forgetsTheSlideOnceDone();

    void survivesEveryOrderOfDeletion_data();
    void survivesEveryOrderOfDeletion();
    void survivesItsOwnDeletion_data();
    void survivesItsOwnDeletion();

private:
    QWidget* strip() const { return m_strip; }
    void settle() { QTRY_VERIFY(m_notifier->updatesEnabled()); }

    std::unique_ptr<notifierWidget_t> m_notifier;
    QWidget* m_strip = nullptr;
};

void tst_notifierWidget::setUp()
{
    m_notifier = std::make_unique<notifierWidget_t>();
    m_strip = m_notifier->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    m_notifier->resize(300, 200);
    m_notifier->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_notifier.get(), patienceMs()));
    QTRY_COMPARE(m_strip->geometry(), QRect(0, 200, 300, 0));
}

void tst_notifierWidget::startsEmpty()
{
    const notifierWidget_t* const fresh = new notifierWidget_t(m_notifier.get());
    QCOMPARE(fresh->parentWidget(), m_notifier.get());
    delete fresh;
    QVERIFY(m_notifier->mainWidget() == nullptr);
    QVERIFY(!m_notifier->isAnimated());
    m_notifier->setAnimated(true);
    QVERIFY(m_notifier->isAnimated());
    const auto* const layout = qobject_cast<QHBoxLayout*>(m_notifier->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->count(), 0);
    const auto* const stripLayout = qobject_cast<QVBoxLayout*>(strip()->layout());
    QVERIFY(stripLayout != nullptr);
    QCOMPARE(stripLayout->spacing(), 0);
    QCOMPARE(stripLayout->contentsMargins(), QMargins());
    QVERIFY(strip()->isVisible());
}

void tst_notifierWidget::hasTheDeclaredSlots()
{
    const QMetaObject& meta = notifierWidget_t::staticMetaObject;
    const auto parameter = [&meta](const char* slot) {
        return meta.method(meta.indexOfSlot(slot)).parameterNames().value(0);
    };
    QCOMPARE(parameter("setAnimated(bool)"), QByteArray("on_"));
    QCOMPARE(parameter("showNotification(QWidget*)"), QByteArray("notification_"));
    QCOMPARE(parameter("dismissNotification(QWidget*)"), QByteArray("notification_"));
    QCOMPARE(parameter("showPrompt(QWidget*)"), QByteArray("prompt_"));
    QCOMPARE(parameter("dismissPrompt(QWidget*)"), QByteArray("prompt_"));
    QVERIFY(meta.indexOfSlot("updateNotificationArea()") >= 0);
    QVERIFY(meta.indexOfSlot("animationFinished()") >= 0);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 7); // no signals
}

void tst_notifierWidget::wrapsAMainWidget()
{
    auto* const main = new QWidget;
    m_notifier->setMainWidget(main);
    QCOMPARE(m_notifier->mainWidget(), main);
    QCOMPARE(main->parentWidget(), m_notifier.get());
    QTRY_COMPARE(main->geometry(), QRect(0, 0, 300, 200));
    // The strip is above it: children are in the order of painting.
    QCOMPARE(m_notifier->children().last(), strip());
}

void tst_notifierWidget::deletesTheMainWidgetBeforeLater()
{
    const QPointer<QWidget> first = new QWidget;
    auto* const second = new QWidget;
    m_notifier->setMainWidget(first);
    m_notifier->setMainWidget(second);
    QVERIFY(first != nullptr);
    QCOMPARE(m_notifier->mainWidget(), second);
    QCOMPARE(m_notifier->layout()->count(), 1);
    QTRY_VERIFY(first == nullptr);
}

void tst_notifierWidget::ignoresTheMainWidgetThatItHas()
{
    const QPointer<QWidget> main = new QWidget;
    m_notifier->setMainWidget(main);
    m_notifier->setMainWidget(main);
    QTest::qWait(1); // deferred deletions happen
    QVERIFY(main != nullptr);
    QCOMPARE(m_notifier->mainWidget(), main.data());
}

void tst_notifierWidget::forgetsADeletedMainWidget()
{
    auto* const main = new QWidget;
    m_notifier->setMainWidget(main);
    delete main;
    QVERIFY(m_notifier->mainWidget() == nullptr);
    auto* const next = new QWidget;
    m_notifier->setMainWidget(next);
    QCOMPARE(m_notifier->mainWidget(), next);
}

// Deliberate: also where they were suspended before.
void tst_notifierWidget::endsWithUpdatesEnabledAfterANewMainWidget()
{
    m_notifier->showNotification(ofHeight(20));
    QVERIFY(!m_notifier->updatesEnabled());
    m_notifier->setMainWidget(new QWidget);
    QVERIFY(m_notifier->updatesEnabled());
}

void tst_notifierWidget::framesANotification()
{
    QWidget* const notification = ofHeight(20);
    m_notifier->showNotification(notification);
    QFrame* const frame = frameOf(notification);
    QVERIFY(frame != nullptr);
    QCOMPARE(frame->parentWidget(), strip());
    QCOMPARE(frame->frameStyle(), int(QFrame::Panel) | int(QFrame::Raised));
    QCOMPARE(frame->lineWidth(), 1);
    QVERIFY(frame->autoFillBackground());
    QCOMPARE(frame->layout()->contentsMargins(), QMargins());
    QCOMPARE(frame->layout()->spacing(), 0);
    QVERIFY(frame->isVisible());
    QVERIFY(notification->isVisible());
}

void tst_notifierWidget::stacksTheNewestOnTop()
{
    QWidget* const older = ofHeight(20);
    QWidget* const newer = ofHeight(30);
    m_notifier->showNotification(older);
    m_notifier->showNotification(newer);
    settle();
    const int newerHeight = frameOf(newer)->height();
    QVERIFY(newerHeight >= 30);
    QCOMPARE(frameOf(newer)->geometry(), QRect(0, 0, 300, newerHeight));
    QCOMPARE(frameOf(older)->geometry().topLeft(), QPoint(0, newerHeight));
}

void tst_notifierWidget::placesTheStripAtTheBottom()
{
    QWidget* const notification = ofHeight(20);
    m_notifier->showNotification(notification);
    settle();
    const int height = strip()->sizeHint().height();
    QCOMPARE(height, frameOf(notification)->sizeHint().height());
    QCOMPARE(strip()->geometry(), QRect(0, 200 - height, 300, height));
    m_notifier->resize(250, 120);
    QTRY_COMPARE(strip()->geometry(), QRect(0, 120 - height, 250, height));
}

void tst_notifierWidget::followsTheNotificationsHeight()
{
    QWidget* const notification = ofHeight(20);
    m_notifier->showNotification(notification);
    settle();
    const int height = strip()->height();
    notification->setFixedHeight(50);
    QTRY_COMPARE(strip()->geometry(), QRect(0, 170 - height, 300, height + 30));
}

void tst_notifierWidget::dismissesANotification()
{
    const QPointer<QWidget> notification = ofHeight(20);
    m_notifier->showNotification(notification);
    settle();
    const QPointer<QFrame> frame = frameOf(notification);
    m_notifier->dismissNotification(notification);
    QVERIFY(notification->isHidden());
    QCOMPARE(notification->parentWidget(), strip());
    QVERIFY(frame != nullptr); // deleted later
    QTRY_VERIFY(frame == nullptr);
    settle();
    QTRY_COMPARE(strip()->geometry(), QRect(0, 200, 300, 0));
    QVERIFY(notification != nullptr);
}

void tst_notifierWidget::showsADismissedNotificationAgain()
{
    QWidget* const notification = ofHeight(20);
    m_notifier->showNotification(notification);
    m_notifier->dismissNotification(notification);
    m_notifier->showNotification(notification);
    settle();
    QVERIFY(notification->isVisible());
    QVERIFY(frameOf(notification) != nullptr);
    QCOMPARE(strip()->height(), frameOf(notification)->sizeHint().height());
}

void tst_notifierWidget::movesANotificationShownTwice()
{
    QWidget* const first = ofHeight(20);
    QWidget* const second = ofHeight(30);
    m_notifier->showNotification(first);
    m_notifier->showNotification(second);
    m_notifier->showNotification(first);
    QTRY_COMPARE(strip()->findChildren<QFrame*>(QString(), Qt::FindDirectChildrenOnly).size(), 2);
    settle();
    QCOMPARE(frameOf(first)->y(), 0);
    QVERIFY(frameOf(second)->y() >= 20);
}

void tst_notifierWidget::ignoresWidgetsThatItDoesNotShow()
{
    const messageRecorder_t messages;
    QWidget stranger;
    m_notifier->dismissNotification(&stranger);
    QFrame foreign;
    QWidget inForeign(&foreign);
    m_notifier->dismissNotification(&inForeign);
    QCOMPARE(inForeign.parentWidget(), &foreign);

    // A child of a dismissed frame, which lies in the strip as those of notifications do.
    const QPointer<QFrame> notification = new QFrame;
    auto* const child = new QLabel(notification);
    m_notifier->showNotification(notification);
    m_notifier->dismissNotification(notification);
    settle();
    m_notifier->dismissNotification(child);
    QCOMPARE(child->parentWidget(), notification.data());
    m_notifier->dismissNotification(notification); // once more
    QVERIFY(m_notifier->updatesEnabled());
    QCOMPARE(messages.texts(), QStringList());
}

void tst_notifierWidget::removesADeletedNotification()
{
    QWidget* const notification = ofHeight(20);
    m_notifier->showNotification(notification);
    settle();
    const QPointer<QFrame> frame = frameOf(notification);
    delete notification;
    QTRY_VERIFY(frame == nullptr);
    QTRY_COMPARE(strip()->geometry(), QRect(0, 200, 300, 0));
}

void tst_notifierWidget::framesAPrompt()
{
    QWidget* const prompt = ofHeight(20);
    m_notifier->showPrompt(prompt);
    QFrame* const frame = frameOf(prompt);
    QVERIFY(frame != nullptr);
    QCOMPARE(frame->parentWidget(), strip());
    QCOMPARE(frame->frameStyle(), int(QFrame::Panel) | int(QFrame::Raised));
    QCOMPARE(frame->lineWidth(), 2);
    QVERIFY(frame->autoFillBackground());
    QCOMPARE(frame->layout()->contentsMargins(), QMargins(2, 2, 2, 2));
    QCOMPARE(frame->layout()->spacing(), 0);
    QVERIFY(prompt->isVisible());
}

void tst_notifierWidget::coversPromptsByTheNewest()
{
    QWidget* const first = ofHeight(20);
    QWidget* const second = ofHeight(20);
    m_notifier->showPrompt(first);
    m_notifier->showPrompt(second);
    settle();
    QVERIFY(!first->isVisible());
    QVERIFY(second->isVisible());
    QCOMPARE(strip()->height(), frameOf(second)->sizeHint().height());
}

void tst_notifierWidget::uncoversThePromptBefore()
{
    std::vector<QWidget*> prompts;
    for (int i = 0; i < 3; ++i) {
        prompts.push_back(ofHeight(20));
        m_notifier->showPrompt(prompts.back());
    }
    m_notifier->dismissPrompt(prompts[2]);
    QVERIFY(prompts[1]->isVisible());
    QVERIFY(!prompts[0]->isVisible());
    m_notifier->dismissPrompt(prompts[0]); // a covered one
    QVERIFY(prompts[1]->isVisible());
    m_notifier->dismissPrompt(prompts[1]);
    settle();
    QTRY_COMPARE(strip()->height(), 0);
}

void tst_notifierWidget::removesADeletedPrompt()
{
    QWidget* const first = ofHeight(20);
    QWidget* const second = ofHeight(20);
    m_notifier->showPrompt(first);
    m_notifier->showPrompt(second);
    settle();
    delete second;
    QTRY_VERIFY(first->isVisible());
    delete first;
    QTRY_COMPARE(strip()->height(), 0);
}

void tst_notifierWidget::keepsNotificationsAbovePrompts()
{
    QWidget* const notification = ofHeight(20);
    QWidget* const prompt = ofHeight(30);
    m_notifier->showNotification(notification);
    m_notifier->showPrompt(prompt);
    settle();
    QCOMPARE(frameOf(notification)->y(), 0);
    QCOMPARE(frameOf(prompt)->y(), frameOf(notification)->height());
    QWidget* const newer = ofHeight(40);
    m_notifier->showNotification(newer);
    settle();
    QCOMPARE(frameOf(newer)->y(), 0);
    QVERIFY(frameOf(prompt)->y() > frameOf(notification)->y());
}

void tst_notifierWidget::dismissesOneAsTheOther()
{
    QWidget* const notification = ofHeight(20);
    QWidget* const prompt = ofHeight(30);
    m_notifier->showNotification(notification);
    m_notifier->showPrompt(prompt);
    m_notifier->dismissPrompt(notification);
    m_notifier->dismissNotification(prompt);
    QCOMPARE(notification->parentWidget(), strip());
    QCOMPARE(prompt->parentWidget(), strip());
    QTRY_COMPARE(strip()->height(), 0);
}

void tst_notifierWidget::refusesNull()
{
    const messageRecorder_t messages;
    m_notifier->setMainWidget(nullptr);
    m_notifier->showNotification(nullptr);
    m_notifier->dismissNotification(nullptr);
    m_notifier->showPrompt(nullptr);
    m_notifier->dismissPrompt(nullptr);
    QCOMPARE(messages.texts(),
             (QStringList{"notifierWidget_t::setMainWidget: Called with null widget",
                          "notifierWidget_t::showNotification: Called with null widget",
                          "notifierWidget_t::dismissNotification: Called with null widget",
                          "notifierWidget_t::showPrompt: Called with null widget",
                          "notifierWidget_t::dismissNotification: Called with null widget"}));
    QCOMPARE(messages.kinds(),
             QStringList({"warning", "warning", "warning", "warning", "warning"}));
    QVERIFY(m_notifier->updatesEnabled());
}

void tst_notifierWidget::suspendsRepaintsUntilTheStripHasSettled_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::newRow("a notification") << QByteArray("showNotification");
    QTest::newRow("a prompt") << QByteArray("showPrompt");
    QTest::newRow("a dismissal") << QByteArray("dismissNotification");
}

void tst_notifierWidget::suspendsRepaintsUntilTheStripHasSettled()
{
    QFETCH(QByteArray, operation);
    QWidget* const widget = ofHeight(20);
    if (operation == "dismissNotification") {
        m_notifier->showNotification(widget);
        settle();
    }
    QVERIFY(QMetaObject::invokeMethod(m_notifier.get(), operation.constData(),
                                      Q_ARG(QWidget*, widget)));
    QVERIFY(!m_notifier->updatesEnabled());
    QTRY_VERIFY(m_notifier->updatesEnabled());
    QCOMPARE(strip()->height(), strip()->sizeHint().height());
}

void tst_notifierWidget::settlesOnceAfterABurst()
{
    class geometryLog_t : public QObject
    {
    public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Resize ? 1 : 0;
            return false;
        }
    } log;
    strip()->installEventFilter(&log);
    for (int i = 0; i < 5; ++i)
        m_notifier->showNotification(ofHeight(20));
    settle();
    QCOMPARE(log.count, 1);
    QVERIFY(strip()->height() >= 100);
}

void tst_notifierWidget::settlesInTime_data()
{
    QTest::addColumn<int>("shortest"); // time between two requests, in ms
    QTest::addColumn<int>("longest");
    QTest::addColumn<int>("settlings");
    QTest::newRow("every millisecond") << 1 << 1 << 3;
    QTest::newRow("every 10 ms") << 10 << 10 << 3;
    QTest::newRow("every 15 ms") << 15 << 15 << 3;
    QTest::newRow("every 50 ms") << 50 << 50 << 3;
    QTest::newRow("as it comes") << 0 << 25 << 20;
    QTest::newRow("with long pauses") << 10 << 60 << 20;
}

void tst_notifierWidget::settlesInTime()
{
    QFETCH(int, shortest);
    QFETCH(int, longest);
    QFETCH(int, settlings);
    random_t random;
    settlingWatch_t watch(m_notifier.get(), strip());
    QTimer requests;
    requests.setTimerType(Qt::PreciseTimer);
    requests.setSingleShot(true);
    connect(&requests, &QTimer::timeout, this, [&] {
        watch.request();
        requests.start(random.integer(shortest, longest));
    });
    requests.start(0);
    QVERIFY(
        QTest::qWaitFor([&] { return watch.settlings() >= settlings || !watch.fault().isEmpty(); },
                        60000 * patience()));
    requests.stop();
    QTRY_COMPARE(strip()->y(), 200);
    QCOMPARE(watch.fault(), QString());
}

// The time counts from the request before the notification, if there is one.
void tst_notifierWidget::suspendsRepaintsFor100MillisecondsAtMost()
{
    const auto request = [this] {
        QEvent layoutRequest(QEvent::LayoutRequest);
        QCoreApplication::sendEvent(m_notifier.get(), &layoutRequest);
    };
    bool areResumed = false;
    QTimer latest; // comes after all that is due before, however late
    latest.setTimerType(Qt::PreciseTimer);
    latest.setSingleShot(true);
    connect(&latest, &QTimer::timeout, this, [&] { areResumed = m_notifier->updatesEnabled(); });
    QTimer requests;
    connect(&requests, &QTimer::timeout, this, request);
    request();
    latest.start(101);
    m_notifier->showNotification(ofHeight(20));
    requests.start(5);
    QTRY_VERIFY(!latest.isActive());
    QVERIFY(areResumed);
}

void tst_notifierWidget::resumesRepaintsWhileHidden()
{
    notifierWidget_t hidden;
    QWidget* const notification = ofHeight(20);
    hidden.showNotification(notification);
    QVERIFY(!hidden.updatesEnabled());
    QTRY_VERIFY(hidden.updatesEnabled());
    hidden.dismissNotification(notification);
    QTRY_VERIFY(hidden.updatesEnabled());
}

// Rows of both, a notifier that is a window and one within a window.
template <typename... columns_t>
static void addRows(const QString& name, columns_t... columns)
{
    for (const bool isWindow : {true, false}) {
        const QString place = isWindow ? QStringLiteral("a window") : QStringLiteral("a child");
        QTestData& row = QTest::newRow(qPrintable(place + QStringLiteral(", ") + name));
        row << isWindow;
        (void)(row << ... << columns);
    }
}

void tst_notifierWidget::paintsWhatAChildAskedFor_data()
{
    QTest::addColumn<bool>("isWindow");
    QTest::addColumn<QByteArray>("operation");
    QTest::addColumn<QByteArray>("moment");
    for (const char* const operation : {"showNotification", "showPrompt", "dismissNotification"}) {
        for (const char* const moment : {"before", "right after", "a while after"})
            addRows(QStringLiteral("%1 %2").arg(moment, operation), QByteArray(operation),
                    QByteArray(moment));
    }
}

// Qt drops the pending update of a window whose repaints are suspended, and takes no further one.
void tst_notifierWidget::paintsWhatAChildAskedFor()
{
    QFETCH(bool, isWindow);
    QFETCH(QByteArray, operation);
    QFETCH(QByteArray, moment);
    const board_t board(isWindow);
    QVERIFY(QTest::qWaitForWindowExposed(board.window.get(), patienceMs()));
    auto* const field = new field_t;
    board.notifier->setMainWidget(field);
    QWidget* const widget = ofHeight(20);
    if (operation == "dismissNotification")
        board.notifier->showNotification(widget);
    QTRY_VERIFY(board.notifier->updatesEnabled());
    QTRY_COMPARE(board.color(), QColor(Qt::red));
    if (moment == "before")
        field->setColor(Qt::blue);
    QVERIFY(
        QMetaObject::invokeMethod(board.notifier, operation.constData(), Q_ARG(QWidget*, widget)));
    if (moment == "a while after")
        QCoreApplication::processEvents();
    if (moment != "before")
        field->setColor(Qt::blue);
    QTRY_COMPARE(board.color(), QColor(Qt::blue));
}

// The application suspends repaints itself, too, and resumes them before the strip has settled.
void tst_notifierWidget::paintsAfterTheApplicationEnabledUpdates()
{
    auto* const field = new field_t;
    m_notifier->setMainWidget(field);
    m_notifier->showPrompt(ofHeight(20));
    settle();
    QTRY_COMPARE(shown(*m_notifier).pixelColor(150, 10), QColor(Qt::red));
    field->setColor(Qt::green);
    m_notifier->showPrompt(ofHeight(20)); // moves nothing
    QCoreApplication::processEvents();    // the pending update is gone
    m_notifier->setUpdatesEnabled(false);
    m_notifier->setUpdatesEnabled(true);
    field->setColor(Qt::blue);
    QTRY_COMPARE(shown(*m_notifier).pixelColor(150, 10), QColor(Qt::blue));
}

// Counts how often a widget is painted.
class paintCounter_t : public QObject
{
public:
    explicit paintCounter_t(QWidget* widget) { widget->installEventFilter(this); }

    int count() const { return m_count; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

void tst_notifierWidget::paintsDuringEndlessLayoutRequests_data()
{
    QTest::addColumn<bool>("isWindow");
    QTest::addColumn<int>("interval"); // ms
    for (const int interval : {15, 10, 1, 0})
        addRows(QStringLiteral("every %1 ms").arg(interval), interval);
}

void tst_notifierWidget::paintsDuringEndlessLayoutRequests()
{
    QFETCH(bool, isWindow);
    QFETCH(int, interval);
    const board_t board(isWindow);
    auto* const page = new QWidget;
    auto* const label = new QLabel;
    (new QVBoxLayout(page))->addWidget(label);
    board.notifier->setMainWidget(page);
    QVERIFY(QTest::qWaitForWindowExposed(board.window.get(), patienceMs()));
    int value = 0;
    QTimer values; // a label asks for a layout with each text
    connect(&values, &QTimer::timeout, this, [&] { label->setText(QString::number(++value)); });
    values.start(interval);
    board.notifier->showNotification(ofHeight(20));
    const paintCounter_t paints(label);
    QTRY_VERIFY(paints.count() >= 10);
    QTRY_VERIFY(board.notifier->updatesEnabled());
}

void tst_notifierWidget::paintsDuringAnEndlessResize()
{
    QWidget window;
    window.resize(300, 300);
    auto* const notifier = new notifierWidget_t(&window);
    auto* const field = new field_t;
    notifier->setMainWidget(field);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    QTimer resizes;
    connect(&resizes, &QTimer::timeout, notifier,
            [notifier] { notifier->resize(300, notifier->height() == 200 ? 201 : 200); });
    resizes.start(5);
    notifier->showNotification(ofHeight(20));
    const paintCounter_t paints(field);
    QTRY_VERIFY(paints.count() >= 3);
}

void tst_notifierWidget::paintsDuringAFloodOfNotifications_data()
{
    QTest::addColumn<bool>("isWindow");
    addRows(QStringLiteral("every 10 ms"));
}

void tst_notifierWidget::paintsDuringAFloodOfNotifications()
{
    QFETCH(bool, isWindow);
    const board_t board(isWindow);
    auto* const field = new field_t;
    board.notifier->setMainWidget(field);
    QVERIFY(QTest::qWaitForWindowExposed(board.window.get(), patienceMs()));
    QPointer<QWidget> notification;
    QTimer flood;
    connect(&flood, &QTimer::timeout, this, [&] {
        field->update();
        delete notification;
        notification = ofHeight(20);
        board.notifier->showNotification(notification);
    });
    flood.start(10);
    QTRY_VERIFY(notification != nullptr);
    const paintCounter_t paints(field);
    QTRY_VERIFY(paints.count() >= 3);
}

void tst_notifierWidget::paintsBeforeTheNextChange_data()
{
    QTest::addColumn<bool>("isWindow");
    addRows(QStringLiteral("settled"));
}

// A change that comes right after the strip has settled suspends repaints again, so that a request
// would come too late.
void tst_notifierWidget::paintsBeforeTheNextChange()
{
    QFETCH(bool, isWindow);
    const board_t board(isWindow);
    auto* const field = new field_t;
    board.notifier->setMainWidget(field);
    QVERIFY(QTest::qWaitForWindowExposed(board.window.get(), patienceMs()));
    QTRY_COMPARE(board.color(), QColor(Qt::red));
    board.notifier->showNotification(ofHeight(20));
    QCoreApplication::processEvents();
    const paintCounter_t paints(field);
    field->setColor(Qt::blue);
    QVERIFY(QMetaObject::invokeMethod(board.notifier, "updateNotificationArea"));
    board.notifier->showNotification(ofHeight(20));
    QVERIFY(!board.notifier->updatesEnabled());
    QVERIFY(paints.count() > 0);
}

void tst_notifierWidget::slidesANotificationIn()
{
    m_notifier->setAnimated(true);
    QWidget* const notification = ofHeight(40);
    m_notifier->showNotification(notification);
    QFrame* const frame = frameOf(notification);
    const int height = frame->sizeHint().height();
    QVERIFY(height >= 40);
    QCOMPARE(frame->geometry(), QRect(0, height, 300, height)); // its height below its place
    QCOMPARE(strip()->children().indexOf(frame), 0);            // beneath the others
    QTRY_VERIFY(m_notifier->updatesEnabled());
    QTRY_COMPARE(frame->geometry(), QRect(0, 0, 300, height));
}

void tst_notifierWidget::jumpsToTheEndOfTheSlide_data()
{
    QTest::addColumn<int>("event");
    QTest::newRow("a resize") << 0;
    QTest::newRow("another notification") << 1; // which comes to lie above
    QTest::newRow("a prompt") << 2;
    QTest::newRow("a dismissal") << 3;
}

// Whether a notification is sliding in.
static bool isBelowItsPlace(const QFrame* frame)
{
    return frame->y() > 0;
}

void tst_notifierWidget::jumpsToTheEndOfTheSlide()
{
    QFETCH(int, event);
    QWidget* const below = ofHeight(20);
    m_notifier->showNotification(below);
    settle();
    m_notifier->setAnimated(true);
    QWidget* const notification = ofHeight(40);
    m_notifier->showNotification(notification);
    QFrame* const frame = frameOf(notification);
    settle(); // and begins to slide
    QVERIFY(isBelowItsPlace(frame));
    int place = 0;
    switch (event) {
    case 0:
        m_notifier->resize(300, 210);
        break;
    case 1:
        m_notifier->showNotification(ofHeight(10));
        place = 12; // and a frame of a pixel around it
        break;
    case 2:
        m_notifier->showPrompt(ofHeight(10));
        break;
    default:
        m_notifier->dismissNotification(below);
    }
    QCOMPARE(frame->y(), place);
}

void tst_notifierWidget::slidesNothingUnlessAnimated()
{
    QWidget* const notification = ofHeight(40);
    m_notifier->showNotification(notification);
    settle();
    QCOMPARE(frameOf(notification)->y(), 0);
}

void tst_notifierWidget::doesNotSlidePrompts()
{
    m_notifier->setAnimated(true);
    QWidget* const prompt = ofHeight(40);
    m_notifier->showPrompt(prompt);
    settle();
    QCOMPARE(frameOf(prompt)->y(), 0);
}

// Deliberate: what is armed before the strip has settled starts with it, or once slides are on
// again.
void tst_notifierWidget::keepsASlideArmed()
{
    m_notifier->setAnimated(true);
    QWidget* const notification = ofHeight(40);
    m_notifier->showNotification(notification);
    QFrame* const frame = frameOf(notification);
    m_notifier->setAnimated(false);
    settle();
    QCOMPARE(frame->y(), 0); // placed without a slide
    m_notifier->setAnimated(true);
    m_notifier->resize(300, 210);
    QTRY_VERIFY(isBelowItsPlace(frame));
    QTRY_COMPARE(frame->y(), 0);
}

void tst_notifierWidget::forgetsTheSlideOnceDone()
{
    m_notifier->setAnimated(true);
    QWidget* const notification = ofHeight(40);
    m_notifier->showNotification(notification);
    QFrame* const frame = frameOf(notification);
    settle();
    QTRY_COMPARE(frame->y(), 0);
    QTest::qWait(250); // the slide's time: what the test is about is that nothing comes after it
    class moveLog_t : public QObject
    {
    public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() != QEvent::Move)
                return false;
            const auto* const move = static_cast<QMoveEvent*>(event);
            count += move->pos() != move->oldPos() ? 1 : 0;
            return false;
        }
    } moves;
    frame->installEventFilter(&moves);
    m_notifier->resize(310, 210);
    QTRY_COMPARE(strip()->width(), 310);
    QTRY_COMPARE(frame->width(), 310);
    QCOMPARE(moves.count, 0);
}

void tst_notifierWidget::survivesEveryOrderOfDeletion_data()
{
    QTest::addColumn<bool>("animated");
    QTest::addColumn<bool>("settled");
    QTest::newRow("at rest") << false << true;
    QTest::newRow("before settling") << false << false;
    QTest::newRow("sliding") << true << true;
    QTest::newRow("about to slide") << true << false;
}

void tst_notifierWidget::survivesEveryOrderOfDeletion()
{
    QFETCH(bool, animated);
    QFETCH(bool, settled);
    std::vector<int> order = {0, 1, 2, 3};
    do {
        m_notifier->setAnimated(animated);
        std::vector<QPointer<QWidget>> widgets;
        for (int i = 0; i < 4; ++i)
            widgets.emplace_back(ofHeight(10 + i));
        m_notifier->setMainWidget(widgets[0]);
        m_notifier->showPrompt(widgets[1]);
        m_notifier->showPrompt(widgets[2]);
        m_notifier->showNotification(widgets[3]);
        if (settled)
            settle();
        for (const int i : order) {
            delete widgets[static_cast<std::size_t>(i)];
            if (settled)
                QCoreApplication::processEvents();
        }
        QTRY_COMPARE(strip()->findChildren<QFrame*>().size(), 0);
        settle();
    } while (std::next_permutation(order.begin(), order.end()));
    QTRY_COMPARE(strip()->height(), 0);
}

void tst_notifierWidget::survivesItsOwnDeletion_data()
{
    survivesEveryOrderOfDeletion_data();
}

void tst_notifierWidget::survivesItsOwnDeletion()
{
    QFETCH(bool, animated);
    QFETCH(bool, settled);
    m_notifier->setAnimated(animated);
    const QPointer<QWidget> main = new QWidget;
    const QPointer<QWidget> notification = ofHeight(20);
    const QPointer<QWidget> prompt = ofHeight(20);
    const QPointer<QWidget> dismissed = ofHeight(20);
    m_notifier->setMainWidget(main);
    m_notifier->showNotification(dismissed);
    m_notifier->dismissNotification(dismissed);
    m_notifier->showPrompt(prompt);
    m_notifier->showNotification(notification);
    if (settled)
        settle();
    m_notifier.reset();
    QVERIFY(main == nullptr && notification == nullptr && prompt == nullptr);
    QVERIFY(dismissed == nullptr);
    QCoreApplication::processEvents();
}

ZORBIN_TEST_MAIN(tst_notifierWidget, QApplication)
#include "tst_notifierWidget.moc"
