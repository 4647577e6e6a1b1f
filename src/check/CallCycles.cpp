#include "check/CallCycles.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"

#include <QAbstractButton>
#include <QCheckBox>

#include <vector>

namespace paravue
{
namespace
{

/// True when a call of \a slot makes \a target run its own calls.
bool isPress(const ActionTarget &target, const QString &slot)
{
    const bool isClick = slot == QLatin1String("click") || slot == QLatin1String("animateClick");
    return target.adapter && target.adapter->traits().runsCalls &&
           ((isClick && target.widgetClass->inherits(&QAbstractButton::staticMetaObject)) ||
            (slot == QLatin1String("toggle") && target.widgetClass->inherits(&QCheckBox::staticMetaObject)));
}

/// The elements whose calls run when \a slot of \a tag is called.
QList<ElementId> pressed(const InterfaceDocument &document, const DescribedParts &parts, const QString &slot,
                         const QString &tag)
{
    QList<ElementId> found;
    for (const QDomElement &mark : document.elements(tag)) {
        const QDomElement element = mark.parentNode().toElement();
        const ActionTarget target = parts.of(element);
        if (isPress(target, slot))
            found.append(elementId(element));
        else if (target.kind == ActionTarget::Kind::Window && slot == QLatin1String("saveSettings"))
            found.append(elementId(document.root().firstChildElement(QStringLiteral("buttonOK"))));
    }
    return found;
}

} // namespace

void CallCycles::add(const QDomElement &action)
{
    static const QStringList presses{"click", "animateClick", "toggle", "saveSettings"};
    const QString slot = action.attribute(QStringLiteral("slot"));
    if (presses.contains(slot) && !action.hasAttribute(QStringLiteral("state")))
        m_callers[{slot, action.text().trimmed()}].append(
            {action, elementId(action.parentNode().toElement())});
}

void CallCycles::report(const InterfaceDocument &document, const DescribedParts &parts,
                        ProblemList &problems) const
{
    // Calls that press nothing terminate, and so do calls that press only elements whose calls terminate;
    // removing these again and again leaves the cycles.
    std::map<Call, qsizetype> open;         // per call, the pressed elements not known to terminate
    QHash<ElementId, qsizetype> openOf;     // per element, its calls not known to terminate
    QHash<ElementId, QList<Call>> pressing; // per element, the calls that press it
    std::vector<ElementId> ending;
    const auto settle = [&](const Call &call) {
        for (const Caller &caller : m_callers.at(call)) {
            if (--openOf[caller.owner] == 0)
                ending.push_back(caller.owner);
        }
    };
    for (const auto &[call, callers] : m_callers) {
        for (const Caller &caller : callers)
            ++openOf[caller.owner];
    }
    for (const auto &[call, callers] : m_callers) {
        for (const ElementId &element : pressed(document, parts, call.first, call.second)) {
            if (openOf.value(element) == 0)
                continue;
            ++open[call];
            pressing[element].append(call);
        }
    }
    for (const auto &[call, callers] : m_callers) {
        if (!open.contains(call))
            settle(call);
    }
    while (!ending.empty()) {
        const ElementId element = ending.back();
        ending.pop_back();
        for (const Call &call : pressing.value(element)) {
            if (--open[call] == 0)
                settle(call);
        }
    }
    for (const auto &[call, count] : open) {
        for (const Caller &caller : count > 0 ? m_callers.at(call) : QList<Caller>())
            problems.error(
                caller.action,
                CheckText::tr("This call does not come to an end: it leads into a circle of calls"));
    }
}

} // namespace paravue
