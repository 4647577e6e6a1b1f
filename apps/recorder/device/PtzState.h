#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <optional>

namespace recorder
{

/// The position of a PTZ camera: pan from -1 (left) to 1, tilt from -1 (down) to 1, zoom from 0 (wide) to 1.
struct CameraPose {
    double pan = 0;
    double tilt = 0;
    double zoom = 0;

    /// As it is sent to clients: "0.300,-0.250,0.500".
    QByteArray text() const;
    friend bool operator==(const CameraPose &, const CameraPose &) = default;
};

/// The PTZ camera. It turns at a limited speed and has numbered points (presets) that it can be sent to.
///
/// A point is a text "x,y" or "x,y,pan,tilt,zoom": its place in an overview picture, which only clients use,
/// and the position of the camera. The camera cannot go to a point without a position. After five numbers and
/// a comma a point may have a printable remark.
class PtzState : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxPoints = 64;
    static constexpr qsizetype MaxPointText = 256;

    explicit PtzState(QObject *parent = nullptr);

    /// Reads PAN, TILT, ZOOM and POINT1, POINT2, ... from the section "ptz" of a file "streams". The first
    /// file sets the position. A later one turns the camera only if its position differs from that of the
    /// file before: a client that saves all files sends the position without asking for a turn.
    void readFile(const QByteArray &streamsFile);

    /// Executes one line of a client, given without its line end: "PTZ GOTO n", "PTZ POINT n text" (without a
    /// text the point is removed) or "PTZ MOVE pan,tilt,zoom". Returns the error for the log; empty on
    /// success.
    QString execute(const QByteArray &line);

    const CameraPose &pose() const { return m_pose; }
    bool isTurning() const { return m_stepTimer.isActive(); }
    /// The text of a point, empty when there is none.
    QByteArray point(int number) const { return m_points.value(number); }

Q_SIGNALS:
    /// The position has changed. Emitted many times a second while the camera turns.
    void moved();

private:
    QString goTo(const QByteArray &number);
    QString setPoint(const QByteArray &numberAndText);
    QString turnTo(const QByteArray &pose);
    void turnTo(const CameraPose &goal);
    void step();

    CameraPose m_pose;
    CameraPose m_goal;
    std::optional<CameraPose> m_filePose;
    QMap<int, QByteArray> m_points;
    QTimer m_stepTimer;
};

} // namespace recorder
