#pragma once

#include "controls/PtzPosition.h"
#include "ui/tasks/TurnWatch.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include <optional>

namespace paravue
{

class PictureSource;
class PtzCalibrator;
class PtzSteering;

/// Connects the controls of a turning camera with the source of its video: they receive its position, and
/// their commands (turn, go to a point, set a point) are sent to it. Every widget with a slot
/// slot_Set_PTZ_pos(QString) is such a control, and every SteeredView.
///
/// Its destructor sets the position of the controls to unknown.
class CameraLink : public QObject
{
    Q_OBJECT

public:
    /// \a source must outlive the link.
    explicit CameraLink(PictureSource &source);
    ~CameraLink() override;

    /// Connects those that are not connected yet.
    void add(const QList<QWidget *> &controls);
    /// The same for controls that show the pictures of the camera: of these only PtzVideoInput steers it.
    void addPictures(const QList<QPointer<QWidget>> &controls);
    /// While the pictures are not live the position is unknown to the controls. While nothing new is heard it
    /// is not certain, so that no point is set with it.
    void setLive(bool isLive, bool isHeard);
    /// Updates remark(); to be called about twice a second. \a now, in milliseconds, wraps around.
    void poll(quint32 now);
    /// Why a command may have had no effect; empty while there is nothing to say. Recorders ignore commands
    /// of those who may not turn the camera.
    QString remark() const { return m_remark; }

private:
    void noteMove();
    void watchTurn(const PtzPosition &present, const std::optional<PtzPosition> &goal, const QString &remark);
    bool isObeyed() const { return m_isObeyed || m_watch.hasComeNearer(); }
    void noteObeyed();
    void stopWatching();
    void setRemark(const QString &remark);
    void remarkDeferral(const PtzCalibrator &calibrator);
    void addSteering(QObject &control, PtzSteering &steering);
    void turnTo(const PtzPosition &goal);
    void goTo(int point);
    void goToPoint(int point, const QString &text);
    void setPoint(int point, const QString &text);
    void expectTurn(const PtzPosition &goal);
    QString position() const;
    void sendPosition(const QString &position);

    PictureSource &m_source;
    QSet<QObject *> m_controls;
    QHash<QObject *, PtzSteering *> m_steerings;
    TurnWatch m_watch;
    QString m_watchRemark; ///< when the camera does not turn
    QString m_remark;
    const PtzCalibrator *m_deferring = nullptr; ///< whose points that wait m_remark names; perhaps gone
    std::optional<quint32> m_remarkBegin;       ///< the first poll behind it
    bool m_isLive = true;
    bool m_isObeyed = false;         ///< the camera has turned when it was told to
    bool m_isIgnored = false;        ///< it has not
    bool m_hasDoubtedPoints = false; ///< the user was told that points may be ignored
};

} // namespace paravue
