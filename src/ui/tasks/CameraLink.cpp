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

// In milliseconds.
constexpr int AnswerPoll = 250;
constexpr qint64 FirstHeard = 1'000;
constexpr qint64 HeardAgain = 2'000;
/// What is heard at one moment is read in parts.
constexpr qint64 ReadingTime = 500;
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

void AnswerWait::start(quint64 traffic)
{
    m_isActive = true;
    m_clock.start();
    m_traffic = traffic;
    m_first.reset();
    m_last.reset();
}

bool AnswerWait::isOver(quint64 traffic)
{
    const qint64 now = m_clock.elapsed();
    if (traffic != m_traffic && !m_first && now >= FirstHeard)
        m_first = now;
    else if (traffic != m_traffic && m_first && !m_last && now - *m_first >= HeardAgain)
        m_last = now;
    m_traffic = traffic;
    return m_last && now - *m_last >= ReadingTime;
}

CameraLink::CameraLink(PictureSource &source) : m_source(source)
{
    m_poll.setInterval(AnswerPoll);
    connect(&m_poll, &QTimer::timeout, this, &CameraLink::checkAnswer);
    m_remarkTime.setSingleShot(true);
    m_remarkTime.setInterval(CameraRemarkTime);
    connect(&m_remarkTime, &QTimer::timeout, this, [this] { setRemark({}); });
    connect(&source, &PictureSource::cameraMoved, this, [this] {
        m_isObeyed |= m_wait.isActive();
        m_isIgnored &= !m_isObeyed;
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
                [this, textOf](int point) { setPoint(point, textOf(point)); });
        connect(calibrator, &PtzCalibrator::pointReplaced, this,
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
            if (!calibrator->goTo(point))
                setRemark(tr("Point %1 is not set.").arg(QString::number(point)));
        }
    }
    if (isKnown)
        return;
    m_source.goTo(point);
    if (!m_isObeyed)
        waitForTurn(
            tr("The camera has not turned. Perhaps it is there already, or this login may not turn it."));
}

void CameraLink::setPoint(int point, const QString &text)
{
    m_source.setPoint(point, text);
    // Once, unless the camera does not turn either: most logins may do both.
    if (!m_isObeyed && (m_isIgnored || !std::exchange(m_hasDoubtedPoints, true)))
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
    if (!present || !isTurn(*present, goal))
        return;
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = qobject_cast<PtzView *>(control))
            view->expectTurn();
    }
    for (PtzSteering *steering : std::as_const(m_steerings))
        steering->setGoal(goal);
    waitForTurn(tr("The recorder does not turn the camera. Perhaps this login is not allowed to."));
}

/// \a remark is for the case that the camera stands still. Commands follow each other in a gesture: the first
/// one counts.
void CameraLink::waitForTurn(const QString &remark)
{
    if (m_wait.isActive())
        return;
    m_waitRemark = remark;
    m_wait.start(m_source.traffic());
    m_poll.start();
}

void CameraLink::checkAnswer()
{
    if (!m_wait.isOver(m_source.traffic()))
        return;
    m_wait.stop();
    m_poll.stop();
    m_isIgnored = true;
    setRemark(m_waitRemark);
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
    m_wait.stop();
    m_poll.stop();
    setRemark({});
}

/// Not all of the controls show the pictures of the camera.
void CameraLink::setRemark(const QString &remark)
{
    if (remark.isEmpty())
        m_remarkTime.stop();
    else
        m_remarkTime.start();
    if (remark == m_remark)
        return;
    m_remark = remark;
    for (QObject *control : std::as_const(m_controls)) {
        if (auto *view = dynamic_cast<PictureNotice *>(control))
            view->setRemark(remark);
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
