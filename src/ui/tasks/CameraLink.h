#pragma once

#include <QObject>
#include <QSet>

class QWidget;

namespace paravue
{

class PictureSource;

/// Connects the controls of a turning camera with the source of its video: they receive its position, and
/// their commands (go to a point, set a point) are sent to it. Every widget with a slot
/// slot_Set_PTZ_pos(QString) is such a control.
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
    /// While the pictures are not live the position is unknown to the controls.
    void setLive(bool isLive);

private:
    QString position() const;
    void sendPosition(const QString &position);

    PictureSource &m_source;
    QSet<QObject *> m_controls;
    bool m_isLive = true;
};

} // namespace paravue
