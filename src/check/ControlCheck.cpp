#include "check/ControlCheck.h"

#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "controls/WeekPlan.h"
#include "store/TextPattern.h"
#include "ui/binding/ControlType.h"
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
    // An entry without an assignment is one that writes nothing.
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

void checkList(const QDomElement &element, AddressCheck &addresses, ProblemList &problems)
{
    const QList<QDomElement> columns = children(element, QStringLiteral("column"));
    const QList<QDomElement> sources = children(element, QStringLiteral("column_source"));
    const QDomElement count = element.firstChildElement(QStringLiteral("row_count"));
    for (qsizetype i = 0; i < sources.size(); ++i) {
        addresses.rows(sources.at(i), addressText(sources.at(i)), addressText(count));
        if (i >= columns.size())
            problems.warning(sources.at(i), CheckText::tr("There is no column for this source"));
    }
    if (!count.isNull())
        addresses.value(count, addressText(count));
    else if (!sources.isEmpty())
        problems.warning(element, CheckText::tr("Without a row_count the list shows nothing of its sources"));
}

/// Behind the key of a list of its own kind, where the number of its rows stands.
QString countOf(const QDomElement &element)
{
    const QString type = element.attribute(QStringLiteral("type"));
    if (type == QLatin1String("accesslist"))
        return QStringLiteral("/CNT");
    return type == QLatin1String("softlist") ? QStringLiteral("/PACKAGES") : QString();
}

void checkKeys(const QDomElement &element, KeyForm form, AddressCheck &addresses)
{
    const QList<QDomElement> keys = children(element, keyTag);
    for (const QDomElement &key : keys) {
        const QString address = addressText(key);
        if (form == KeyForm::Rows && key != keys.first())
            addresses.value(key, address);
        else if (form == KeyForm::Group)
            addresses.group(key, address, countOf(element));
        else if (form == KeyForm::Rows && address.count(u'/') == 1)
            addresses.group(key, address);
        else if (form == KeyForm::Rows)
            addresses.rows(key, address);
        else
            addresses.value(key, address);
    }
}

void checkValidator(const QDomElement &element, ProblemList &problems)
{
    const QString validator = element.attribute(QStringLiteral("validator"));
    const QString fault = validator.isEmpty() ? QString() : TextPattern::fault(validator);
    if (!fault.isEmpty())
        problems.error(element,
                       CheckText::tr("The regular expression \"%1\" is invalid: %2").arg(validator, fault));
}

void checkRange(const QDomElement &element, ProblemList &problems)
{
    const QString least = QStringLiteral("minvalue");
    const QString most = QStringLiteral("maxvalue");
    // The bar of a disk ends at 100 when it is not told otherwise.
    const bool endsByItself = element.attribute(QStringLiteral("type")) == QLatin1String("diskfitness") &&
                              !element.hasAttribute(most);
    if (!endsByItself && intAttribute(element, least) > intAttribute(element, most))
        problems.warning(element, CheckText::tr("minvalue is greater than maxvalue"));
}

void checkSchedule(const QDomElement &element, ProblemList &problems)
{
    for (const QDomElement &kind : children(element, QStringLiteral("kind"))) {
        const QString value = kind.attribute(QStringLiteral("value"));
        if (value.toStdU32String().size() != 1)
            problems.error(
                kind, CheckText::tr("value=\"%1\" is not one character, so nothing can be planned with this "
                                    "kind")
                          .arg(value));
    }
    const QList<QDomElement> keys = children(element, keyTag);
    for (qsizetype i = 1; i < keys.size(); ++i) {
        if (keys.size() < WeekPlan::Days || i >= WeekPlan::Days)
            problems.warning(keys.at(i), CheckText::tr("This key is not used: a week has one or seven"));
    }
}

} // namespace

void checkControl(const DescribedParts::Control &control, AddressCheck &addresses, ProblemList &problems)
{
    const QDomElement &element = control.element;
    if (control.type->keyForm() == KeyForm::Assignment) {
        checkChoices(element, addresses, problems);
    } else {
        checkKeys(element, control.type->keyForm(), addresses);
        if (control.type->keyForm() == KeyForm::Group && element.firstChildElement(keyTag).isNull())
            problems.warning(element, CheckText::tr("Without a key the list shows nothing"));
        for (const QDomElement &set : children(element, QStringLiteral("keyset")))
            problems.warning(set, CheckText::tr("Only a list of choices has keysets"));
    }
    const QString type = element.attribute(QStringLiteral("type"));
    if (type == QLatin1String("list"))
        checkList(element, addresses, problems);
    else if (type == QLatin1String("vornschedule"))
        checkSchedule(element, problems);
    checkValidator(element, problems);
    checkRange(element, problems);
}

} // namespace paravue
