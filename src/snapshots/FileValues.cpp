#include "snapshots/FileValues.h"

#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"
#include "store/IniGrammar.h"
#include "store/IniText.h"

#include <QSet>

#include <algorithm>

namespace paravue
{

FileValues::FileValues(const QByteArray &content)
{
    IniText text;
    text.append(content);
    QString section = DefaultSection.toString();
    for (const IniText::Mark &mark : text.marks()) {
        const QString name = QString::fromUtf8(text.name(mark));
        if (mark.isSection)
            section = name;
        else
            m_values.insert(section + u'/' + name, QString::fromUtf8(text.value(mark)));
    }
}

std::optional<QString> FileValues::value(const QString &entry) const
{
    const auto found = m_values.constFind(entry);
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
}

QList<ValueDifference> differences(const FileContents &before, const FileContents &after)
{
    QList<ValueDifference> found;
    for (auto file = before.cbegin(); file != before.cend(); ++file) {
        const auto other = after.constFind(file.key());
        if (file.key() == QLatin1StringView("interface") || other == after.cend() || *file == *other)
            continue;
        const FileValues old(*file);
        const FileValues now(*other);
        const auto note = [&](const QString &entry) {
            ValueDifference difference{file.key() + u'/' + entry, old.value(entry), now.value(entry)};
            if (difference.before != difference.after &&
                ChangeList::reachesTheRecorder(ConfigAddress(difference.path)))
                found << std::move(difference);
        };
        for (auto value = old.all().cbegin(); value != old.all().cend(); ++value)
            note(value.key());
        for (auto value = now.all().cbegin(); value != now.all().cend(); ++value) {
            if (!old.all().contains(value.key()))
                note(value.key());
        }
    }
    std::sort(found.begin(), found.end(),
              [](const ValueDifference &a, const ValueDifference &b) { return a.path < b.path; });
    return found;
}

QList<ValueDifference> differences(const Snapshot &before, const Snapshot &after)
{
    QSet<QString> leftOut(before.info.leftOut.begin(), before.info.leftOut.end());
    leftOut.unite({after.info.leftOut.begin(), after.info.leftOut.end()});
    QList<ValueDifference> found = differences(before.currentFiles(), after.currentFiles());
    found.removeIf([&leftOut](const ValueDifference &difference) {
        return leftOut.contains(difference.path) ||
               leftOut.contains(ConfigAddress(difference.path).file().toString());
    });
    return found;
}

} // namespace paravue
