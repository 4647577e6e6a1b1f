#include "check/WordCheck.h"

#include "check/CheckText.h"
#include "check/DescribedParts.h"
#include "check/ElementNames.h"
#include "check/ProblemList.h"
#include "check/Vocabulary.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"

#include <QSize>
#include <QStringList>

#include <algorithm>

namespace paravue
{
namespace
{

/// The screen that most users have at least; the window's pages scroll on smaller ones.
constexpr QSize UsualScreen(1920, 1080);

const QString widthName = QStringLiteral("width");
const QString heightName = QStringLiteral("height");

bool isNumber(const QString &text)
{
    bool isNumber = false;
    text.toInt(&isNumber);
    return isNumber;
}

bool hasChild(const QDomElement &element, const QString &tag)
{
    return !element.firstChildElement(tag).isNull();
}

} // namespace

WordCheck::WordCheck(const QDomElement &root, const DescribedParts &parts, ProblemList &problems)
    : m_parts(parts), m_problems(problems)
{
    collectTargets(root);
}

void WordCheck::collectTargets(const QDomElement &element)
{
    static const QSet<QString> namers{"action", "timetask", "target", "ptz"};
    if (namers.contains(element.tagName()))
        m_targets.insert(ownText(element).trimmed());
    // Dialogs and lists of values are named by parameters.
    for (const QString &field : element.attribute(QStringLiteral("param")).split(u','))
        m_targets.insert(field.trimmed());
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        collectTargets(child);
}

void WordCheck::check(const QDomElement &element)
{
    checkTag(element);
    if (const ElementRule *rule = Vocabulary::instance().of(element))
        attributes(element, rule->attributes);
    else if (m_parts.of(element).kind == ActionTarget::Kind::Dialog)
        attributes(element, controlAttributes());
    else
        tag(element);
    text(element);
}

void WordCheck::checkTag(const QDomElement &element)
{
    if (isDecoration(element.tagName()))
        m_problems.error(element,
                         CheckText::tr("The window uses the tag \"%1\" itself").arg(element.tagName()));
}

void WordCheck::attributes(const QDomElement &element, const QList<AttributeRule> &rules)
{
    QStringList names;
    for (const AttributeRule &rule : rules) {
        names.append(rule.name);
        if (element.hasAttribute(rule.name))
            checkValue(element, rule);
    }
    const QDomNamedNodeMap written = element.attributes();
    for (int i = 0; i < written.size(); ++i) {
        const QString name = written.item(i).nodeName();
        if (names.contains(name) || name.startsWith(QLatin1String("xml")))
            continue;
        const QString intended = nearWord(name, names);
        m_problems.warning(element,
                           intended.isEmpty()
                               ? CheckText::tr("The attribute \"%1\" has no meaning here").arg(name)
                               : CheckText::tr("The attribute \"%1\" has no meaning here; \"%2\" would "
                                               "have one")
                                     .arg(name, intended));
    }
}

void WordCheck::checkValue(const QDomElement &element, const AttributeRule &rule)
{
    const QString value = element.attribute(rule.name);
    if (rule.kind == AttributeRule::Number && !isNumber(value))
        m_problems.warning(element,
                           CheckText::tr("%1=\"%2\" is no number and counts as 0").arg(rule.name, value));
    else if (rule.kind == AttributeRule::Limit && !isNumber(value))
        m_problems.warning(element,
                           CheckText::tr("%1=\"%2\" is no number and limits nothing").arg(rule.name, value));
    else if (rule.kind == AttributeRule::Word && !rule.words.contains(value))
        m_problems.warning(element, CheckText::tr("Unknown word in %1=\"%2\"; known are %3")
                                        .arg(rule.name, value, rule.words.join(QStringLiteral(", "))));
    size(element, rule.name, value);
}

/// An element without a meaning of its own is a tag, unless nothing refers to it and it nearly is a word.
void WordCheck::tag(const QDomElement &element)
{
    const QString tag = element.tagName();
    if (tag == itemTag || m_targets.contains(tag) || Vocabulary::instance().knows(tag))
        return;
    // What contains dialogs may have any name.
    if (hasChild(element, itemTag) || hasChild(element, QStringLiteral("key")))
        return;
    auto nearby = m_nearby.constFind(tag);
    if (nearby == m_nearby.constEnd())
        nearby = m_nearby.insert(tag, Vocabulary::instance().nearElement(tag));
    if (!nearby->isEmpty())
        m_problems.warning(
            element,
            CheckText::tr("Nothing refers to the tag \"%1\"; is it meant as \"%2\"?").arg(tag, *nearby));
}

void WordCheck::text(const QDomElement &element)
{
    const QString tag = element.tagName();
    const QString parent = element.parentNode().toElement().tagName();
    const QString text = element.text();
    const bool isSize = parent == QLatin1String("window") && (tag == widthName || tag == heightName);
    if ((isSize || tag == QLatin1String("stretch") || tag == QLatin1String("selection")) && !isNumber(text))
        m_problems.warning(element, CheckText::tr("\"%1\" is no number and counts as 0").arg(text));
    if (isSize)
        size(element, tag, text);
    static const QStringList positions{"North", "South", "West", "East"};
    if (tag == QLatin1String("tabposition") && !positions.contains(text))
        m_problems.warning(element, CheckText::tr("Unknown word \"%1\"; known are %2")
                                        .arg(text, positions.join(QStringLiteral(", "))));
}

void WordCheck::size(const QDomElement &element, const QString &name, const QString &value)
{
    const int most = name == widthName ? UsualScreen.width() : UsualScreen.height();
    if ((name == widthName || name == heightName) && value.toInt() > most)
        m_problems.warning(element, CheckText::tr("A %1 of %2 pixels does not fit a screen of %3 × %4")
                                        .arg(name, value.trimmed())
                                        .arg(UsualScreen.width())
                                        .arg(UsualScreen.height()));
}

} // namespace paravue
