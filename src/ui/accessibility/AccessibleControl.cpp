#include "ui/accessibility/AccessibleControl.h"

#include "ui/accessibility/ControlName.h"

#include <QWidget>

#include <algorithm>

namespace paravue
{

bool isUniqueName(QStringView name)
{
    constexpr QStringView prefix(u"link");
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const QStringView number = name.mid(prefix.size());
    return name.startsWith(prefix) && !number.isEmpty() && std::all_of(number.begin(), number.end(), isDigit);
}

QString AccessibleControl::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name && isUniqueName(widget()->accessibleName()))
        return controlName(*widget());
    if (kind == QAccessible::Description && widget()->accessibleDescription().isEmpty())
        return plainToolTip(*widget());
    return QAccessibleWidget::text(kind);
}

} // namespace paravue
