#include "ui/review/ChangePlaces.h"

#include "controls/ControlStyle.h"
#include "store/OrbSetup.h"
#include "ui/accessibility/ControlName.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlTable.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QStringList>
#include <QTabWidget>

#include <algorithm>

namespace paravue
{

namespace
{

bool isAddressOf(const QString &path, const QString &text, KeyRule::Form form)
{
    switch (form) {
    case KeyRule::Value:
    case KeyRule::Assignment:
        return OrbSetup::path(text) == path;
    case KeyRule::Group:
        return path.startsWith(text + u'/');
    case KeyRule::Rows:
        return path.startsWith(text);
    }
    return false;
}

/// The keys of a choice stand within its text.
bool hasKey(const QDomElement &element, const KeyRule &rule, const QString &path)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QDomElement key = child.tagName() == rule.tag ? child : child.firstChildElement(rule.tag);
        if (!key.isNull() && isAddressOf(path, key.text(), rule.form))
            return true;
    }
    return false;
}

bool isEditorOf(const Control &control, const QString &path)
{
    if (!control.widget || !control.adapter || control.adapter->traits().changes.isEmpty() ||
        isShownAsValue(control.widget))
        return false;
    const QList<KeyRule> &rules = control.adapter->traits().keys;
    return std::any_of(rules.begin(), rules.end(),
                       [&](const KeyRule &rule) { return hasKey(control.element, rule, path); });
}

} // namespace

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
    return field && field->echoMode() != QLineEdit::Normal;
}

QString ChangePlaces::caption(const Control &control)
{
    QStringList parts;
    visitPages(*control.widget, [&parts](const QTabWidget &tabs, int index) {
        parts.prepend(withoutAccessKey(tabs.tabText(index)));
    });
    parts << controlName(*control.widget);
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
