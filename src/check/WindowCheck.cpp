#include "check/WindowCheck.h"

#include "check/CheckText.h"
#include "check/DescribedParts.h"
#include "check/ElementNames.h"
#include "check/ProblemList.h"
#include "check/TextCheck.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/EnableTargets.h"
#include "ui/description/InterfaceDocument.h"

#include <QSet>

#include <algorithm>

namespace paravue
{
namespace
{

const QString actionTag = QStringLiteral("action");

void checkOk(const QDomElement &root, ProblemList &problems)
{
    const QDomElement button = root.firstChildElement(QStringLiteral("buttonOK"));
    for (QDomElement action = button.firstChildElement(actionTag); !action.isNull();
         action = action.nextSiblingElement(actionTag)) {
        if (action.attribute(typeName) == QLatin1String("call"))
            return;
    }
    const bool hasWindow = !root.firstChildElement(QStringLiteral("window")).isNull() ||
                           !root.firstChildElement(QStringLiteral("tabwidget")).isNull();
    if (!button.isNull())
        problems.warning(button,
                         CheckText::tr("OK does nothing: it neither saves nor closes without a call"));
    else if (hasWindow)
        problems.warning(root, CheckText::tr("OK does nothing: there is no \"buttonOK\" with a call"));
}

/// What actions can do to a control that begins disabled or hidden.
class Awakenings
{
public:
    explicit Awakenings(const InterfaceDocument &document) : m_enabled(document)
    {
        for (const QDomElement &action : document.elements(actionTag)) {
            if (action.attribute(QStringLiteral("slot")) == QLatin1String("show"))
                m_shown.insert(action.text().trimmed());
        }
    }

    bool isReachable(const QDomElement &control) const
    {
        return !m_enabled.leaveDisabled(control) &&
               (control.attribute(QStringLiteral("visible")) != QLatin1String("no") ||
                hasTagOf(control, m_shown));
    }

private:
    static bool hasTagOf(const QDomElement &control, const QSet<QString> &tags)
    {
        for (QDomElement child = control.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (tags.contains(child.tagName()))
                return true;
        }
        return false;
    }

    EnableTargets m_enabled;
    QSet<QString> m_shown;
};

/// The "name" of each tab. A tab without one is reported when there are others.
QList<QDomElement> tabNames(const QDomElement &container, ProblemList &problems)
{
    const QString tag = QStringLiteral("tab");
    QList<QDomElement> names;
    QList<QDomElement> nameless;
    for (QDomElement tab = container.firstChildElement(tag); !tab.isNull();
         tab = tab.nextSiblingElement(tag)) {
        const QDomElement name = tab.firstChildElement(QStringLiteral("name"));
        if (name.text().trimmed().isEmpty())
            nameless.append(tab);
        else
            names.append(name);
    }
    if (names.size() + nameless.size() > 1) {
        for (const QDomElement &tab : nameless)
            problems.warning(tab,
                             CheckText::tr("A tab without a name cannot be told from others by keyboard"));
    }
    return names;
}

} // namespace

void checkWindow(const InterfaceDocument &document, const DescribedParts &parts, TextCheck &texts,
                 ProblemList &problems)
{
    const QDomElement root = document.root();
    checkOk(root, problems);
    texts.tabs(tabNames(root.firstChildElement(QStringLiteral("tabwidget")), problems));
    const Awakenings awakenings(document);
    for (const DescribedParts::Control &control : parts.controls) {
        if (!control.adapter->traits().hasPages)
            continue;
        texts.tabs(tabNames(control.element, problems));
        if (!awakenings.isReachable(control.element))
            problems.warning(control.element,
                             CheckText::tr("Nobody can reach these tabs: nothing enables or shows "
                                           "the control"));
    }
}

} // namespace paravue
