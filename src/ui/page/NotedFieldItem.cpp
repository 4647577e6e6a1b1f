#include "ui/page/NotedFieldItem.h"

#include "ui/base/WindowStyle.h"
#include "ui/binding/FieldNotes.h"

#include <QGridLayout>
#include <QHash>
#include <QLabel>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int UnitGap = 2 * SpacingStep;
constexpr int NoteGap = SpacingStep / 2;
constexpr int NoteWidth = 280; // a longer note is wrapped, unless its field is wider

} // namespace

NotedFieldItem::NotedFieldItem(QWidget *field, Qt::Orientations fills) : ControlItem(field, fills) {}

FieldNotes *NotedFieldItem::notes() const
{
    if (!m_notes)
        m_notes = FieldNotes::of(const_cast<NotedFieldItem *>(this)->widget());
    return m_notes;
}

QList<QLabel *> NotedFieldItem::besideField() const
{
    QList<QLabel *> labels;
    if (const FieldNotes *notes = this->notes()) {
        for (QLabel *label : {notes->unit(), notes->storedMark()}) {
            if (label && !label->isHidden())
                labels.append(label);
        }
    }
    return labels;
}

int NotedFieldItem::widthBeside() const
{
    int width = 0;
    for (const QLabel *label : besideField())
        width += UnitGap + label->sizeHint().width();
    return width;
}

QSize NotedFieldItem::noteRoom(int fieldWidth) const
{
    if (!notes() || !notes()->note())
        return {};
    const QLabel &note = *notes()->note();
    const int wanted = note.fontMetrics().horizontalAdvance(note.text()) + 1;
    const int width = std::max(fieldWidth, std::min(wanted, NoteWidth));
    return {width, NoteGap + note.heightForWidth(width)};
}

QSize NotedFieldItem::withNotes(const QSize &field) const
{
    if (isEmpty())
        return field;
    const int width = field.width() + widthBeside();
    const QSize note = noteRoom(width);
    return {std::max(width, note.width()), field.height() + std::max(note.height(), 0)};
}

QSize NotedFieldItem::sizeHint() const
{
    const QSize field = ControlItem::sizeHint();
    return isPlacing() ? field : withNotes(field);
}

QSize NotedFieldItem::minimumSize() const
{
    return withNotes(ControlItem::minimumSize());
}

QSize NotedFieldItem::maximumSize() const
{
    return {QLAYOUTSIZE_MAX, QLAYOUTSIZE_MAX};
}

void NotedFieldItem::setGeometry(const QRect &rect)
{
    if (isEmpty() || !notes())
        return ControlItem::setGeometry(rect);
    const QSize own = ControlItem::sizeHint();
    const int noteHeight =
        std::max(noteRoom(std::min(rect.width(), own.width() + widthBeside())).height(), 0);
    ControlItem::setGeometry(rect.adjusted(0, 0, -widthBeside(), -noteHeight));
    const QRect field = widget()->geometry();
    int left = field.right() + 1;
    for (QLabel *label : besideField()) {
        const int width = label->sizeHint().width();
        label->setGeometry(left + UnitGap, field.top(), width, field.height());
        left += UnitGap + width;
    }
    if (QLabel *note = notes()->note())
        note->setGeometry(field.left(), field.bottom() + 1 + NoteGap, rect.right() + 1 - field.left(),
                          noteHeight - NoteGap);
}

void alignWithFields(QGridLayout &grid)
{
    QHash<int, int> heights; // by row: of the fields with notes
    const auto rowOf = [&grid](int index) {
        int row, column, rows, columns;
        grid.getItemPosition(index, &row, &column, &rows, &columns);
        return rows == 1 ? row : -1;
    };
    for (int i = 0; i < grid.count(); ++i) {
        const QWidget *field = grid.itemAt(i)->widget();
        const FieldNotes *notes = field ? FieldNotes::of(field) : nullptr;
        if (notes && notes->note())
            heights[rowOf(i)] =
                std::max({heights.value(rowOf(i)), field->sizeHint().height(), lineHeight(*field)});
    }
    for (int i = 0; i < grid.count() && !heights.isEmpty(); ++i) {
        QLayoutItem *item = grid.itemAt(i);
        QWidget *widget = item->widget();
        const int height = rowOf(i) < 0 ? 0 : heights.value(rowOf(i));
        if (!widget || height == 0 || !item->alignment().testFlag(Qt::AlignVCenter))
            continue;
        item->setAlignment((item->alignment() & ~Qt::AlignVertical_Mask) | Qt::AlignTop);
        if (!FieldNotes::of(widget))
            widget->setMinimumHeight(std::max(widget->minimumHeight(), height));
    }
}

} // namespace paravue
