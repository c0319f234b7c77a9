// Notifications over the bottom of a log. Add some, each above those before, and dismiss them; the
// prompt stays below them.

#include "pages.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <zorbin-qt-gui/notifierWidget.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

void notify(notifierWidget_t* notifier, const QString& text)
{
    auto* const notification = new QWidget; // the notifier owns it once it is shown
    auto* const layout = new QHBoxLayout(notification);
    layout->setContentsMargins(6, 2, 2, 2);
    auto* const dismiss = new QPushButton(QStringLiteral("Dismiss"));
    layout->addWidget(new QLabel(text), 1);
    layout->addWidget(dismiss);
    QObject::connect(dismiss, &QPushButton::clicked, notifier, [notifier, notification] {
        notifier->dismissNotification(notification);
        notification->deleteLater(); // a dismissed one is only hidden
    });
    notifier->showNotification(notification);
}

} // namespace

QWidget* makeNotifierWidget()
{
    auto* const log = new QWidget;
    auto* const layout = new QVBoxLayout(log);
    layout->addWidget(new QLabel(QStringLiteral("14:02:10  Line 7 started, heading 271.5\u00b0\n"
                                                "14:16:42  Altitude 3.1 m")));
    auto* const add = new QPushButton(QStringLiteral("Lose the gyro"));
    layout->addWidget(add, 0, Qt::AlignLeft);
    layout->addStretch(1);
    layout->addSpacing(70); // for what is laid over it

    auto* const page = new notifierWidget_t;
    page->setMainWidget(log);
    QObject::connect(add, &QPushButton::clicked, page,
                     [page] { notify(page, QStringLiteral("The gyro sends no heading")); });
    page->showPrompt(new QLabel(QStringLiteral("  Start line 8?")));
    notify(page, QStringLiteral("The disk is nearly full"));
    return page;
}

} // namespace gallery
