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
    m_values.reserve(qsizetype(text.marks().size()));
    QString section = DefaultSection.toString() + u'/';
    for (const IniText::Mark &mark : text.marks()) {
        const QString name = QString::fromUtf8(text.name(mark));
        if (mark.isSection)
            section = name + u'/';
        else
            m_values.insert(section + name, QString::fromUtf8(text.value(mark)));
    }
}

std::optional<QString> FileValues::value(const QString &entry) const
{
    const auto found = m_values.constFind(entry);
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
}

ConfigurationValues valuesOf(const FileContents &files)
{
    ConfigurationValues values;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file.key() != QLatin1StringView("interface"))
            values.insert(file.key(), FileValues(*file));
    }
    return values;
}

QList<SnapshotDifference> differences(const ConfigurationValues &before, const ConfigurationValues &after,
                                      const QStringList &leftOut)
{
    const QSet<QString> ignored(leftOut.begin(), leftOut.end());
    QList<SnapshotDifference> found;
    for (auto file = before.cbegin(); file != before.cend(); ++file) {
        const auto other = after.constFind(file.key());
        if (other == after.cend() || ignored.contains(file.key()))
            continue;
        const auto note = [&](const QString &entry, const std::optional<QString> &old,
                              const std::optional<QString> &now) {
            SnapshotDifference difference{file.key() + u'/' + entry, old, now};
            if (!ignored.contains(difference.path) &&
                ChangeList::reachesTheRecorder(ConfigAddress(difference.path)))
                found << std::move(difference);
        };
        for (auto value = file->all().cbegin(); value != file->all().cend(); ++value) {
            const auto now = other->all().constFind(value.key());
            if (now == other->all().cend())
                note(value.key(), *value, {});
            else if (*now != *value)
                note(value.key(), *value, *now);
        }
        for (auto value = other->all().cbegin(); value != other->all().cend(); ++value) {
            if (!file->all().contains(value.key()))
                note(value.key(), {}, *value);
        }
    }
    std::sort(found.begin(), found.end(),
              [](const SnapshotDifference &a, const SnapshotDifference &b) { return a.path < b.path; });
    return found;
}

QList<SnapshotDifference> differences(const Snapshot &before, const Snapshot &after)
{
    FileContents old = before.currentFiles();
    FileContents now = after.currentFiles();
    old.removeIf([&now](auto file) { return now.value(file.key()) == *file; }); // mostly all but one
    now.removeIf([&old](auto file) { return !old.contains(file.key()); });
    return differences(valuesOf(old), valuesOf(now), before.info.leftOut + after.info.leftOut);
}

} // namespace paravue
