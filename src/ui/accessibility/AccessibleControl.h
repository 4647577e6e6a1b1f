#pragma once

#include <QAccessibleWidget>
#include <QStringView>

namespace paravue
{

/// "link" and a number.
bool isUniqueName(QStringView name);

/// A control as assistive tools meet it: named as the user would name it. The accessible name that the widget
/// carries is the control's unique one, which says nothing to anybody.
class AccessibleControl : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override;
};

} // namespace paravue
