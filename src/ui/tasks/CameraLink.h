#pragma once

#include "controls/PtzPosition.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace paravue
{

class PictureSource;
class PtzSteering;

/// Whether a recorder has had the time to answer a command that has no answer but its effect. During a
/// silence nothing is known of that, and what comes first behind one may be older than the effect.
class AnswerWait
{
public:
    /// \a traffic is that of the source.
    void start(quint64 traffic);
    void stop() { m_isActive = false; }
    bool isActive() const { return m_isActive; }
    /// True when the time is over.
    bool isOver(quint64 traffic);

private:
    QElapsedTimer m_clock;
    quint64 m_traffic = 0;
    std::optional<qint64> m_first; ///< when the recorder was heard behind the command, in milliseconds
    std::optional<qint64> m_last;  ///< when it was heard some time after that
    bool m_isActive = false;
};

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
    /// Why a command may have had no effect; empty while there is nothing to say. Recorders ignore commands
    /// of those who may not turn the camera.
    QString remark() const { return m_remark; }

private:
    void waitForTurn(const QString &remark);
    void checkAnswer();
    void stopWaiting();
    void setRemark(const QString &remark);
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
    AnswerWait m_wait;    ///< for a turn of the camera
    QString m_waitRemark; ///< when it does not come
    QTimer m_poll;        ///< of the wait
    QString m_remark;
    QTimer m_remarkTime;
    bool m_isLive = true;
    bool m_isObeyed = false;         ///< the camera has turned when it was told to
    bool m_isIgnored = false;        ///< it has not
    bool m_hasDoubtedPoints = false; ///< the user was told that points may be ignored
};

} // namespace paravue
