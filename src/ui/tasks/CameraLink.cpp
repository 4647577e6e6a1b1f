#include "ui/tasks/CameraLink.h"

#include "controls/PictureNotice.h"
#include "controls/PtzCalibrator.h"
#include "controls/PtzSteering.h"
#include "controls/PtzVideoInput.h"
#include "ui/tasks/PictureSource.h"

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

constexpr int AnswerTime = 3'000; // milliseconds
constexpr int CameraRemarkTime = 10'000;
/// Less than the finest step with all of the zoom.
constexpr double SmallestTurn = 0.004;
/// Some cameras do not reach the ends of their ranges exactly.
constexpr double End = 0.98;

/// Whether the camera has to move for \a goal.
bool isTurn(const PtzPosition &present, const PtzPosition &goal)
{
    const auto reached = [](PtzPosition position) {
        position.pan = std::clamp(position.pan, -End, End);
        position.tilt = std::clamp(position.tilt, -End, End);
        if (position.zoom)
            position.zoom = std::min(*position.zoom, End);
        return position;
    };
    return !isNear(reached(present), reached(goal), SmallestTurn);
}

void showPosition(QObject *control, const QString &position)
{
    QMetaObject::invokeMethod(control, "slot_Set_PTZ_pos", Qt::DirectConnection, Q_ARG(QString, position));
}

} // namespace

CameraLink::CameraLink(PictureSource &source) : m_source(source)
{
    for (QTimer *timer : {&m_answer, &m_ignored})
        timer->setSingleShot(true);
    m_answer.setInterval(AnswerTime);
    m_ignored.setInterval(CameraRemarkTime);
    connect(&m_answer, &QTimer::timeout, this, [this] {
        m_ignored.start();
        sendRemark();
    });
    connect(&m_ignored, &QTimer::timeout, this, &CameraLink::sendRemark);
    connect(&source, &PictureSource::cameraMoved, this, [this] {
        stopWaiting();
        sendPosition(position());
    });
}

CameraLink::~CameraLink()
{
    stopWaiting();
    sendPosition(QString());
}

void CameraLink::add(const QList<QWidget *> &controls)
{
    for (QWidget *control : controls) {
        if (auto *view = dynamic_cast<SteeredView *>(control))
            addSteering(*control, view->steering());
        if (m_controls.contains(control) ||
            control->metaObject()->indexOfSlot("slot_Set_PTZ_pos(QString)") < 0)
            continue;
        m_controls.insert(control);
        connect(control, &QObject::destroyed, this, [this](QObject *gone) { m_controls.remove(gone); });
        showPosition(control, position());
        auto *calibrator = qobject_cast<PtzCalibrator *>(control);
        if (!calibrator)
            continue;
        const auto textOf = [calibrator](int point) { return calibrator->points().value(point - 1); };
        connect(calibrator, &PtzCalibrator::signal_Point_calibrated, this,
                [this, textOf](int point) { m_source.setPoint(point, textOf(point)); });
        connect(calibrator, &PtzCalibrator::signal_Goto_point_selected, this,
                [this, textOf](int point) { goToPoint(point, textOf(point)); });
    }
}

void CameraLink::addPictures(const QList<QPointer<QWidget>> &controls)
{
    for (const QPointer<QWidget> &control : controls) {
        auto *view = qobject_cast<PtzVideoInput *>(control);
        if (view && !view->isWindow()) // an enlarged one follows the control
            addSteering(*view, view->steering());
    }
}

void CameraLink::addSteering(QObject &control, PtzSteering &steering)
{
    if (m_steerings.contains(&control))
        return;
    m_steerings.insert(&control, &steering);
    connect(&control, &QObject::destroyed, this, [this](QObject *gone) { m_steerings.remove(gone); });
    connect(&steering, &PtzSteering::turnRequested, this, &CameraLink::turnTo);
    connect(&steering, &PtzSteering::pointRequested, this, &CameraLink::goTo);
    steering.setPosition(parsePtzPosition(position()));
}

void CameraLink::turnTo(const PtzPosition &goal)
{
    m_source.turnTo(ptzPositionText(goal));
    expectTurn(goal);
}

/// The points are those of the calibrator, if there is one.
void CameraLink::goTo(int point)
{
    bool isKnown = false;
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *calibrator = qobject_cast<PtzCalibrator *>(control)) {
            isKnown = true;
            calibrator->goTo(point);
        }
    }
    if (!isKnown)
        m_source.goTo(point);
}

void CameraLink::goToPoint(int point, const QString &text)
{
    // The recorder may have started again since it was told the point.
    m_source.setPoint(point, text);
    m_source.goTo(point);
    if (const auto goal = parsePtzPosition(text.section(u',', 2)))
        expectTurn(*goal);
}

void CameraLink::expectTurn(const PtzPosition &goal)
{
    const auto present = parsePtzPosition(position());
    if (!present || !isTurn(*present, goal))
        return;
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = qobject_cast<PtzView *>(control))
            view->expectTurn();
    }
    for (PtzSteering *steering : std::as_const(m_steerings))
        steering->setGoal(goal);
    if (!m_answer.isActive() && !isIgnored())
        m_answer.start();
}

void CameraLink::setLive(bool isLive, bool isHeard)
{
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = qobject_cast<PtzView *>(control))
            view->setCertain(isHeard);
    }
    if (isLive == m_isLive)
        return;
    m_isLive = isLive;
    stopWaiting();
    sendPosition(position());
}

void CameraLink::stopWaiting()
{
    m_answer.stop();
    if (!isIgnored())
        return;
    m_ignored.stop();
    sendRemark();
}

QString CameraLink::remark() const
{
    return isIgnored() ? tr("The recorder does not turn the camera. Perhaps this login is not allowed to.")
                       : QString();
}

/// Not all of the controls show the pictures of the camera.
void CameraLink::sendRemark()
{
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = dynamic_cast<PictureNotice *>(control))
            view->setRemark(remark());
    }
}

QString CameraLink::position() const
{
    return m_isLive ? m_source.cameraPosition() : QString();
}

void CameraLink::sendPosition(const QString &position)
{
    for (QObject *control : std::as_const(m_controls))
        showPosition(control, position);
    for (PtzSteering *steering : std::as_const(m_steerings))
        steering->setPosition(parsePtzPosition(position));
}

} // namespace paravue
