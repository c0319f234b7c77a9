#pragma once
#include <QWidget>

namespace survey_console {

/// Holds a widget in its own size and keeps the layout requests within it from those around, who
/// would lay themselves out with every value that changes. A notifier settles only once there are
/// none for a while.
class layoutStop_t : public QWidget
{
public:
    /// Takes \p content over.
    explicit layoutStop_t(QWidget* content) : m_content(content) { m_content->setParent(this); }

    QSize sizeHint() const override { return m_content->sizeHint(); }
    QSize minimumSizeHint() const override { return m_content->minimumSizeHint(); }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event);
        m_content->setGeometry(rect());
    }

private:
    QWidget* const m_content;
};

} // namespace survey_console
