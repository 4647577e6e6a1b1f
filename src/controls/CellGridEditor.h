#pragma once

#include "controls/CellFrame.h"
#include "controls/CellRows.h"
#include "controls/CellStyle.h"
#include "controls/ChipStrip.h"
#include "controls/EditGesture.h"
#include "controls/PictureView.h"

namespace paravue
{

/// A grid of cells over a picture, which the user paints with marks of one or several kinds. Kinds count from
/// 1; the strip below the picture names them and shows the one that is painted with.
///
/// Mouse: the left button paints while it is held; when the first cell has the chosen kind already, it takes
/// this kind away instead. The right button takes any mark away. A press on the strip chooses a kind.
/// Keys: arrows, Home, End, Page Up and Page Down (Home and End with Ctrl: the corners) go to a cell; with
/// Shift they stretch a rectangle, Ctrl+A takes all cells. Space paints what is selected like a left button
/// that is pressed where the rectangle began; Delete and Backspace take any mark away; 1 to 9 choose a kind;
/// Escape takes back what the held button has done so far.
class CellGridEditor : public PictureView, private EditGesture::Editor
{
    Q_OBJECT

public:
    static constexpr int MaxKinds = 9;

    /// \a size in columns and rows, at least 1 by 1.
    explicit CellGridEditor(const QSize &size, QWidget *parent = nullptr);

    /// The rows in the form that CellRows documents.
    QStringList rows() const { return m_cells.texts(); }
    /// Emits nothing. False, and nothing is touched, when they are shown already.
    bool setRows(const QStringList &rows);

    /// The names of the kinds, 1 to 9 of them. False when they are the present ones.
    bool setKinds(const QStringList &names);
    int chosenKind() const { return m_kind; }

    QString valueText() const override;

public Q_SLOTS:
    void slot_Set_all();
    void slot_Clear_all();
    /// \a number is that of a kind; any other text changes nothing.
    void slot_Choose_kind(const QString &number);

Q_SIGNALS:
    /// The user has painted.
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
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum class Brush { Paint, EraseKind, EraseAny };
    /// What a held button does, and the last cell that it was done to.
    struct Stroke {
        Brush brush;
        QPoint last;
    };

    /// Where in the widget the cells begin; the last ones end where there would be another.
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
    void cancelDrag(const QStringList &before) override;
    void textsEdited(const QStringList &before, const QStringList &after) override;

    QSize gridSize() const { return m_cells.size(); }
    QPoint cellAt(const QPoint &position) const;
    Borders borders() const;

    void choose(int kind);
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
    EditGesture m_gesture;
};

} // namespace paravue
