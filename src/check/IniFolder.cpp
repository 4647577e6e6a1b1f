#include "check/IniFolder.h"

#include "store/IniText.h"

#include <QDir>
#include <QFile>

namespace paravue
{

IniFolder::IniFolder(const QString &folder) : m_folder(folder)
{
    if (!isGiven())
        return;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    m_names = QSet<QString>(names.begin(), names.end());
}

std::optional<QString> IniFolder::value(const QString &file, const QString &entry)
{
    return values(file).value(entry);
}

const FileValues &IniFolder::values(const QString &name)
{
    const auto [entry, isNew] = m_files.try_emplace(name);
    QFile file(QDir(m_folder).filePath(name));
    if (isNew && holds(name) && file.open(QIODevice::ReadOnly) && file.size() <= IniText::SizeLimit)
        entry->second = FileValues(file.readAll());
    return entry->second;
}

} // namespace paravue
