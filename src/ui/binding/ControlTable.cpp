#include "ui/binding/ControlTable.h"

#include "store/ConfigAddress.h"
#include "ui/accessibility/ControlAccessibility.h"
#include "ui/description/InterfaceDocument.h"

namespace paravue
{
namespace
{

const QString namePrefix = QStringLiteral("link");
const QString widgetTag = QStringLiteral("controlWidget");

} // namespace

ControlTable::ControlTable(InterfaceDocument &document) : m_document(document) {}

Control &ControlTable::add(const QDomElement &element, const ControlAdapter *adapter)
{
    const int number = m_next++;
    Control &control = m_controls[number];
    control.number = number;
    control.name = namePrefix + QString::number(number);
    control.element = element;
    control.adapter = adapter;
    return control;
}

void ControlTable::attach(Control &control, QWidget *widget)
{
    control.widget = widget;
    describeToScreenReaders(widget, control.name);
    m_document.append(control.element, control.name);
    QDomElement decoration = m_document.append(control.element, widgetTag);
    decoration.setAttribute(QStringLiteral("address"), control.number);
    decoration.setAttribute(QStringLiteral("id"), control.name);
}

Control *ControlTable::find(int number)
{
    const auto found = m_controls.find(number);
    return found == m_controls.end() ? nullptr : &found->second;
}

Control *ControlTable::find(const QString &name)
{
    if (!name.startsWith(namePrefix))
        return nullptr;
    Control *control = find(QStringView(name).mid(namePrefix.size()).toInt());
    return control && control->name == name ? control : nullptr;
}

Control *ControlTable::of(const QWidget *widget)
{
    Control *control = widget ? find(widget->accessibleName()) : nullptr;
    return control && control->widget == widget ? control : nullptr;
}

Control *ControlTable::of(const QDomElement &element)
{
    // The decoration is the last child, so no search is needed. The element is compared because a description
    // may contain a "controlWidget" of its own.
    const QDomElement decoration = element.lastChild().toElement();
    if (decoration.tagName() != widgetTag)
        return nullptr;
    Control *control = find(decoration.attribute(QStringLiteral("address")).toInt());
    return control && control->element == element ? control : nullptr;
}

QList<int> ControlTable::numbersSince(int first) const
{
    QList<int> numbers;
    for (auto entry = m_controls.lower_bound(first); entry != m_controls.end(); ++entry)
        numbers.append(entry->first);
    return numbers;
}

void ControlTable::addDependency(const Control &control, const QString &address)
{
    const QStringView view = ConfigAddress(address).path();
    constexpr qsizetype Few = 4; // are compared faster than looked up
    if (control.watched.size() <= Few && control.watched.contains(view))
        return;
    const QString path = view.toString();
    const auto known = m_dependencies.size();
    m_dependencies.insert({control.number, path});
    if (m_dependencies.size() == known)
        return;
    m_dependants[path].append(control.number);
    m_controls.at(control.number).watched.append(path);
}

void ControlTable::remove(const QList<int> &numbers)
{
    for (const int number : numbers) {
        const auto found = m_controls.find(number);
        if (found == m_controls.end())
            continue;
        removeDecorations(found->second);
        for (const QString &path : std::as_const(found->second.watched)) {
            m_dependencies.remove({number, path});
            QList<int> &numbersThere = m_dependants[path];
            numbersThere.removeOne(number);
            if (numbersThere.isEmpty())
                m_dependants.remove(path);
        }
        m_controls.erase(found);
    }
}

void ControlTable::clear()
{
    m_controls.clear();
    m_dependants.clear();
    m_dependencies.clear();
}

void ControlTable::removeDecorations(const Control &control)
{
    QDomElement element = control.element;
    element.removeChild(element.lastChildElement(control.name));
    // A dialog may show elements of the page behind it, and have decorated them too.
    QDomElement decoration = element.lastChildElement(widgetTag);
    while (!decoration.isNull() && decoration.attribute(QStringLiteral("id")) != control.name)
        decoration = decoration.previousSiblingElement(widgetTag);
    element.removeChild(decoration);
}

} // namespace paravue
