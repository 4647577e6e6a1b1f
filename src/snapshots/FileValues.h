#pragma once

#include "snapshots/Snapshot.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>

namespace paravue
{

/// The values of one configuration file, read as a store reads them.
class FileValues
{
public:
    FileValues() = default;
    explicit FileValues(const QByteArray &content);

    /// Nothing without the key \a entry, "section/key".
    std::optional<QString> value(const QString &entry) const;
    void set(const QString &entry, const QString &value) { m_values.insert(entry, value); }
    /// By "section/key".
    const QHash<QString, QString> &all() const { return m_values; }

private:
    QHash<QString, QString> m_values;
};

/// The values of several files by their names.
using ConfigurationValues = QMap<QString, FileValues>;
/// Those of \a files that hold settings: the interface description does not.
ConfigurationValues valuesOf(const FileContents &files);

/// A value that is not the same in two configurations.
struct SnapshotDifference {
    QString path;                  ///< "file/section/key"
    std::optional<QString> before; ///< nothing where there is no such key
    std::optional<QString> after;
    bool operator==(const SnapshotDifference &other) const = default;
};

/// The differing values of all files that both have, in the order of their paths. The time of the recorder's
/// clock does not count, and neither does what \a leftOut names, as SnapshotInfo::leftOut.
QList<SnapshotDifference> differences(const ConfigurationValues &before, const ConfigurationValues &after,
                                      const QStringList &leftOut = {});
/// Those of two snapshots, without what either has left out.
QList<SnapshotDifference> differences(const Snapshot &before, const Snapshot &after);

} // namespace paravue
