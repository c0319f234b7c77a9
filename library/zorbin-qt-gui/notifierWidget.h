#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
struct notifierWidgetPrivate_t;

/// Wraps an application's main widget and lays a strip with notifications over its bottom edge.
///
/// Notifications are the application's own widgets, stacked with the newest on top; when animated,
/// they slide in from below. Prompts share one place below them, where the newest covers those
/// before.
///
/// The strip settles 20 ms after the last of a burst of changes, layout requests and resizes, and
/// at the latest 100 ms after the first one since it last settled. From a call that shows or
/// dismisses a widget until the strip settles nothing is repainted; then everything is.
///
/// Widgets handed in become children of this one. A widget that was dismissed stays so, hidden,
/// until the application deletes it; deleting a shown one removes it. GUI thread only.
/// \image html notifierWidget.png
class ZORBIN_QT_GUI_EXPORT notifierWidget_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes a wrapper without main widget, not animated.
    explicit notifierWidget_t(QWidget* parent = nullptr);
    ~notifierWidget_t() override;

    /// Wraps \p w, which it owns from then on, and deletes the main widget before it later. Null is
    /// refused with a warning, the present main widget is ignored.
    void setMainWidget(QWidget* w);
    /// The main widget, or null.
    QWidget* mainWidget();

    /// Whether new notifications slide in.
    bool isAnimated();

public Q_SLOTS:
    /// Sets whether new notifications slide in, false at first.
    void setAnimated(bool on_);
    /// Shows a widget above all notifications. Null is refused with a warning.
    void showNotification(QWidget* notification_);
    /// Removes a notification or a prompt. Null is refused with a warning, a widget that isn't
    /// shown here is ignored.
    void dismissNotification(QWidget* notification_);
    /// Shows a widget as a prompt, which covers the one shown before. Null is refused with a
    /// warning.
    void showPrompt(QWidget* prompt_);
    /// The same as dismissNotification().
    void dismissPrompt(QWidget* prompt_);

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    void updateNotificationArea();
    void animationFinished();

private:
    const std::unique_ptr<notifierWidgetPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
