#pragma once

#include "ui/page/ControlItem.h"

#include <QList>
#include <QPointer>

class QGridLayout;
class QLabel;

namespace paravue
{

class FieldNotes;

/// A layout item for a field that has notes or may get some: its unit and the mark of a stored value that it
/// cannot show stand right of it, and the note below. For the grid, and for what looks into it, the item is
/// that of the field.
class NotedFieldItem : public ControlItem
{
public:
    NotedFieldItem(QWidget *field, Qt::Orientations fills);

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    QSize maximumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    /// The room that the notes take beside a field of this width.
    QSize noteRoom(int fieldWidth) const;
    QSize withNotes(const QSize &field) const;
    /// The visible labels on the right of the field, in order.
    QList<QLabel *> besideField() const;
    int widthBeside() const;
    FieldNotes *notes() const;

    mutable QPointer<FieldNotes> m_notes; ///< looked up until there are some
};

/// Moves what stands beside a field with a note in its row of \a grid to the height of the field: its cell
/// is higher by the note.
void alignWithFields(QGridLayout &grid);

} // namespace paravue
