#include "check/ActionCheck.h"

#include "check/CheckText.h"
#include "check/ElementNames.h"
#include "check/ProblemList.h"
#include "check/SlotParams.h"
#include "entry/cSetupWidget.h"
#include "ui/binding/CallableSlot.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/tasks/TimeTasks.h"

#include <algorithm>

namespace paravue
{
namespace
{

const QString stateName = QStringLiteral("state");
const QString paramName = QStringLiteral("param");

bool isCallable(const ActionTarget &target, const QString &slot, bool hasParam)
{
    return setsCaption(*target.widgetClass, slot, hasParam) ||
           callableSlot(*target.widgetClass, slot, hasParam).isValid();
}

QString missingSlot(const ActionTarget &target, const QString &slot, bool hasParam)
{
    if (!isCallable(target, slot, !hasParam))
        return CheckText::tr("%1 has no slot \"%2\"").arg(target.name, slot);
    return hasParam ? CheckText::tr("The slot \"%1\" takes no param").arg(slot)
                    : CheckText::tr("The slot \"%1\" needs a param").arg(slot);
}

} // namespace

ActionCheck::ActionCheck(const InterfaceDocument &document, const DescribedParts &parts, SlotParams &params,
                         ProblemList &problems)
    : m_document(document), m_parts(parts), m_params(params), m_problems(problems)
{
}

void ActionCheck::action(const QDomElement &action)
{
    const QString type = action.attribute(typeName);
    const bool isCall = type == QLatin1String("call");
    if (!isCall && type != QLatin1String("enable") && type != QLatin1String("disable")) {
        m_problems.error(action, CheckText::tr("Unknown action type \"%1\"").arg(type));
        return;
    }
    whetherItRuns(action, isCall);
    if (isCall) {
        m_cycles.add(action);
        call(action);
    } else {
        const QList<ActionTarget> found = targets(action, action.text().trimmed());
        for (const ActionTarget &target : found) {
            if (target.kind != ActionTarget::Kind::Control)
                m_problems.error(action, CheckText::tr("%1 is never enabled or disabled").arg(target.name));
        }
    }
}

void ActionCheck::whetherItRuns(const QDomElement &action, bool isCall)
{
    const QDomElement owner = action.parentNode().toElement();
    const ActionTarget part = m_parts.of(owner);
    const bool isButton =
        owner.tagName() == QLatin1String("buttonOK") && owner.parentNode() == m_document.root();
    if (isButton || part.kind == ActionTarget::Kind::Dialog) {
        if (!isCall)
            m_problems.warning(action, CheckText::tr("Only calls run here"));
        return;
    }
    if (!part.adapter) {
        m_problems.warning(action, CheckText::tr("Nothing runs this action: it stands in no control"));
        return;
    }
    const bool asksForState = action.hasAttribute(stateName);
    const QStringList states = isCall ? part.adapter->callStates(owner) : part.adapter->actionStates(owner);
    const QString noStates = CheckText::tr("%1 has no states, so this action never runs").arg(part.name);
    if (asksForState && states.isEmpty() && isCall)
        m_problems.error(action, noStates);
    else if (asksForState && states.isEmpty())
        m_problems.warning(action, noStates);
    else if (asksForState && !states.contains(action.attribute(stateName)))
        m_problems.warning(action, CheckText::tr("Unknown state \"%1\"; known are %2")
                                       .arg(action.attribute(stateName), states.join(QStringLiteral(", "))));
    else if (!asksForState && !isCall)
        m_problems.warning(action, CheckText::tr("Without a state this action never runs"));
    else if (!asksForState && !part.adapter->traits().runsCalls)
        m_problems.warning(action,
                           CheckText::tr("%1 runs no calls, so this action never runs").arg(part.name));
}

void ActionCheck::call(const QDomElement &action)
{
    const QString slot = action.attribute(QStringLiteral("slot"), QStringLiteral("setText"));
    const bool hasParam = action.hasAttribute(paramName);
    for (const ActionTarget &target : targets(action, action.text().trimmed())) {
        if (!isCallable(target, slot, hasParam))
            m_problems.error(action, missingSlot(target, slot, hasParam));
        else if (target.kind == ActionTarget::Kind::Window && hasParam)
            m_params.check(action, slot, action.attribute(paramName));
        else if (target.widgetClass == &cSetupWidget::staticMetaObject && slot == QLatin1String("callSetup"))
            m_params.checkFunction(action, action.attribute(paramName));
    }
}

QList<ActionTarget> ActionCheck::targets(const QDomElement &at, const QString &tag)
{
    // A tag may mark many controls, and many actions may name it.
    auto found = m_targets.find(tag);
    if (found == m_targets.end()) {
        found = m_targets.insert(tag, {});
        for (const QDomElement &element : m_document.elements(tag)) {
            const ActionTarget target = m_parts.of(element.parentNode().toElement());
            const bool isKnown = std::any_of(found->cbegin(), found->cend(), [&](const ActionTarget &other) {
                return other.widgetClass == target.widgetClass;
            });
            if (target.widgetClass && !isKnown)
                found->append(target);
        }
    }
    if (found->isEmpty())
        m_problems.error(at, m_document.first(tag).isNull()
                                 ? CheckText::tr("There is no tag \"%1\"").arg(tag)
                                 : CheckText::tr("The tag \"%1\" stands in no control").arg(tag));
    return *found;
}

void ActionCheck::timeTask(const QDomElement &task)
{
    const ActionTarget::Kind owner = m_parts.of(task.parentNode().toElement()).kind;
    if (owner != ActionTarget::Kind::Window && owner != ActionTarget::Kind::Dialog)
        m_problems.warning(
            task, CheckText::tr("Nothing runs this task: it stands neither in \"window\" nor in a dialog"));
    if (intAttribute(task, QStringLiteral("period")) < 0)
        m_problems.warning(task, CheckText::tr("With a negative period this task never runs"));
    const QString type = task.attribute(typeName);
    if (type == QLatin1String("call"))
        call(task);
    else if (TimeTasks::pictureKind(type))
        picture(task);
    else
        m_problems.error(task, CheckText::tr("Unknown time task \"%1\"").arg(type));
}

void ActionCheck::picture(const QDomElement &task)
{
    if (task.firstChildElement(QStringLiteral("url")).text().trimmed().isEmpty())
        m_problems.error(task, CheckText::tr("A task that fetches pictures needs a \"url\""));
    for (const ActionTarget &target :
         targets(task, task.firstChildElement(QStringLiteral("target")).text().trimmed())) {
        if (target.widgetClass->indexOfSlot("setPixmap(QPixmap)") < 0)
            m_problems.error(task, CheckText::tr("%1 shows no pictures").arg(target.name));
    }
    if (const QDomElement ptz = task.firstChildElement(QStringLiteral("ptz")); !ptz.isNull())
        turningCamera(task, ptz);
}

void ActionCheck::turningCamera(const QDomElement &task, const QDomElement &ptz)
{
    if (TimeTasks::pictureKind(task.attribute(typeName)) != PictureKind::Live)
        m_problems.warning(ptz, CheckText::tr("Only live video tells where a camera looks"));
    for (const ActionTarget &target : targets(ptz, ptz.text().trimmed())) {
        if (target.widgetClass->indexOfSlot("slot_Set_PTZ_pos(QString)") < 0)
            m_problems.error(ptz, CheckText::tr("%1 shows no position of a camera").arg(target.name));
    }
}

} // namespace paravue
