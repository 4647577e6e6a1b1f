#pragma once

#include <QCoreApplication>
#include <QString>

namespace paravue
{

class PictureSource;

/// What the controls of a task show about its pictures while there is no current one. The state of the source
/// is polled.
class PictureStatus
{
    Q_DECLARE_TR_FUNCTIONS(PictureStatus)

public:
    /// The text about pictures whose \a codec, the recorder's name for it, has no decoder.
    static QString unknownCodec(const QString &codec);

    /// Starts over with another source. The last problem is shown until a picture comes. Times are in
    /// milliseconds and wrap around.
    void begin(quint32 now);
    /// Returns true when a picture has come since the last call.
    bool poll(const PictureSource &source, quint32 now);
    /// A short text for the user: why there is no picture or why the shown one is not current; empty while it
    /// is.
    QString text() const { return m_text; }
    /// What is wrong with pictures that are current; usually empty.
    QString remark() const { return m_remark; }
    /// The connection is open but nothing has arrived over it for a minute. A recorder that was switched off,
    /// or whose cable was pulled, does not close its connections.
    bool isDead() const { return m_isDead; }
    /// The last picture and the last camera position are not current any more.
    bool isStale() const { return m_isStale; }
    /// Nothing has arrived for some time, so that the camera may have turned since.
    bool isSilent() const { return m_isSilent; }

private:
    QString textFor(const PictureSource &source, quint32 now);
    bool isOverdue(quint32 now) const;
    void pollLeftOut(const PictureSource &source, quint32 now);

    QString m_text;
    QString m_remark;
    QString m_trouble; ///< what was wrong with the last source
    quint64 m_pictures = 0;
    quint64 m_traffic = 0;
    quint32 m_begin = 0;
    quint32 m_waitBegin = 0;   ///< of the next picture: the last one, or the connection behind it
    quint32 m_lastPicture = 0; ///< of this or an earlier source
    quint32 m_lastTraffic = 0;
    quint64 m_leftOut = 0;
    quint32 m_lastLeftOut = 0;
    bool m_hasPicture = false; ///< some picture is shown
    bool m_wasConnected = false;
    bool m_isDead = false;
    bool m_isStale = false;
    bool m_isSilent = false;
};

} // namespace paravue
