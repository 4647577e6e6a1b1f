#include "changes/FileValues.h"

#include "store/IniGrammar.h"
#include "store/IniText.h"

#include <QLoggingCategory>

#include <algorithm>

namespace paravue
{

namespace
{

Q_LOGGING_CATEGORY(changesLog, "paravue.changes")

} // namespace

FileValues::FileValues(const QByteArray &content)
{
    IniText text;
    text.append(content);
    if (!text.hasKeepableKeys()) {
        qCWarning(changesLog) << "the names of a configuration file are too long";
        return;
    }
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

bool isReadBack(const QString &entry, const QString &value)
{
    const qsizetype slash = entry.indexOf(u'/');
    const QString lines =
        iniSectionLine(entry.left(slash)) + iniKeyLine(entry.mid(slash + 1), value, EmptyValue::IsKey);
    return FileValues(lines.toUtf8()).all() == QHash<QString, QString>{{entry, value}};
}

QList<ValueDifference> differences(const QString &name, const FileValues &before, const FileValues &after)
{
    const QHash<QString, QString> &old = before.all();
    const QHash<QString, QString> &present = after.all();
    QList<ValueDifference> found;
    for (auto value = old.cbegin(); value != old.cend(); ++value) {
        const auto now = present.constFind(value.key());
        if (now == present.cend())
            found.append({name + u'/' + value.key(), *value, {}});
        else if (*now != *value)
            found.append({name + u'/' + value.key(), *value, *now});
    }
    for (auto value = present.cbegin(); value != present.cend(); ++value) {
        if (!old.contains(value.key()))
            found.append({name + u'/' + value.key(), {}, *value});
    }
    std::sort(found.begin(), found.end(),
              [](const ValueDifference &a, const ValueDifference &b) { return a.path < b.path; });
    return found;
}

} // namespace paravue
