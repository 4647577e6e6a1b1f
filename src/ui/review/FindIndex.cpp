#include "ui/review/FindIndex.h"

#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"
#include "ui/accessibility/ControlName.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/review/ChangePlaces.h"
#include "ui/review/DescribedItems.h"
#include "ui/review/FieldProblems.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QStringList>

#include <algorithm>

namespace paravue
{

namespace
{

QStringList choicesOf(const QWidget &widget)
{
    QStringList choices;
    if (const auto *list = qobject_cast<const QComboBox *>(&widget)) {
        for (int i = 0; i < list->count(); ++i)
            choices << list->itemText(i);
    }
    return choices;
}

} // namespace

FindIndex::FindIndex(ControlContext &context, const DescribedItems &described, const ChangeList &changes,
                     const FieldProblems &problems, const QWidget *dialog)
    : m_context(context), m_described(described), m_changes(changes), m_problems(problems)
{
    ControlTable &table = context.description().table();
    std::vector<const DescribedItem *> unbuilt;
    for (const DescribedItem &item : described.items()) {
        const Control *control = table.of(item.element);
        if (control && control->widget && (!dialog || dialog->isAncestorOf(control->widget)))
            addControl(*control, item);
        else if (item.dialog >= 0 && !dialog)
            unbuilt.push_back(&item);
    }
    const QSignalBlocker silent(context.store()); // about files that are fetched when a dialog opens
    for (const DescribedItem *item : unbuilt)
        addDescribed(*item);
}

void FindIndex::addControl(const Control &control, const DescribedItem &item)
{
    // A label without a value is the caption of something else.
    if (control.adapter->traits().changes.isEmpty() && control.watched.isEmpty())
        return;
    const bool isLabel = qobject_cast<const QLabel *>(control.widget);
    if (isLabel && hasSecret(control.watched))
        return;
    Entry entry;
    entry.control = control.number;
    const QString name = controlName(*control.widget);
    entry.caption = item.caption;
    // The name of a label is its text, here a value: the head of its column says more.
    if (entry.caption.isEmpty() && (!isLabel || item.group.isEmpty()))
        entry.caption = name;
    entry.place = item.place(m_described.dialogs());
    entry.group = item.group;
    entry.hasProblem = !m_problems.problemOf(control.number).isEmpty();
    add(std::move(entry), choicesOf(*control.widget) + QStringList{name, plainToolTip(*control.widget)},
        control.watched, ChangePlaces::isSecretField(control));
}

/// A text with a secret value shows it to those who open its page, but not here.
bool FindIndex::hasSecret(const QStringList &paths) const
{
    return std::any_of(paths.begin(), paths.end(),
                       [this](const QString &path) { return m_changes.isSecret(path); });
}

void FindIndex::addDescribed(const DescribedItem &item)
{
    QStringList paths;
    for (const DescribedAddress &address : describedAddresses(item.element, *item.adapter))
        paths << (address.path().isEmpty() ? address.text : address.path());
    const QDomElement text = item.element.firstChildElement(QStringLiteral("text"));
    QStringList shown;
    for (const QString &address : m_context.description().texts().resolve(ownText(text)).addresses)
        shown << OrbSetup::path(address);
    if (hasSecret(shown))
        return;
    paths << shown;
    if (item.adapter->traits().changes.isEmpty() && paths.isEmpty())
        return;
    paths.removeDuplicates();
    Entry entry;
    entry.element = item.element;
    entry.dialog = item.dialog;
    entry.caption = item.caption;
    entry.place = item.place(m_described.dialogs());
    entry.group = item.group;
    QStringList texts;
    for (const QString &tag : {QStringLiteral("text"), QStringLiteral("tooltip")}) {
        for (QDomElement child = item.element.firstChildElement(tag); !child.isNull();
             child = child.nextSiblingElement(tag))
            texts << plainText(m_context.text(ownText(child)));
    }
    add(std::move(entry), texts, paths, isMarkedSecret(item.element));
}

void FindIndex::add(Entry entry, QStringList texts, const QStringList &paths, bool isSecret)
{
    OrbSetup &store = m_context.store();
    for (const QString &path : paths) {
        texts << path;
        entry.isChanged = entry.isChanged || m_changes.find(path);
        const ConfigAddress address(path);
        if (!address.hasKey() || isSecret || m_changes.isSecret(path) ||
            !store.fileExists(address.file().toString()))
            continue;
        const QString value = store.value(path);
        texts << value;
        if (entry.value.isEmpty())
            entry.value = value.simplified();
    }
    entry.address = paths.value(0);
    if (entry.caption.isEmpty())
        entry.caption = entry.group; // the head of its column
    entry.text = (QStringList{entry.caption, entry.place, entry.group} + texts).join(u'\n').toLower();
    m_entries.push_back(std::move(entry));
}

QList<const FindIndex::Entry *> FindIndex::find(const QString &query, Filters filters) const
{
    const QStringList words = query.toLower().split(u' ', Qt::SkipEmptyParts);
    QList<const Entry *> found;
    for (const Entry &entry : m_entries) {
        const bool passes = (!filters.testFlag(ChangedOnly) || entry.isChanged) &&
                            (!filters.testFlag(WithProblems) || entry.hasProblem);
        if (passes && std::all_of(words.begin(), words.end(),
                                  [&entry](const QString &word) { return entry.text.contains(word); }))
            found << &entry;
    }
    return found;
}

} // namespace paravue
