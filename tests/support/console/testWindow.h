#pragma once
#include <QString>
#include <QWidget>

namespace survey_console {

/// Shows and activates \p window and waits until the window system has done so and said all about
/// it. Returns false if that takes longer than patienceMs().
bool appears(QWidget* window);

/// Returns true if all of \p widget is where a user can click on it: shown, laid out, and within
/// its window. What slides in isn't so at once.
bool isInSight(const QWidget* widget);

/// Base of what has a window to be tested, such as the console or one of its panels.
class testWindow_t
{
public:
    testWindow_t(const testWindow_t&) = delete;
    testWindow_t& operator=(const testWindow_t&) = delete;

    /// The window's child of that name and type, or a null pointer.
    template <typename widget_t>
    widget_t* find(const char* name) const
    {
        return m_window->findChild<widget_t*>(QString::fromLatin1(name));
    }

    /// Shows the window: appears().
    bool show() { return appears(m_window); }

    /// Resizes the window, which shows, and waits until the window system has done so. Returns
    /// false if it has the window in another size.
    bool resize(const QSize& size);

protected:
    testWindow_t() = default;
    ~testWindow_t() = default;

    /// To be called once, by the constructor that has made the window.
    void setWindow(QWidget* window) { m_window = window; }

private:
    QWidget* m_window = nullptr; // not owned
};
} // namespace survey_console
