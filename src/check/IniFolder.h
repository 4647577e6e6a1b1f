#pragma once

#include "changes/FileValues.h"

#include <QSet>
#include <QString>

#include <optional>
#include <unordered_map>

namespace paravue
{

/// The configuration files of a folder, each read when it is first asked for. Nothing is ever written.
class IniFolder
{
public:
    /// Without a \a folder there are no files.
    explicit IniFolder(const QString &folder);

    bool isGiven() const { return !m_folder.isEmpty(); }
    bool holds(const QString &file) const { return m_names.contains(file); }
    /// The value of "section/key" in \a file, when there is one.
    std::optional<QString> value(const QString &file, const QString &entry);

private:
    const FileValues &values(const QString &file);

    QString m_folder;
    QSet<QString> m_names;
    std::unordered_map<QString, FileValues> m_files;
};

} // namespace paravue
