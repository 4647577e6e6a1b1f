#pragma once

#include "controls/PtzPosition.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QTimer>

#include <optional>

class QKeyEvent;
class QMouseEvent;
class QPainter;
class QWheelEvent;

namespace paravue
{

class PictureView;

/// Turns a camera by the mouse and the keys in a view of it.
///
/// A drag with the left button turns it in the direction of the drag, the faster the longer the drag is; a
/// double click turns it to that place. Arrows turn it and plus and minus zoom by a step and, held, on and
/// on; arrows with Shift by less. The wheel zooms while the view has the focus. 1 to 9 go to a point. Escape
/// ends a drag. The camera stops when button or key is released, and when the view loses the focus.
///
/// All goals are near to the last known position of the camera, so that it never turns on by itself.
class PtzSteering : public QObject
{
    Q_OBJECT

public:
    enum class Scene {
        Camera, ///< the view shows what the camera sees
        All,    ///< the view shows all that the camera can turn to
    };
    PtzSteering(PictureView &view, Scene scene);

    /// The shares of the ranges of pan and tilt that the camera sees without zoom; half of each by default. A
    /// double click in its picture depends on them.
    void setSeenShares(const QSizeF &shares) { m_seenShares = shares; }
    QSizeF seenShares() const { return m_seenShares; }
    /// Where the camera looks. As long as that is not known the view takes no input.
    void setPosition(const std::optional<PtzPosition> &position);
    const std::optional<PtzPosition> &position() const { return m_position; }
    bool isSteerable() const { return m_position.has_value(); }
    /// A drag, or a key that is held.
    bool isInGesture() const { return m_drag || m_key != 0; }
    /// The camera was told elsewhere to turn there. Steps of the zoom and of the arrows begin at the goal.
    void setGoal(const PtzPosition &goal);
    /// Becomes a second way to steer the camera of \a original.
    void follow(PtzSteering &original);
    /// Draws the drag.
    void paint(QPainter &painter) const;

Q_SIGNALS:
    void positionChanged();
    /// The camera is to turn there; \a goal is within the ranges of PtzPosition.
    void turnRequested(const paravue::PtzPosition &goal);
    /// The camera is to turn to a point, counted from 1.
    void pointRequested(int number);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Drag {
        QPointF start;
        QPointF end;
    };

    bool press(const QMouseEvent &event);
    bool move(const QMouseEvent &event);
    bool centre(const QMouseEvent &event);
    bool zoomByWheel(const QWheelEvent &event);
    bool pressKey(const QKeyEvent &event);
    bool releaseKey(const QKeyEvent &event);
    void goOn();
    QPointF dragStep() const;
    void stop();
    /// What the held key asks for, from \a start on.
    void stepByKey(const PtzPosition &start);
    void zoom(double steps, PtzPosition start);
    /// A position beside the present one, by so much of the picture to the right and downwards.
    void turnBy(const QPointF &pictures);
    void turnBy(const QPointF &pictures, const PtzPosition &start);
    /// Where the camera will stand after what it was last told, or where it stands.
    PtzPosition destination() const;
    void turnTo(PtzPosition goal);
    /// How much of the ranges of pan and tilt the camera sees.
    QPointF seenRange() const;
    void setSteerable(bool isSteerable);

    PictureView &m_view;
    const Scene m_scene;
    QSizeF m_seenShares{0.5, 0.5};
    std::optional<PtzPosition> m_position;
    std::optional<PtzPosition> m_goal; ///< the last one, until the camera is there
    std::optional<Drag> m_drag;
    int m_key = 0; ///< the arrow, plus or minus that is held
    bool m_isFine = false;
    bool m_isTurning = false; ///< goals follow each other
    QTimer m_pace;
    QElapsedTimer m_lastTurn; ///< since the camera moved, or was told to
    bool m_hasToolTip = false;
    Qt::FocusPolicy m_focusPolicy = Qt::NoFocus; ///< while it is not steerable
};

/// A view in which a camera can be steered.
class SteeredView
{
public:
    virtual ~SteeredView() = default;
    virtual PtzSteering &steering() = 0;
};

} // namespace paravue
