#pragma once

#include "video/VideoHVX3Reciver.h"

#include <QTimer>

namespace paravue
{

class PtzTextReader;

/// The live video of a camera with pan, tilt and zoom, its position, and commands that turn it, all over the
/// connection of the base class.
///
/// The position comes in the stream, as texts "pan,tilt,zoom" of the first text stream with the title "PTZ".
/// Commands are lines that are sent once the recorder has acknowledged the login. Before that, and when the
/// connection is lost, they are dropped.
class PtzVideoReceiver : public VideoHVX3Reciver
{
    Q_OBJECT

public:
    /// The longest text of a point, in bytes of UTF-8. Longer ones are not sent.
    static constexpr qsizetype MaxPointText = 256;

    explicit PtzVideoReceiver(QObject *parent, const QDomElement &element);
    ~PtzVideoReceiver() override;

    /// The text of the last positionChanged().
    QString position() const { return m_position; }

    /// Turns the camera to a position, "pan,tilt" or "pan,tilt,zoom" as in positionChanged().
    void turnTo(const QString &position);
    /// Turns the camera to a point. Points count from 1.
    void goTo(int point);
    /// Sets a point (controls/CalibrationPoint.h describes the text) or, with an empty text, removes it. A
    /// text with control characters is not sent.
    void setPoint(int point, const QString &text);

Q_SIGNALS:
    /// The recorder's text, or an empty one when the position is no longer known: the connection is lost, or
    /// a stream without positions has begun. Emitted when the text changes, at most every 20 ms; of texts
    /// that come faster the last one is emitted.
    void positionChanged(const QString &position);

private:
    void findPositions();
    void receivePosition(const QString &position);
    void clearPosition();
    void setPosition(const QString &position);
    void send(const QByteArray &command);

    PtzTextReader *const m_reader; // child
    int m_streamId = 0; ///< of the positions; 0, the id of the picture's stream, when there are none
    QString m_position;
    QString m_newest; ///< the last position that was received
    QTimer m_pause;
};

} // namespace paravue
