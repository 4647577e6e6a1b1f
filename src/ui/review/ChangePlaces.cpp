#include "ui/review/ChangePlaces.h"

#include "controls/ControlStyle.h"
#include "ui/accessibility/ControlName.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlTable.h"
#include "ui/review/DescribedAddress.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStringList>
#include <QTabWidget>

#include <algorithm>

namespace paravue
{

namespace
{

bool isEditorOf(const Control &control, const QString &path)
{
    if (!control.widget || !control.adapter || control.adapter->traits().changes.isEmpty() ||
        isShownAsValue(control.widget))
        return false;
    const QList<DescribedAddress> addresses = describedAddresses(control.element, *control.adapter);
    return std::any_of(addresses.begin(), addresses.end(),
                       [&](const DescribedAddress &address) { return address.covers(path); });
}

} // namespace

bool isPage(const QWidget &widget)
{
    return qobject_cast<const QStackedWidget *>(widget.parentWidget());
}

bool canBeUsed(const QWidget &control)
{
    if (!control.isEnabled())
        return false;
    for (const QWidget *widget = &control; widget && !widget->isWindow(); widget = widget->parentWidget()) {
        if (widget->isHidden() && !isPage(*widget))
            return false;
    }
    return true;
}

QList<const Control *> ChangePlaces::editors(const QString &path) const
{
    QList<const Control *> found;
    for (const int number : m_table.dependants(path)) {
        const Control *control = m_table.find(number);
        if (control && isEditorOf(*control, path))
            found << control;
    }
    std::sort(found.begin(), found.end(),
              [](const Control *a, const Control *b) { return a->number < b->number; });
    return found;
}

bool ChangePlaces::isSecretField(const Control &control)
{
    const auto *field = qobject_cast<const QLineEdit *>(control.widget);
    return (field && field->echoMode() != QLineEdit::Normal) || isMarkedSecret(control.element);
}

QString ChangePlaces::caption(const Control &control, const QString &valueName)
{
    QStringList parts;
    visitPages(*control.widget, [&parts](const QTabWidget &tabs, int index) {
        parts.prepend(withoutAccessKey(tabs.tabText(index)));
    });
    parts << (valueName.isEmpty() ? controlName(*control.widget) : valueName);
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" › "));
}

void ChangePlaces::show(const Control &control)
{
    visitPages(*control.widget, [](QTabWidget &tabs, int index) { tabs.setCurrentIndex(index); });
    for (QWidget *above = control.widget->parentWidget(); above; above = above->parentWidget()) {
        if (auto *area = qobject_cast<QScrollArea *>(above))
            area->ensureWidgetVisible(control.widget);
    }
    control.widget->setFocus();
}

} // namespace paravue
