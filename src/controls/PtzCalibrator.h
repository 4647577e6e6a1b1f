#pragma once

#include "controls/ChipStrip.h"
#include "controls/EditGesture.h"
#include "controls/PtzView.h"

#include <QMap>
#include <QPointer>

#include <optional>

namespace paravue
{

class NameEdit;

/// A picture with numbered calibration points, each of which ties a place in the picture to where the camera
/// looked when it was set. Points count from 1; one of them is the current one.
///
/// Mouse: a press in the picture sets the current point there, and the next one that is not set becomes the
/// current one; a press on a point makes it the current one, and a drag moves it; a double click goes to it;
/// the right button opens a menu with what can be done with it. In the strip below the picture a press
/// chooses a point, a double click goes to it. Keys: Page Up and Page Down, or 1 to 9, choose a point; Space
/// sets it with the present position of the camera, in the middle if it has no place yet; arrows move it by a
/// hundredth of the picture, with Shift by a thousandth; Enter goes to it; F2 names it; Delete and Backspace
/// remove it; Escape cancels a drag.
///
/// A point that is set while the camera turns waits until it stands still: a position that the camera has
/// left by then is never stored. When the position becomes unknown meanwhile, or the point gets another
/// value, it is not set, and the picture says so.
class PtzCalibrator : public PtzView, private EditGesture::Editor
{
    Q_OBJECT

public:
    explicit PtzCalibrator(int points, QWidget *parent = nullptr);

    /// The points in the form that CalibrationPoint.h documents, as many as there are; empty: not set.
    QStringList points() const { return m_points; }
    /// Emits only pointReplaced(). Returns false when they are shown already.
    bool setPoints(const QStringList &points);
    int currentPoint() const { return m_current; }
    bool isDeferred(int number) const { return m_deferred.contains(number); }
    /// Which points wait for the camera, as a sentence; empty for none.
    QString deferral() const;

    /// The point that was gone to last; 0 for none.
    int gotoPoint() const { return m_goto; }
    /// Lets the camera turn to a point, as a double click on it does. False when it is not set.
    bool goTo(int number);
    bool setGotoPoint(int number);

    QString valueText() const override;
    /// Stands beside the strip: it would cover what is edited.
    void setCaption(const QString &text) override;

Q_SIGNALS:
    /// The user has set, moved or removed a point.
    void signal_Point_calibrated(int number);
    /// setPoints() has changed a point: the user has undone a change, for example.
    void pointReplaced(int number);
    /// Other points wait for the camera than before.
    void deferralChanged();
    /// The camera shall turn to a point.
    void signal_Goto_point_selected(int number);

protected:
    void paintOver(QPainter &painter, const QRect &dirty) override;
    int footerHeight(int width) const override;
    void paintFooter(QPainter &painter) override;
    QString shownRemark() const override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The point that is dragged.
    struct HeldPoint {
        QPointF start;  ///< where the button was pressed
        QPointF offset; ///< from there to the point
        QPointF place;  ///< where in the picture the point is during the drag
        bool moved;
    };

    QStringList texts() const override { return m_points; }
    bool beginDrag(const QMouseEvent &press) override;
    void dragTo(const QPointF &position) override;
    void drop() override;
    void cancelDrag(const QStringList &before) override;
    void textsEdited(const QStringList &before, const QStringList &after) override;

    std::optional<QPointF> placeOf(int number) const;
    QRectF badgeOf(const QPointF &position) const;
    int pointAt(const QPointF &position) const;
    int pointInStrip(const QPoint &position) const;
    EditActions editActions();
    void showMenuAtPoint();
    QRect stripRect() const;

    void choose(int number);
    /// Gives the current point another place.
    void place(const QPointF &fraction);
    void remove(int number);
    void chooseNextUnset();
    void setDeferred();
    bool canRename() const;
    void rename();
    void placeNameEdit();
    /// Shows the texts of the points.
    void pointsChanged();
    QString titleOf(int number) const;
    /// About points that wait, or that were not set.
    QString pointRemark() const;
    bool moveByKey(const QKeyEvent &event);
    void paintPoint(QPainter &painter, int number, const QPointF &position);

    QStringList m_points;
    QMap<int, QPointF> m_deferred; ///< places of the points that wait for the camera to stand still
    QString m_loss;                ///< says that such points were not set
    QPointer<NameEdit> m_nameEdit;
    ChipStrip m_strip;
    int m_current = 1;
    int m_goto = 0;
    HeldPoint m_held{};
    EditGesture m_gesture;
};

} // namespace paravue
