#pragma once
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPaintEvent>
#include <QRegion>
#include <QWidget>
#include <utility>

/// Collects the regions of a widget's paint events.
class paintLog_t : public QObject
{
public:
    explicit paintLog_t(QWidget* widget) { widget->installEventFilter(this); }

    /// What was painted since the last time this was asked, all pending events processed.
    QRegion take()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return std::exchange(m_region, QRegion());
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion m_region;
};
