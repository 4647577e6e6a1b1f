#include "ui/review/FindIndex.h"

#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"
#include "ui/accessibility/ControlName.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlTable.h"
#include "ui/review/ChangePlaces.h"
#include "ui/review/FieldProblems.h"

#include <QComboBox>
#include <QStringList>

#include <algorithm>

namespace paravue
{

namespace
{

/// A list may show thousands of values, which nobody looks for here.
constexpr qsizetype MostAddresses = 64;

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

FindIndex::FindIndex(ControlTable &controls, OrbSetup &store, const ChangeList &changes,
                     const FieldProblems &problems)
{
    for (const int number : controls.numbersSince(0)) {
        const Control *control = controls.find(number);
        // A label without a value is the caption of something else.
        if (!control || !control->widget || !control->adapter ||
            (control->adapter->traits().changes.isEmpty() && control->watched.isEmpty()))
            continue;
        Entry entry;
        entry.control = number;
        entry.caption = ChangePlaces::caption(*control);
        QStringList texts{entry.caption, plainToolTip(*control->widget)};
        texts += choicesOf(*control->widget);
        for (const QString &path : control->watched.first(qMin(control->watched.size(), MostAddresses))) {
            texts << path;
            entry.isChanged = entry.isChanged || changes.find(path);
            const bool isKnown = store.fileExists(ConfigAddress(path).file().toString());
            if (!isKnown || !ConfigAddress(path).hasKey() || changes.isSecret(path) ||
                ChangePlaces::isSecretField(*control))
                continue;
            const QString value = store.value(path);
            texts << value;
            if (entry.value.isEmpty())
                entry.value = value.simplified();
        }
        entry.address = control->watched.value(0);
        entry.hasProblem = !problems.problemOf(number).isEmpty();
        entry.text = texts.join(u'\n').toLower();
        m_entries.push_back(std::move(entry));
    }
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
