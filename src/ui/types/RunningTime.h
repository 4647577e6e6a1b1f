#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>

class QDateTimeEdit;

namespace paravue
{

/// Lets a date field run like the clock that its value was read from, from the moment at which the value was
/// loaded until the user edits the field.
class RunningTime : public QObject
{
    Q_OBJECT

public:
    /// A part of \a field.
    explicit RunningTime(QDateTimeEdit &field);
    /// Null when the field does not run.
    static RunningTime *of(const QDateTimeEdit &field);

    /// The value \a time was loaded. The same one again, and the one that the user has just set, change
    /// nothing. Returns whether the field has changed.
    bool begin(const QDateTime &time);
    bool isRunning() const { return m_isRunning; }
    /// A value was loaded.
    bool hasBegun() const { return m_loaded.isValid(); }

private:
    void tick();

    QDateTimeEdit &m_field;
    QDateTime m_loaded;
    QElapsedTimer m_sinceLoaded;
    bool m_isRunning = false;
};

} // namespace paravue
