#include "controls/MaskEditor.h"

#include "controls/OwnTexts.h"

namespace paravue
{

MaskEditor::MaskEditor(const QSize &size, Purpose purpose, QWidget *parent)
    : CellGridEditor(size, parent), m_purpose(purpose)
{
    keepTranslated(*this, [this, usual = QStringList()]() mutable {
        if (kinds() == usual) // and none of a description
            setKinds(usual = QStringList{tr("Masked")});
    });
}

bool MaskEditor::isOfKind(int mark, int) const
{
    return mark != 0;
}

CellStyle MaskEditor::markStyle(int) const
{
    const QColor tint = m_purpose == Privacy ? QColor(24, 24, 24, 245) : QColor(232, 96, 0, 110);
    return {tint, CellStyle::Rising, {}};
}

QString MaskEditor::markName(int) const
{
    return kinds().value(0);
}

} // namespace paravue
