#pragma once

#include <QCoreApplication>
#include <QString>

namespace paravue
{

class PictureReceiver;

/// What a control says about the pictures of a task that it waits for. It is worked out by looking at the
/// receiver from time to time, as receivers do not tell how they fare.
class PictureStatus
{
    Q_DECLARE_TR_FUNCTIONS(PictureStatus)

public:
    /// Another receiver begins. What was wrong before is said until it brings a picture. Times are in
    /// milliseconds and wrap around.
    void begin(quint32 now);
    /// Returns true when a picture has come since the last look.
    bool look(const PictureReceiver &receiver, quint32 now);
    /// In a few words for the user why the picture that is shown, if any, is not the present one; empty while
    /// it is.
    QString text() const { return m_text; }
    /// The connection stands but nothing at all has come over it for a minute. A recorder that was switched
    /// off, or whose cable was pulled, does not close its connections.
    bool isDead() const { return m_isDead; }
    /// What has come before, where a camera looks for one, is not the present state any more.
    bool isStale() const { return m_isStale; }

private:
    QString textFor(const PictureReceiver &receiver, quint32 now);
    bool isOverdue(quint32 now) const;

    QString m_text;
    QString m_trouble; ///< what was wrong with the last receiver
    quint64 m_pictures = 0;
    quint64 m_traffic = 0;
    quint32 m_begin = 0;
    quint32 m_lastPicture = 0; ///< or the beginning of the connection
    quint32 m_lastTraffic = 0;
    bool m_hasPicture = false; ///< some picture is shown
    bool m_wasConnected = false;
    bool m_isDead = false;
    bool m_isStale = false;
};

} // namespace paravue
