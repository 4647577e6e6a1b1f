#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <optional>

namespace recorder
{

/// Where a turning camera looks: pan from -1 (left) to 1, tilt from -1 (down) to 1, zoom from 0 (wide) to 1.
struct CameraPose {
    double pan = 0;
    double tilt = 0;
    double zoom = 0;

    /// As clients are told it: "0.300,-0.250,0.500".
    QByteArray text() const;
    friend bool operator==(const CameraPose &, const CameraPose &) = default;
};

/// The turning camera: it has points that it can be sent to, and turns at a speed that eyes can follow.
///
/// A point is a text "x,y" or "x,y,pan,tilt,zoom": where it lies in some picture, which is the client's
/// business, and what the camera looks at there. The camera cannot go to a point without the latter. Behind
/// five numbers and a comma a point may have a printable remark.
class PtzState : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxPoints = 64;
    static constexpr qsizetype MaxPointText = 256;

    explicit PtzState(QObject *parent = nullptr);

    /// Takes PAN, TILT, ZOOM and POINT1, POINT2, ... of the section "ptz" of a file "streams". The first file
    /// says where the camera looks. Later ones turn it only by values that differ from those of the file
    /// before: a client that saves everything has not asked for a turn.
    void readFile(const QByteArray &streamsFile);

    /// Obeys one line of a client, without its line end: "PTZ GOTO n", "PTZ POINT n text" (without a text the
    /// point is taken away) or "PTZ MOVE pan,tilt,zoom". Returns what is wrong with it for the log; empty
    /// when nothing is.
    QString obey(const QByteArray &line);

    const CameraPose &pose() const { return m_pose; }
    /// The text of a point, empty when there is none.
    QByteArray point(int number) const { return m_points.value(number); }

Q_SIGNALS:
    /// The camera looks elsewhere: many times a second while it turns.
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
    QTimer m_motor;
};

} // namespace recorder
