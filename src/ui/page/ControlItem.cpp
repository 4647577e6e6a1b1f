#include "ui/page/ControlItem.h"

#include "ui/base/TextLabel.h"
#include "ui/base/WindowStyle.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

template <class... Classes>
bool isAnyOf(const QWidget &widget)
{
    return (qobject_cast<const Classes *>(&widget) || ...);
}

bool showsText(const QWidget &widget)
{
    return qobject_cast<const QAbstractButton *>(&widget) || dynamic_cast<const TextLabel *>(&widget);
}

} // namespace

int lineHeight(const QWidget &control)
{
    constexpr int Borders = 2;
    // Qt gives fields room for that many pixels of text, also with the smaller fonts of Windows.
    constexpr int LeastTextHeight = 14;
    return std::max(control.fontMetrics().height(), LeastTextHeight) + 2 * SpacingStep + Borders;
}

void FieldColumn::remove(const ControlItem &field)
{
    m_fields.remove(&field);
    invalidate();
}

int FieldColumn::width()
{
    if (m_width < 0) {
        m_width = 0;
        for (const ControlItem *field : std::as_const(m_fields))
            m_width = std::max(m_width, field->ownWidth());
    }
    return m_width;
}

ControlItem::ControlItem(QWidget *widget, Qt::Orientations fills)
    : QWidgetItem(widget), m_fills(fills), m_line(lineOf(*widget))
{
}

ControlItem::~ControlItem()
{
    if (m_column)
        m_column->remove(*this);
}

ControlItem::Line ControlItem::lineOf(const QWidget &widget)
{
    if (isField(widget) || qobject_cast<const QPushButton *>(&widget))
        return Line::Filled;
    const auto *bar = qobject_cast<const QScrollBar *>(&widget);
    const bool isRow = bar ? bar->orientation() == Qt::Horizontal : isAnyOf<QCheckBox, QProgressBar>(widget);
    return isRow ? Line::Row : Line::None;
}

bool ControlItem::suits(const QWidget &widget)
{
    return lineOf(widget) != Line::None || showsText(widget);
}

bool ControlItem::isField(const QWidget &widget)
{
    return isAnyOf<QLineEdit, QComboBox, QAbstractSpinBox>(widget);
}

void ControlItem::join(const std::shared_ptr<FieldColumn> &column)
{
    m_column = column;
    column->add(*this);
}

void ControlItem::invalidate()
{
    if (m_column)
        m_column->invalidate();
    QWidgetItem::invalidate();
}

QSize ControlItem::sizeHint() const
{
    QSize size = QWidgetItem::sizeHint();
    if (isEmpty())
        return size;
    if (m_column)
        size.setWidth(m_column->width());
    if (m_line == Line::Filled || (m_line == Line::Row && !m_isPlacing))
        size.setHeight(std::max(size.height(), lineHeight(*wid)));
    return size;
}

QSize ControlItem::minimumSize() const
{
    QSize size = QWidgetItem::minimumSize();
    if (isEmpty())
        return size;
    if (m_line != Line::None)
        size.setHeight(std::max(size.height(), lineHeight(*wid)));
    // A described width is the least one, but smaller than a text it would cut that. By itself a drop-down
    // list keeps the least width of its first choices.
    if (qobject_cast<const QComboBox *>(wid))
        size.setWidth(std::max(size.width(), ownWidth()));
    else if (showsText(*wid))
        size.setWidth(std::max(size.width(), wid->minimumSizeHint().width()));
    return size;
}

void ControlItem::setGeometry(const QRect &rect)
{
    const Qt::Alignment asked = alignment();
    Qt::Alignment used = asked;
    if (m_fills & Qt::Horizontal)
        used &= ~Qt::AlignHorizontal_Mask;
    if (m_fills & Qt::Vertical)
        used &= ~Qt::AlignVertical_Mask;
    setAlignment(used);
    const QScopedValueRollback placing(m_isPlacing, true);
    QWidgetItem::setGeometry(rect);
    setAlignment(asked);
}

Qt::Orientations ControlItem::expandingDirections() const
{
    const bool fillsBoth = m_fills == (Qt::Horizontal | Qt::Vertical);
    return isEmpty() || !fillsBoth ? Qt::Orientations() : widget()->sizePolicy().expandingDirections();
}

} // namespace paravue
