#include "controls/PtzSteering.h"

#include "controls/CellFrame.h"
#include "controls/PictureView.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace paravue
{
namespace
{

constexpr int Pace = 100; // milliseconds from goal to goal
/// How long a key is held until the camera goes on and on.
constexpr int HoldTime = 400;
/// A camera that has not moved for that long has given its last goal up.
constexpr int LongestPause = 1'000;
/// Some cameras do not reach a goal exactly.
constexpr double Tolerance = 0.01;
constexpr double ZoomStep = 0.05;
/// In pictures. A goal is no further away, so that the camera stops soon when the connection ends.
constexpr double LongestStep = 0.25;
constexpr double KeyStep = 0.1;
constexpr double FineSteeringStep = 0.02;
/// A drag of that many pixels or less does not turn the camera.
constexpr double Rest = 6;
/// What a camera sees with all of its zoom, as a share of what it sees without.
constexpr double NearView = 0.25;

/// 0 for a key that does not zoom.
int zoomStep(int key)
{
    if (key == Qt::Key_Minus)
        return -1;
    return key == Qt::Key_Plus || key == Qt::Key_Equal ? 1 : 0;
}

} // namespace

PtzSteering::PtzSteering(PictureView &view, Scene scene) : m_view(view), m_scene(scene)
{
    m_pace.setSingleShot(true);
    connect(&m_pace, &QTimer::timeout, this, &PtzSteering::goOn);
    view.installEventFilter(this);
}

void PtzSteering::setPosition(const std::optional<PtzPosition> &position)
{
    const bool wasSteerable = isSteerable();
    if (position != m_position)
        m_lastTurn.start();
    m_position = position;
    if (m_goal && (!position || isNear(*position, *m_goal, Tolerance)))
        m_goal.reset();
    if (isSteerable() != wasSteerable)
        setSteerable(isSteerable());
    Q_EMIT positionChanged();
}

void PtzSteering::setGoal(const PtzPosition &goal)
{
    m_goal = goal;
    m_lastTurn.start();
}

void PtzSteering::follow(PtzSteering &original)
{
    setSeenShares(original.seenShares());
    const auto take = [this, &original] { setPosition(original.position()); };
    connect(&original, &PtzSteering::positionChanged, this, take);
    connect(this, &PtzSteering::turnRequested, &original, &PtzSteering::turnRequested);
    connect(this, &PtzSteering::pointRequested, &original, &PtzSteering::pointRequested);
    take();
}

void PtzSteering::setSteerable(bool isSteerable)
{
    if (isSteerable) {
        m_focusPolicy = m_view.focusPolicy();
        m_view.setFocusPolicy(Qt::StrongFocus);
        m_hasToolTip = m_view.toolTip().isEmpty();
        if (m_hasToolTip)
            m_view.setToolTip(tr("Drag, or press an arrow key, to turn the camera. The wheel, + and − zoom. "
                                 "A double click turns the camera there, 1 to 9 turn it to a point."));
    } else {
        m_drag.reset();
        m_key = 0;
        m_isTurning = false;
        m_pace.stop();
        m_view.setFocusPolicy(m_focusPolicy);
        if (m_hasToolTip)
            m_view.setToolTip(QString());
    }
    m_view.update();
}

bool PtzSteering::eventFilter(QObject *watched, QEvent *event)
{
    if (!isSteerable())
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return move(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonDblClick:
        return centre(*static_cast<QMouseEvent *>(event));
    case QEvent::Wheel:
        return zoomByWheel(*static_cast<QWheelEvent *>(event));
    case QEvent::KeyPress:
        return pressKey(*static_cast<QKeyEvent *>(event));
    case QEvent::KeyRelease:
        return releaseKey(*static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonRelease:
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::EnabledChange:
        stop();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool PtzSteering::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton || !m_view.pictureRect().contains(event.position().toPoint()))
        return false;
    stop();
    m_drag = {event.position(), event.position()};
    return true;
}

bool PtzSteering::move(const QMouseEvent &event)
{
    if (!m_drag)
        return false;
    if (!(event.buttons() & Qt::LeftButton)) { // the release was missed
        stop();
        return true;
    }
    m_drag->end = event.position();
    m_view.update();
    if (!m_pace.isActive())
        goOn();
    return true;
}

bool PtzSteering::centre(const QMouseEvent &event)
{
    const QRectF picture = m_view.pictureRect();
    if (event.button() != Qt::LeftButton || !picture.contains(event.position()))
        return false;
    stop();
    const QPointF place((event.position().x() - picture.left()) / picture.width(),
                        (event.position().y() - picture.top()) / picture.height());
    if (m_scene == Scene::Camera)
        turnBy(place - QPointF(0.5, 0.5));
    else
        turnTo({2 * place.x() - 1, 1 - 2 * place.y(), destination().zoom});
    return true;
}

bool PtzSteering::zoomByWheel(const QWheelEvent &event)
{
    constexpr double Notch = 120;
    const int angle = event.angleDelta().y();
    if (!m_view.hasFocus() || angle == 0)
        return false;
    zoom(angle / Notch, destination());
    return true;
}

bool PtzSteering::pressKey(const QKeyEvent &event)
{
    const int key = event.key();
    if (key == Qt::Key_Escape && isInGesture()) {
        stop();
        return true;
    }
    if (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier))
        return false;
    if (key >= Qt::Key_1 && key <= Qt::Key_9) {
        stop();
        Q_EMIT pointRequested(key - Qt::Key_0);
    } else if (zoomStep(key) != 0 || !arrowStep(key).isNull()) {
        if (event.isAutoRepeat())
            return true;
        stop();
        m_isFine = event.modifiers() & Qt::ShiftModifier;
        m_key = key;
        stepByKey(destination());
        m_pace.start(HoldTime);
    } else {
        return false;
    }
    return true;
}

bool PtzSteering::releaseKey(const QKeyEvent &event)
{
    // A plus that is typed with Shift may be released as another key.
    if (event.isAutoRepeat() || m_key == 0 || (event.key() != m_key && zoomStep(m_key) == 0))
        return false;
    stop();
    return true;
}

/// The next goal of a drag or of a held key.
void PtzSteering::goOn()
{
    if (!isSteerable() || !isInGesture())
        return;
    if (m_drag) {
        const QPointF step = dragStep();
        if (!step.isNull() || m_isTurning)
            turnBy(step);
        m_isTurning = !step.isNull();
    } else {
        stepByKey(*m_position);
        m_isTurning = true;
    }
    m_pace.start(Pace);
}

QPointF PtzSteering::dragStep() const
{
    const QPointF way = m_drag->end - m_drag->start;
    const QSizeF half = QSizeF(m_view.pictureRect().size()) / 2;
    if (std::hypot(way.x(), way.y()) <= Rest || half.isEmpty())
        return {};
    return {std::clamp(way.x() / half.width(), -1.0, 1.0) * LongestStep,
            std::clamp(way.y() / half.height(), -1.0, 1.0) * LongestStep};
}

void PtzSteering::stepByKey(const PtzPosition &start)
{
    if (const int step = zoomStep(m_key))
        zoom(step, start);
    else
        turnBy(QPointF(arrowStep(m_key)) * (m_isFine ? FineSteeringStep : KeyStep), start);
}

/// A step of a key that was not held goes on to its end.
void PtzSteering::stop()
{
    const bool wasTurning = m_isTurning && isSteerable();
    m_pace.stop();
    m_drag.reset();
    m_key = 0;
    m_isTurning = false;
    m_view.update();
    if (wasTurning)
        turnBy({});
}

void PtzSteering::zoom(double steps, PtzPosition start)
{
    if (!start.zoom)
        return;
    *start.zoom += steps * ZoomStep;
    turnTo(start);
}

PtzPosition PtzSteering::destination() const
{
    return m_goal && m_lastTurn.isValid() && m_lastTurn.elapsed() < LongestPause ? *m_goal : *m_position;
}

QPointF PtzSteering::seenRange() const
{
    const double zoomed = 1 - (1 - NearView) * m_position->zoom.value_or(0);
    return {2 * m_seenShares.width() * zoomed, 2 * m_seenShares.height() * zoomed};
}

void PtzSteering::turnBy(const QPointF &pictures)
{
    turnBy(pictures, *m_position);
}

void PtzSteering::turnBy(const QPointF &pictures, const PtzPosition &start)
{
    const QPointF range = seenRange();
    turnTo({start.pan + pictures.x() * range.x(), start.tilt - pictures.y() * range.y(), start.zoom});
}

void PtzSteering::turnTo(PtzPosition goal)
{
    goal.pan = std::clamp(goal.pan, -1.0, 1.0);
    goal.tilt = std::clamp(goal.tilt, -1.0, 1.0);
    if (goal.zoom)
        goal.zoom = std::clamp(*goal.zoom, 0.0, 1.0);
    setGoal(goal);
    Q_EMIT turnRequested(goal);
}

void PtzSteering::paint(QPainter &painter) const
{
    if (!m_drag || m_drag->start == m_drag->end)
        return;
    const QLineF way(m_drag->start, m_drag->end);
    painter.setRenderHint(QPainter::Antialiasing);
    QList<QLineF> lines{way};
    constexpr double HeadLength = 10;
    for (const double angle : {150.0, -150.0}) {
        QLineF side = QLineF::fromPolar(HeadLength, way.angle() + angle);
        lines.append(side.translated(way.p2()));
    }
    drawOnPicture(painter, lines, 2);
}

} // namespace paravue
