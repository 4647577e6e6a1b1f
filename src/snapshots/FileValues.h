#pragma once

#include "snapshots/Snapshot.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace paravue
{

/// The values of one configuration file, read as a store reads them.
class FileValues
{
public:
    explicit FileValues(const QByteArray &content);

    /// Nothing without the key \a entry, "section/key".
    std::optional<QString> value(const QString &entry) const;
    /// By "section/key".
    const QHash<QString, QString> &all() const { return m_values; }

private:
    QHash<QString, QString> m_values;
};

/// A value that is not the same in two sets of files.
struct ValueDifference {
    QString path;                  ///< "file/section/key"
    std::optional<QString> before; ///< nothing where there is no such key
    std::optional<QString> after;
    bool operator==(const ValueDifference &other) const = default;
};

/// The differing values of all files that both have, in the order of their paths. The interface description
/// and the time of the recorder's clock do not count.
QList<ValueDifference> differences(const FileContents &before, const FileContents &after);
/// The same without what either snapshot has left out.
QList<ValueDifference> differences(const Snapshot &before, const Snapshot &after);

} // namespace paravue
