#include "ui/tasks/CameraLink.h"

#include "controls/PtzCalibrator.h"
#include "ui/tasks/PictureSource.h"

namespace paravue
{
namespace
{

void showPosition(QObject *control, const QString &position)
{
    QMetaObject::invokeMethod(control, "slot_Set_PTZ_pos", Qt::DirectConnection, Q_ARG(QString, position));
}

} // namespace

CameraLink::CameraLink(PictureSource &source) : m_source(source)
{
    connect(&source, &PictureSource::cameraMoved, this, [this] { sendPosition(position()); });
}

CameraLink::~CameraLink()
{
    sendPosition(QString());
}

void CameraLink::add(const QList<QWidget *> &controls)
{
    for (QWidget *control : controls) {
        if (m_controls.contains(control) ||
            control->metaObject()->indexOfSlot("slot_Set_PTZ_pos(QString)") < 0)
            continue;
        m_controls.insert(control);
        connect(control, &QObject::destroyed, this, [this](QObject *gone) { m_controls.remove(gone); });
        showPosition(control, position());
        auto *calibrator = qobject_cast<PtzCalibrator *>(control);
        if (!calibrator)
            continue;
        const auto send = [this, calibrator](int point) {
            m_source.setPoint(point, calibrator->points().value(point - 1));
        };
        connect(calibrator, &PtzCalibrator::signal_Point_calibrated, this, send);
        connect(calibrator, &PtzCalibrator::signal_Goto_point_selected, this, [this, send](int point) {
            // The recorder may have started again since it was told the point.
            send(point);
            m_source.goTo(point);
        });
    }
}

void CameraLink::setLive(bool isLive)
{
    if (isLive == m_isLive)
        return;
    m_isLive = isLive;
    sendPosition(position());
}

QString CameraLink::position() const
{
    return m_isLive ? m_source.cameraPosition() : QString();
}

void CameraLink::sendPosition(const QString &position)
{
    for (QObject *control : std::as_const(m_controls))
        showPosition(control, position);
}

} // namespace paravue
