#pragma once

#include <QObject>
#include <QSet>

class QWidget;

namespace paravue
{

class PictureReceiver;

/// Ties the controls of a turning camera to the receiver of its video: they are told where it looks, and what
/// they calibrate and go to is sent to it. Whatever has a slot slot_Set_PTZ_pos(QString) is such a control.
///
/// When it ends the controls do not know the position any more.
class CameraLink : public QObject
{
    Q_OBJECT

public:
    /// \a receiver must outlive the link.
    explicit CameraLink(PictureReceiver &receiver);
    ~CameraLink() override;

    /// Those that are tied already are left alone.
    void add(const QList<QWidget *> &controls);
    /// While the pictures are not live the controls do not know the position.
    void setLive(bool isLive);

private:
    QString position() const;
    void tell(const QString &position);

    PictureReceiver &m_receiver;
    QSet<QObject *> m_controls;
    bool m_isLive = true;
};

} // namespace paravue
