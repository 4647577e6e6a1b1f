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

constexpr quint32 CameraRemarkTime = 10'000; // milliseconds

void showPosition(QObject *control, const QString &position)
{
    QMetaObject::invokeMethod(control, "slot_Set_PTZ_pos", Qt::DirectConnection, Q_ARG(QString, position));
}

} // namespace

CameraLink::CameraLink(PictureSource &source) : m_source(source)
{
    connect(&source, &PictureSource::cameraMoved, this, &CameraLink::noteMove);
}

CameraLink::~CameraLink()
{
    stopWatching();
    sendPosition(QString());
}

void CameraLink::noteMove()
{
    if (const auto present = parsePtzPosition(position())) {
        m_watch.move(*present);
        if (m_watch.isAnswered())
            m_watch.hasGoal() ? noteObeyed() : stopWatching();
    } else {
        stopWatching();
    }
    sendPosition(position());
}

void CameraLink::noteObeyed()
{
    m_isObeyed = true;
    m_isIgnored = false;
    stopWatching();
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
                [this, textOf](int point) { setPoint(point, textOf(point)); });
        connect(calibrator, &PtzCalibrator::pointReplaced, this,
                [this, textOf](int point) { m_source.setPoint(point, textOf(point)); });
        connect(calibrator, &PtzCalibrator::deferralChanged, this, [this, calibrator] {
            if (m_deferring == calibrator)
                remarkDeferral(*calibrator);
        });
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
            if (calibrator->isDeferred(point))
                remarkDeferral(*calibrator);
            else if (!calibrator->goTo(point))
                setRemark(tr("Point %1 is not set.").arg(QString::number(point)));
        }
    }
    if (isKnown)
        return;
    m_source.goTo(point);
    const auto present = parsePtzPosition(position());
    if (present && !m_isObeyed)
        watchTurn(
            *present, {},
            tr("The camera has not turned. Perhaps it is there already, or this login may not turn it."));
}

void CameraLink::setPoint(int point, const QString &text)
{
    m_source.setPoint(point, text);
    // Once, unless the camera does not turn either: most logins may do both.
    if (isObeyed())
        setRemark({});
    else if (m_isIgnored || !std::exchange(m_hasDoubtedPoints, true))
        setRemark(
            tr("The recorder does not say whether it takes a point from this login, for which it has not "
               "turned the camera so far."));
}

void CameraLink::goToPoint(int point, const QString &text)
{
    // The recorder may have started again since it was told the point.
    m_source.setPoint(point, text);
    m_source.goTo(point);
    if (const auto goal = parsePtzPosition(text.section(u',', 2)))
        expectTurn(*goal);
    else
        setRemark(tr("Point %1 has no position to which the camera could turn.").arg(QString::number(point)));
}

void CameraLink::expectTurn(const PtzPosition &goal)
{
    const auto present = parsePtzPosition(position());
    if (!present)
        return;
    if (!TurnWatch::isTurn(*present, goal)) {
        // It is stopped, perhaps before it has begun to turn.
        if (isObeyed())
            noteObeyed();
        else
            m_watch.stay();
        return;
    }
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = qobject_cast<PtzView *>(control))
            view->expectTurn();
    }
    for (PtzSteering *steering : std::as_const(m_steerings))
        steering->setGoal(goal);
    watchTurn(*present, goal,
              tr("The recorder does not turn the camera. Perhaps this login is not allowed to."));
}

/// \a remark is for the case that the camera does not come nearer to the \a goal.
void CameraLink::watchTurn(const PtzPosition &present, const std::optional<PtzPosition> &goal,
                           const QString &remark)
{
    m_watchRemark = remark;
    m_watch.begin(m_source.traffic(), present, goal);
}

void CameraLink::poll(quint32 now)
{
    const TurnWatch::Outcome outcome = m_watch.poll(now, m_source.traffic());
    if (outcome == TurnWatch::Outcome::Obeyed) {
        noteObeyed();
    } else if (outcome == TurnWatch::Outcome::Ignored) {
        m_isIgnored = true;
        setRemark(m_watchRemark);
    }
    if (m_remark.isEmpty())
        return;
    if (!m_remarkBegin)
        m_remarkBegin = now;
    if (now - *m_remarkBegin < CameraRemarkTime)
        return;
    setRemark({});
    if (!m_watch.isOpen()) // a tour may come to the goal later
        m_watch.end();
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
    stopWatching();
    sendPosition(position());
}

void CameraLink::stopWatching()
{
    m_watch.end();
    setRemark({});
}

/// Not all of the controls show the pictures of the camera.
void CameraLink::setRemark(const QString &remark)
{
    m_remarkBegin.reset();
    m_deferring = nullptr;
    if (remark == m_remark)
        return;
    m_remark = remark;
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = dynamic_cast<PictureNotice *>(control))
            view->setRemark(remark);
    }
}

/// The calibration shows the same by itself, the other controls do not.
void CameraLink::remarkDeferral(const PtzCalibrator &calibrator)
{
    const QString deferral = calibrator.deferral();
    setRemark(deferral);
    m_deferring = deferral.isEmpty() ? nullptr : &calibrator;
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
