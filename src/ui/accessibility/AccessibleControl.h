#pragma once

#include <QAccessibleWidget>
#include <QStringView>

namespace paravue
{

/// "link" and a number.
bool isUniqueName(QStringView name);

/// A control as screen readers see it, under the name that the user knows. The accessible name of the widget
/// itself is the control's unique name, which means nothing to a user.
class AccessibleControl : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override;
};

} // namespace paravue
