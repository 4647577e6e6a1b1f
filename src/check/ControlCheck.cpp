#include "check/ControlCheck.h"

#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "store/TextPattern.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"

namespace paravue
{
namespace
{

QList<QDomElement> children(const QDomElement &element, const QString &tag)
{
    QList<QDomElement> found;
    for (QDomElement child = element.firstChildElement(tag); !child.isNull();
         child = child.nextSiblingElement(tag))
        found.append(child);
    return found;
}

const QString keyTag = QStringLiteral("key");

void checkAssignment(const QDomElement &key, AddressCheck &addresses)
{
    // An entry without an assignment writes nothing.
    if (const QString text = addressText(key); !text.isEmpty())
        addresses.assignment(key, text);
}

/// A list of choices: the n-th text goes with the key inside it, or with the n-th key beside the texts.
void checkChoices(const QDomElement &element, AddressCheck &addresses, ProblemList &problems)
{
    const QList<QDomElement> texts = children(element, QStringLiteral("text"));
    const QList<QDomElement> keys = children(element, keyTag);
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const QDomElement inner = texts.at(i).firstChildElement(keyTag);
        if (!inner.isNull())
            checkAssignment(inner, addresses);
        if (const QDomElement second = inner.nextSiblingElement(keyTag); !second.isNull())
            problems.warning(second, CheckText::tr("This key is not used: an entry has one"));
        if (inner.isNull() && i >= keys.size())
            problems.warning(texts.at(i),
                             CheckText::tr("This entry has no key, so choosing it writes nothing"));
        if (!inner.isNull() && i < keys.size() && !keys.at(i).text().isEmpty())
            problems.warning(keys.at(i),
                             CheckText::tr("This key is not used: the entry has one inside its text"));
    }
    for (qsizetype i = 0; i < keys.size(); ++i) {
        checkAssignment(keys.at(i), addresses);
        if (i >= texts.size())
            problems.warning(keys.at(i), CheckText::tr("There is no entry for this key"));
    }
    const QList<QDomElement> sets = children(element, QStringLiteral("keyset"));
    for (qsizetype i = 0; i < sets.size(); ++i) {
        if (i >= texts.size())
            problems.warning(sets.at(i), CheckText::tr("There is no entry for this keyset"));
        for (const QString &assignment : sets.at(i).text().split(u',')) {
            if (const QString trimmed = assignment.trimmed(); !trimmed.isEmpty())
                addresses.assignment(sets.at(i), trimmed);
        }
    }
}

/// The columns of a list whose rows are counted: each has an address and a caption.
void checkColumns(const QDomElement &element, const KeyRule &rule, AddressCheck &addresses,
                  ProblemList &problems)
{
    const QList<QDomElement> captions = children(element, rule.captionTag);
    const QList<QDomElement> sources = children(element, rule.tag);
    const QDomElement count = element.firstChildElement(rule.countTag);
    for (qsizetype i = 0; i < sources.size(); ++i) {
        addresses.rows(sources.at(i), addressText(sources.at(i)), addressText(count));
        if (i >= captions.size())
            problems.warning(sources.at(i), CheckText::tr("There is no column for this source"));
    }
    if (!count.isNull())
        addresses.value(count, addressText(count));
    else if (!sources.isEmpty())
        problems.warning(element, CheckText::tr("Without a row_count the list shows nothing of its sources"));
}

void checkKey(const QDomElement &key, const KeyRule &rule, bool isFirst, AddressCheck &addresses)
{
    const QString address = addressText(key);
    if (rule.form == KeyRule::Group)
        addresses.group(key, address, rule.count);
    else if (rule.form != KeyRule::Rows || !isFirst)
        addresses.value(key, address);
    else if (address.count(u'/') == 1)
        addresses.group(key, address);
    else
        addresses.rows(key, address);
}

void checkKeys(const QDomElement &element, const KeyRule &rule, AddressCheck &addresses,
               ProblemList &problems)
{
    const QList<QDomElement> keys = children(element, rule.tag);
    for (qsizetype i = 0; i < keys.size(); ++i) {
        // Other words than "key" may be tags of actions too.
        if (rule.tag == keyTag || !addressText(keys.at(i)).isEmpty())
            checkKey(keys.at(i), rule, i == 0, addresses);
        if (rule.keyPerRow > 0 && i > 0 && (keys.size() < rule.keyPerRow || i >= rule.keyPerRow))
            problems.warning(keys.at(i), CheckText::tr("This key is not used: a week has one or seven"));
    }
    if (rule.form == KeyRule::Group && keys.isEmpty())
        problems.warning(element, CheckText::tr("Without a key the list shows nothing"));
}

void checkPatterns(const QDomElement &element, const ControlTraits &traits, ProblemList &problems)
{
    for (const AttributeRule &rule : traits.attributes) {
        const QString pattern =
            rule.kind == AttributeRule::Pattern ? element.attribute(rule.name) : QString();
        const QString fault = pattern.isEmpty() ? QString() : TextPattern::fault(pattern);
        if (!fault.isEmpty())
            problems.error(element,
                           CheckText::tr("The regular expression \"%1\" is invalid: %2").arg(pattern, fault));
    }
}

void checkCharacters(const QDomElement &element, const ControlTraits &traits, ProblemList &problems)
{
    for (const ElementRule &child : traits.children) {
        for (const AttributeRule &rule : child.attributes) {
            if (rule.kind != AttributeRule::Character)
                continue;
            for (const QDomElement &owner : children(element, child.tag)) {
                const QString value = owner.attribute(rule.name);
                if (value.toStdU32String().size() != 1)
                    problems.error(owner, CheckText::tr("value=\"%1\" is not one character, so nothing can "
                                                        "be planned with this kind")
                                              .arg(value));
            }
        }
    }
}

void checkRange(const QDomElement &element, const ControlTraits &traits, ProblemList &problems)
{
    bool hasMinimum = false;
    bool hasMaximum = false;
    const int minimum = element.attribute(QStringLiteral("minimum")).toInt(&hasMinimum);
    const int maximum = element.attribute(QStringLiteral("maximum")).toInt(&hasMaximum);
    if (hasMinimum && hasMaximum && minimum > maximum)
        problems.warning(element, CheckText::tr("minimum is greater than maximum"));
    if (!traits.range)
        return;
    const auto [least, most] = traits.range->rangeOf(element);
    if (least > most)
        problems.warning(element, CheckText::tr("minvalue is greater than maxvalue"));
}

} // namespace

void checkControl(const DescribedParts::Control &control, AddressCheck &addresses, ProblemList &problems)
{
    const QDomElement &element = control.element;
    const ControlTraits &traits = control.adapter->traits();
    bool hasChoices = false;
    for (const KeyRule &rule : traits.keys) {
        hasChoices |= rule.form == KeyRule::Assignment;
        if (rule.form == KeyRule::Assignment)
            checkChoices(element, addresses, problems);
        else if (!rule.countTag.isEmpty())
            checkColumns(element, rule, addresses, problems);
        else
            checkKeys(element, rule, addresses, problems);
    }
    if (!hasChoices) {
        for (const QDomElement &set : children(element, QStringLiteral("keyset")))
            problems.warning(set, CheckText::tr("Only a list of choices has keysets"));
    }
    checkCharacters(element, traits, problems);
    checkPatterns(element, traits, problems);
    checkRange(element, traits, problems);
}

} // namespace paravue
