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
/// Mouse: a drag with the left button paints the rectangle from its start or, with the brush, what it passes;
/// when the first cell has the chosen kind already, it erases this kind instead. With Shift it always paints,
/// with Alt it erases any mark, and so does a drag with the right button. A click with the right button opens
/// a menu. A press on the strip chooses a kind or a tool. Keys: arrows, Home, End, Page Up and Page Down
/// (Home and End with Ctrl: the corners) go to a cell; with Shift they extend the selected rectangle, Ctrl+A
/// selects all cells. Space paints the selection, or erases the chosen kind there when the cell where the
/// selection began has it; 1 to 9 choose a kind; Escape cancels what the held button has done. The menu lists
/// the other keys.
class CellGridEditor : public PictureView, private EditGesture::Editor
{
    Q_OBJECT

public:
    static constexpr int MaxKinds = 9;
    enum class Tool { Rectangle, Brush };

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
    Tool tool() const { return m_tool; }

    /// While valueChanged() is emitted.
    HistoryMove historyMove() const { return m_gesture.historyMove(); }

    QString valueText() const override;
    /// Stands beside the strip: it would cover what is edited.
    void setCaption(const QString &text) override;

public Q_SLOTS:
    void slot_Set_all();
    void slot_Clear_all();
    /// Cells of the chosen kind become unmarked and unmarked ones get it; cells of other kinds stay.
    void slot_Invert();
    void slot_Undo();
    void slot_Redo();
    /// All cells, for another grid of this size.
    void slot_Copy();
    /// Changes nothing and says why when the clipboard has no cells, or a grid of another size or with marks
    /// of kinds that do not exist here.
    void slot_Paste();
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
    const QStringList &kinds() const { return m_kinds; }

    void paintOver(QPainter &painter, const QRect &dirty) override;
    int footerHeight(int width) const override;
    void paintFooter(QPainter &painter) override;
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum class Brush { Paint, EraseKind, EraseAny };
    /// What a held button does, and the way of the mouse.
    struct Stroke {
        Brush brush;
        bool isClick; ///< does nothing yet: the right button has not left the first cell
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

    void showKinds();
    EditActions editActions();
    EditActions toolActions();
    EditActions kindActions();
    EditActions cellActions();
    EditActions clipboardActions();
    void showMenuAtSelection();
    void choose(int kind);
    void chooseTool(Tool tool);
    int kindOf(int mark) const;
    QString faultOf(const QStringList &copied) const;
    void pressStrip(const QPoint &position);
    Brush brushOf(const QMouseEvent &press, const QPoint &cell) const;
    CellFrame draggedFrame() const;
    void paintRectangle();
    void paintWay(qsizetype start);
    void select(const CellFrame &frame);
    Brush brushFor(const QPoint &cell) const;
    bool apply(Brush brush, const QPoint &cell);
    void applyTo(Brush brush, const QRect &cells);
    void changeCells(const QRect &cells, const std::function<bool(const QPoint &)> &change);
    void paintLines(QPainter &painter, const Borders &borders);
    void paintMarks(QPainter &painter, const Borders &borders, const QRect &dirty);
    void paintSelection(QPainter &painter, const Borders &borders);

    CellRows m_cells;
    ChipStrip m_strip;
    QStringList m_kinds;
    int m_kind = 1;
    Tool m_tool = Tool::Rectangle;
    CellFrame m_frame;
    Stroke m_stroke{};
    QString m_refusal; ///< why the last paste has changed nothing
    EditHistory m_history;
    EditGesture m_gesture;
};

} // namespace paravue
