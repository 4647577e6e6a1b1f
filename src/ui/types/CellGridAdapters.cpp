#include "controls/AlarmZoneEditor.h"
#include "controls/MaskEditor.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedRows.h"
#include "ui/types/AdapterTexts.h"

#include <memory>

namespace paravue
{
namespace
{

static_assert(MostAlarmZones == CellGridEditor::MaxKinds);

/// Base of the adapters of cell grids over a picture. Attributes "ctrlColumns" and "ctrlRows" give the size
/// of the grid (16 by 12 when absent), children "text" the names of the kinds of marks.
///
/// The rows stand at addresses made of the first "key" and the number of the row, counted from 0 at the top:
/// with the key "motion/cam0/MASK" at "motion/cam0/MASK0", "motion/cam0/MASK1" and so on. A key that ends
/// with its section names the rows ROW0, ROW1. A row is a text with one character for each cell, such as
/// "0011100"; controls/CellRows.h describes how other texts are read. Only rows whose cells were painted are
/// written.
template <class Editor>
class CellGridAdapter : public TypedAdapter<Editor>
{
public:
    explicit CellGridAdapter(const QList<AttributeRule> &attributes)
        : TypedAdapter<Editor>(
              {.changes = {onSignal<&Editor::valueChanged>},
               .attributes = QList<AttributeRule>{{"ctrlColumns"}, {"ctrlRows"}} + attributes,
               .children = {{"text"}},
               .keys = {{KeyRule::Rows}},
               .cost = 4})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        const QDomElement &element = control.element;
        QSize size = cellGridSize(element);
        // Several of these small cells are painted in the time of one cell of a list.
        constexpr int CellsPerListCell = 4;
        if (!context.take(ControlContext::ListCells, size.width() * size.height() / CellsPerListCell))
            size = QSize(1, 1);
        return makeEditor(element, size, parent);
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }

    bool load(ControlContext &context, const Control &control) const override
    {
        Editor &editor = this->widget(control);
        const bool renamed =
            editor.setKinds(captions(context, control, QStringLiteral("text"), CellGridEditor::MaxKinds));
        const QStringList rows =
            valuesAt(context, control, rowAddresses(control.element, int(editor.rows().size())));
        // Without a key the cells are not stored; the user's cells stay.
        return (!rows.isEmpty() && editor.setRows(rows)) || renamed;
    }

    HistoryMove historyMove(const Control &control) const override
    {
        return this->widget(control).historyMove();
    }

    QList<Assignment> assignments(ControlContext &context, const Control &control) const override
    {
        const QStringList rows = this->widget(control).rows();
        return changedValues(context, rowAddresses(control.element, int(rows.size())), rows);
    }

private:
    virtual Editor *makeEditor(const QDomElement &element, const QSize &size, QWidget *parent) const = 0;
};

/// A motion mask or, with the attribute "mask" = "privacy", one that covers parts of the picture. "1" is
/// masked, "0" is not. The first "text" is the name of what is masked.
class MaskAdapter : public CellGridAdapter<MaskEditor>
{
public:
    MaskAdapter() : CellGridAdapter({{"mask", AttributeRule::Word, {"motion", "privacy"}}}) {}

private:
    MaskEditor *makeEditor(const QDomElement &element, const QSize &size, QWidget *parent) const override
    {
        const bool covers = element.attribute(QStringLiteral("mask")) == QLatin1String("privacy");
        return new MaskEditor(size, covers ? MaskEditor::Privacy : MaskEditor::Motion, parent);
    }
};

/// Alarm zones: "1" to "9" is the zone of a cell, "0" is none. There are as many zones as "text" children,
/// which are their names; without any there are four.
class AlarmZoneAdapter : public CellGridAdapter<AlarmZoneEditor>
{
public:
    AlarmZoneAdapter() : CellGridAdapter({}) {}

private:
    AlarmZoneEditor *makeEditor(const QDomElement &, const QSize &size, QWidget *parent) const override
    {
        return new AlarmZoneEditor(size, parent);
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeMaskAdapter()
{
    return std::make_unique<MaskAdapter>();
}

std::unique_ptr<const ControlAdapter> makeAlarmZoneAdapter()
{
    return std::make_unique<AlarmZoneAdapter>();
}

} // namespace paravue
