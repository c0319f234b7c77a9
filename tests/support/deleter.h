#pragma once
#include <QObject>
#include <QPointer>

/// Deletes what it is given, from a slot.
class deleter_t : public QObject
{
    Q_OBJECT

public:
    explicit deleter_t(QObject* object) : m_object(object) {}

public Q_SLOTS:
    void deleteIt() { delete m_object; }

private:
    const QPointer<QObject> m_object;
};
