#pragma once

#include "controls/CellFrame.h"
#include "controls/CellRows.h"
#include "controls/CellStyle.h"
#include "controls/ChipStrip.h"
#include "controls/EditActions.h"
#include "controls/EditGesture.h"
#include "controls/EditHistory.h"
#include "controls/PictureView.h"

namespace paravue
{

/// A grid of cells over a picture, which the user paints with marks of one or several kinds. Kinds are
/// numbered from 1; the strip below the picture names them and shows the chosen one.
///
/// Mouse: the left button paints while it is held; when the first cell has the chosen kind already, it erases
/// this kind instead. The right button erases any mark. A press on the strip chooses a kind.
/// Keys: arrows, Home, End, Page Up and Page Down (Home and End with Ctrl: the corners) go to a cell; with
/// Shift they extend the selected rectangle, Ctrl+A selects all cells. Space paints the selection, or erases
/// the chosen kind there when the cell where the selection began has it; Delete and Backspace erase any mark;
/// 1 to 9 choose a kind; Ctrl+Z and Ctrl+Shift+Z undo and redo; Escape cancels what the held button has done.
class CellGridEditor : public PictureView, private EditGesture::Editor
{
    Q_OBJECT

public:
    static constexpr int MaxKinds = 9;

    /// \a size in columns and rows, at least 1 by 1.
    explicit CellGridEditor(const QSize &size, QWidget *parent = nullptr);

    /// The rows in the form that CellRows documents.
    QStringList rows() const { return m_cells.texts(); }
    /// Emits nothing; a drag goes on with the new rows. Returns false when they are shown already, otherwise
    /// nothing can be undone any more.
    bool setRows(const QStringList &rows);

    /// The names of the kinds, 1 to 9 of them. Returns false when they have these names already.
    bool setKinds(const QStringList &names);
    int chosenKind() const { return m_kind; }

    QString valueText() const override;

public Q_SLOTS:
    void slot_Set_all();
    void slot_Clear_all();
    /// \a number is that of a kind; any other text changes nothing.
    void slot_Choose_kind(const QString &number);

Q_SIGNALS:
    /// The user has changed the rows; emitted once for each drag.
    void valueChanged();

protected:
    /// Whether a cell with this mark counts as one of \a kind.
    virtual bool isOfKind(int mark, int kind) const = 0;
    virtual CellStyle markStyle(int mark) const = 0;
    virtual QString markName(int mark) const = 0;
    QStringList kinds() const { return m_strip.texts(); }

    void paintOver(QPainter &painter, const QRect &dirty) override;
    int footerHeight(int width) const override;
    void paintFooter(QPainter &painter) override;
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum class Brush { Paint, EraseKind, EraseAny };
    /// What a held button does, and the way of the mouse.
    struct Stroke {
        Brush brush;
        QList<QPoint> way;
    };

    /// The left and top edges of the cells in the widget, and behind them the end of the last ones.
    struct Borders {
        QList<int> x;
        QList<int> y;

        QRect place(const QRect &cells) const
        {
            return QRect(QPoint(x[cells.left()], y[cells.top()]),
                         QPoint(x[cells.right() + 1] - 1, y[cells.bottom() + 1] - 1));
        }
    };

    QStringList texts() const override { return rows(); }
    bool beginDrag(const QMouseEvent &press) override;
    void dragTo(const QPointF &position) override;
    void restore(const QStringList &rows) override;
    void textsEdited(const QStringList &before, const QStringList &after) override;

    QSize gridSize() const { return m_cells.size(); }
    QPoint cellAt(const QPoint &position) const;
    Borders borders() const;

    void choose(int kind);
    EditActions editActions();
    void paintWay(qsizetype start);
    void select(const CellFrame &frame);
    Brush brushFor(const QPoint &cell) const;
    bool apply(Brush brush, const QPoint &cell);
    void applyTo(Brush brush, const QRect &cells);
    void paintLines(QPainter &painter, const Borders &borders);
    void paintMarks(QPainter &painter, const Borders &borders, const QRect &dirty);
    void paintSelection(QPainter &painter, const Borders &borders);

    CellRows m_cells;
    ChipStrip m_strip;
    int m_kind = 1;
    CellFrame m_frame;
    Stroke m_stroke{};
    EditHistory m_history;
    EditGesture m_gesture;
};

} // namespace paravue
