#include "ui/types/CellGridControls.h"

#include "controls/AlarmZoneEditor.h"
#include "controls/MaskEditor.h"
#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedAddresses.h"

#include <algorithm>

namespace paravue
{
namespace
{

constexpr QSize UsualGrid(16, 12);

int lineCount(const QDomElement &element, const QString &attribute, int usual)
{
    const int count = intAttribute(element, attribute);
    return count > 0 ? std::min(count, limits::CellGridLines) : usual;
}

QStringList rowAddresses(const QDomElement &element, int rows)
{
    return numberedAddresses(element.firstChildElement(QStringLiteral("key")), QStringLiteral("ROW"), 0,
                             rows);
}

} // namespace

QWidget *CellGridControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    QSize size(lineCount(control.element, QStringLiteral("ctrlColumns"), UsualGrid.width()),
               lineCount(control.element, QStringLiteral("ctrlRows"), UsualGrid.height()));
    if (!context.take(ControlContext::ListCells, size.height()))
        size = QSize(1, 1);
    return createEditor(control.element, size, parent);
}

ChangeSignal CellGridControl::changeSignal() const
{
    return {SIGNAL(valueChanged()), SLOT(onCtrlChanged())};
}

bool CellGridControl::load(ControlContext &context, const Control &control) const
{
    auto *editor = qobject_cast<CellGridEditor *>(control.widget);
    QStringList names;
    for (const QString &text :
         childTexts(control.element, QStringLiteral("text")).mid(0, CellGridEditor::MostKinds))
        names.append(context.text(control, text));
    const bool renamed = editor->setKinds(names);
    QStringList rows;
    for (const QString &address : rowAddresses(control.element, int(editor->rows().size())))
        rows.append(context.value(control, address));
    // Without a key the cells are the user's alone.
    return (!rows.isEmpty() && editor->setRows(rows)) || renamed;
}

QStringList CellGridControl::assignments(ControlContext &context, const Control &control) const
{
    const QStringList rows = qobject_cast<CellGridEditor *>(control.widget)->rows();
    const QStringList addresses = rowAddresses(control.element, int(rows.size()));
    QStringList result;
    for (qsizetype row = 0; row < addresses.size(); ++row) {
        if (context.store().value(addresses[row]) != rows[row])
            result.append(OrbSetup::path(addresses[row]) + u'/' + rows[row]);
    }
    return result;
}

const QMetaObject &MaskControl::widgetClass() const
{
    return MaskEditor::staticMetaObject;
}

CellGridEditor *MaskControl::createEditor(const QDomElement &element, const QSize &size,
                                          QWidget *parent) const
{
    const bool covers = element.attribute(QStringLiteral("mask")) == QLatin1String("privacy");
    return new MaskEditor(size, covers ? MaskEditor::Privacy : MaskEditor::Motion, parent);
}

const QMetaObject &AlarmZoneControl::widgetClass() const
{
    return AlarmZoneEditor::staticMetaObject;
}

CellGridEditor *AlarmZoneControl::createEditor(const QDomElement &, const QSize &size, QWidget *parent) const
{
    return new AlarmZoneEditor(size, parent);
}

} // namespace paravue
