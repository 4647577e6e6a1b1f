#include "check/IniFolder.h"

#include "store/IniGrammar.h"
#include "store/IniText.h"

#include <QDir>
#include <QFile>

namespace paravue
{
namespace
{

QHash<QString, QString> valuesOf(const QByteArray &content)
{
    IniText text;
    text.append(content);
    QHash<QString, QString> values;
    QString section = DefaultSection.toString();
    for (const IniText::Mark &mark : text.marks()) {
        const QString name = QString::fromUtf8(text.name(mark));
        if (mark.isSection)
            section = name;
        else
            values.insert(section + u'/' + name, QString::fromUtf8(text.value(mark)));
    }
    return values;
}

} // namespace

IniFolder::IniFolder(const QString &folder) : m_folder(folder)
{
    if (!isGiven())
        return;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    m_names = QSet<QString>(names.begin(), names.end());
}

std::optional<QString> IniFolder::value(const QString &file, const QString &entry)
{
    const Values &known = values(file);
    const auto found = known.constFind(entry);
    return found == known.constEnd() ? std::nullopt : std::optional(*found);
}

const IniFolder::Values &IniFolder::values(const QString &name)
{
    const auto [entry, isNew] = m_files.try_emplace(name);
    QFile file(QDir(m_folder).filePath(name));
    if (isNew && holds(name) && file.open(QIODevice::ReadOnly) && file.size() <= IniText::SizeLimit)
        entry->second = valuesOf(file.readAll());
    return entry->second;
}

} // namespace paravue
