#include "ui/AccessibleControl.h"

#include "ui/ControlName.h"

#include <QRegularExpression>
#include <QWidget>

namespace paravue
{
namespace
{

bool isUniqueName(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("\\Alink[0-9]+\\z"));
    return pattern.match(name).hasMatch();
}

} // namespace

QString AccessibleControl::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name && isUniqueName(widget()->accessibleName()))
        return controlName(*widget());
    if (kind == QAccessible::Description && widget()->accessibleDescription().isEmpty())
        return plainToolTip(*widget());
    return QAccessibleWidget::text(kind);
}

} // namespace paravue
