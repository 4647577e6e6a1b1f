#pragma once

#include <QLayoutItem>
#include <QSet>

#include <memory>

namespace paravue
{

class ControlItem;

/// The height that the one-line controls of a window have in common, as their rows do: \a control needs no
/// more in its font.
int lineHeight(const QWidget &control);

/// The fields in one column of a grid, which are as wide as the widest of them.
class FieldColumn
{
public:
    void add(const ControlItem &field) { m_fields.insert(&field); }
    void remove(const ControlItem &field);
    void invalidate() { m_width = -1; }
    int width();

private:
    QSet<const ControlItem *> m_fields;
    int m_width = -1; ///< not known
};

/// The layout item of a control. Controls of one line stand in rows of one height, and fields and buttons
/// among them have it themselves. Widgets such as lines and lists fill their cell, whatever its alignment;
/// one that fills one direction only, such as a line under a form, does not make the grid grow.
class ControlItem : public QWidgetItem
{
public:
    ControlItem(QWidget *widget, Qt::Orientations fills);
    ~ControlItem() override;

    /// False for a widget that its grid can place without an item of this class.
    static bool suits(const QWidget &widget);
    /// True for a widget that a value is typed or chosen in.
    static bool isField(const QWidget &widget);
    /// Makes the field as wide as the others of \a column.
    void join(const std::shared_ptr<FieldColumn> &column);
    int ownWidth() const { return QWidgetItem::sizeHint().width(); }

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void invalidate() override;
    void setGeometry(const QRect &rect) override;
    Qt::Orientations expandingDirections() const override;

protected:
    /// While sizeHint() is asked for the widget alone, to place it in its cell.
    bool isPlacing() const { return m_isPlacing; }

private:
    enum class Line {
        None,   ///< not of one line
        Row,    ///< stands in a row of the common height
        Filled, ///< and has it itself
    };

    static Line lineOf(const QWidget &widget);

    const Qt::Orientations m_fills;
    const Line m_line;
    std::shared_ptr<FieldColumn> m_column; ///< of a field without a width of its own
    bool m_isPlacing = false;
};

} // namespace paravue
