#include "ui/binding/ToolTip.h"

#include "ui/base/SafeText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"

namespace paravue
{

bool loadToolTip(ControlContext &context, const Control &control)
{
    const QDomElement toolTip = control.element.firstChildElement(QStringLiteral("tooltip"));
    if (toolTip.isNull())
        return false;
    const QString text = safeRichText(context.text(control, toolTip.text()));
    if (control.widget->toolTip() == text)
        return false;
    control.widget->setToolTip(text);
    return true;
}

} // namespace paravue
