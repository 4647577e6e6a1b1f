#include "check/WordCheck.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"
#include "ui/tasks/TimeTasks.h"
#include "ui/types/ControlTypes.h"

#include <QHash>
#include <QMap>
#include <QStringList>

namespace paravue
{
namespace
{

using AttributeRules = QMap<QString, AttributeRule>; // by name

/// The attribute rules of all elements, by tag. Items have the attributes of all their types: a wrong word is
/// reported even where its type ignores it.
class RuleBook
{
public:
    RuleBook()
    {
        for (const ElementRule &rule : pageRules())
            add(rule);
        add(TimeTasks::rule());
        forEachControlType([this](const QString &, const ControlAdapter &adapter) {
            add({QStringLiteral("item"), adapter.traits().attributes});
            for (const ElementRule &child : adapter.traits().children)
                add(child);
        });
    }

    AttributeRules of(const QString &tag) const { return m_rules.value(tag); }

private:
    void add(const ElementRule &element)
    {
        for (const AttributeRule &rule : element.attributes)
            m_rules[element.tag].insert(rule.name, rule);
    }

    QHash<QString, AttributeRules> m_rules;
};

bool isNumber(const QString &text)
{
    bool isNumber = false;
    text.toInt(&isNumber);
    return isNumber;
}

void checkAttribute(const QDomElement &element, const AttributeRule &rule, ProblemList &problems)
{
    if (!element.hasAttribute(rule.name))
        return;
    const QString value = element.attribute(rule.name);
    if (rule.kind == AttributeRule::Number && !isNumber(value))
        problems.warning(element,
                         CheckText::tr("%1=\"%2\" is no number and counts as 0").arg(rule.name, value));
    else if (rule.kind == AttributeRule::Word && !rule.words.contains(value))
        problems.warning(element, CheckText::tr("Unknown word in %1=\"%2\"; known are %3")
                                      .arg(rule.name, value, rule.words.join(QStringLiteral(", "))));
}

void checkElementText(const QDomElement &element, ProblemList &problems)
{
    const QString tag = element.tagName();
    const QString parent = element.parentNode().toElement().tagName();
    const QString text = element.text();
    const bool isSize = parent == QLatin1String("window") &&
                        (tag == QLatin1String("width") || tag == QLatin1String("height"));
    if ((isSize || tag == QLatin1String("stretch") || tag == QLatin1String("selection")) && !isNumber(text))
        problems.warning(element, CheckText::tr("\"%1\" is no number and counts as 0").arg(text));
    static const QStringList positions{"North", "South", "West", "East"};
    if (tag == QLatin1String("tabposition") && !positions.contains(text))
        problems.warning(element, CheckText::tr("Unknown word \"%1\"; known are %2")
                                      .arg(text, positions.join(QStringLiteral(", "))));
}

} // namespace

void checkWords(const QDomElement &element, ProblemList &problems)
{
    static const RuleBook rules;
    const QString tag = element.tagName();
    if (isDecoration(tag))
        problems.error(element, CheckText::tr("The window uses the tag \"%1\" itself").arg(tag));
    for (const AttributeRule &rule : rules.of(tag))
        checkAttribute(element, rule, problems);
    checkElementText(element, problems);
}

} // namespace paravue
