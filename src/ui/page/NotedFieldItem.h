#pragma once

#include "ui/page/GridFillItem.h"

#include <QPointer>

class QGridLayout;

namespace paravue
{

class FieldNotes;

/// A layout item for a field with notes: its unit stands right of it, and the note below. For the grid, and
/// for what looks into it, the item is that of the field.
class NotedFieldItem : public GridFillItem
{
public:
    NotedFieldItem(QWidget *field, Qt::Orientations fills, FieldNotes *notes);

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    QSize maximumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    /// The room that the notes take beside a field of this width.
    QSize noteRoom(int fieldWidth) const;
    QSize withNotes(const QSize &field) const;
    int unitWidth() const;

    QPointer<FieldNotes> m_notes;
    bool m_isPlacingField = false;
};

/// Moves what stands beside a field with a note in its row of \a grid to the height of the field: its cell
/// is higher by the note.
void alignWithFields(QGridLayout &grid);

} // namespace paravue
