#pragma once

#include "video/VideoHVX3Reciver.h"

#include <QTimer>

namespace paravue
{

class PtzTextReader;

/// The live video of a camera with pan, tilt and zoom, where it looks, and the way to turn it: all over the
/// one connection of its base class.
///
/// The position comes in the stream, as texts "pan,tilt,zoom" of the first text stream with the title "PTZ".
/// Commands go the other way, a line each, once the recorder has acknowledged the login; before that and when
/// the connection is lost they are dropped.
class PtzVideoReceiver : public VideoHVX3Reciver
{
    Q_OBJECT

public:
    /// The longest text of a point, in bytes of UTF-8. Longer ones are not sent.
    static constexpr qsizetype MaxPointText = 256;

    explicit PtzVideoReceiver(QObject *parent, const QDomElement &element);
    ~PtzVideoReceiver() override;

    /// What positionChanged() has told last.
    QString position() const { return m_position; }

    /// Turns the camera to a point; they count from 1.
    void goTo(int point);
    /// Tells the recorder what a point is (controls/CalibrationPoint.h describes the text); an empty text
    /// takes it away. A text with control characters is not sent.
    void setPoint(int point, const QString &text);

Q_SIGNALS:
    /// The recorder's text, or an empty one when the position is not known any more: the connection is lost,
    /// or a stream has begun that does not tell it. Never the same text twice in a row, and however often the
    /// recorder sends one, no more often than eyes can follow; the last one is always told.
    void positionChanged(const QString &position);

private:
    void findPositions();
    void received(const QString &position);
    void forgetPosition();
    void setPosition(const QString &position);
    void send(const QByteArray &command);

    PtzTextReader *const m_reader; // child
    int m_streamId = 0;            ///< of the positions; 0, which is the picture's, when there are none
    QString m_position;
    QString m_newest; ///< what came while m_pause was running
    QTimer m_pause;
};

} // namespace paravue
