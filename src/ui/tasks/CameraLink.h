#pragma once

#include "controls/PtzPosition.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <QWidget>

namespace paravue
{

class PictureSource;
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
    /// The recorder has not answered the last commands by a turn of the camera. Recorders ignore commands of
    /// those who may not turn it.
    bool isIgnored() const { return m_ignored.isActive(); }
    /// What the controls say about that.
    QString remark() const;

private:
    void stopWaiting();
    void sendRemark();
    void addSteering(QObject &control, PtzSteering &steering);
    void turnTo(const PtzPosition &goal);
    void goTo(int point);
    void goToPoint(int point, const QString &text);
    void expectTurn(const PtzPosition &goal);
    QString position() const;
    void sendPosition(const QString &position);

    PictureSource &m_source;
    QSet<QObject *> m_controls;
    QHash<QObject *, PtzSteering *> m_steerings;
    QTimer m_answer;  ///< until the camera has to turn
    QTimer m_ignored; ///< how long it is told that it has not
    bool m_isLive = true;
};

} // namespace paravue
