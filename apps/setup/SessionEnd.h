#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

namespace paravue
{

/// While it lives, the end of the Windows session (the user signs out, or the computer shuts down) calls a
/// function and then ends the process. Windows ends a process at any moment after it has answered that
/// message, so it could not close the window and leave its event loops.
///
/// Elsewhere the end of a session comes as a signal (program/StopSignal.h), and this does nothing.
class SessionEnd : public QAbstractNativeEventFilter
{
public:
    /// \a cleanUp deletes what has files on the disk.
    explicit SessionEnd(const std::function<void()> &cleanUp);
    ~SessionEnd() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    std::function<void()> m_cleanUp;
};

} // namespace paravue
