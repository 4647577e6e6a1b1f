#pragma once

#include <QByteArray>
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
    FileValues() = default;
    /// There are none of a file that a store refuses to read, for names that are too long together.
    explicit FileValues(const QByteArray &content);

    /// Nothing without the key \a entry, "section/key".
    std::optional<QString> value(const QString &entry) const;
    void set(const QString &entry, const QString &value) { m_values.insert(entry, value); }
    /// By "section/key".
    const QHash<QString, QString> &all() const { return m_values; }

private:
    QHash<QString, QString> m_values;
};

/// Whether \a value at \a entry, "section/key", is read back as what it is once a file was written with it.
/// Nothing is escaped there: a value with a single quote for example makes its line no key line.
bool isReadBack(const QString &entry, const QString &value);

/// A value that two copies of a configuration file do not agree on.
struct ValueDifference {
    QString path;                  ///< "file/section/key"
    std::optional<QString> before; ///< nothing where there is no such key
    std::optional<QString> after;

    /// True when one copy has no such key and the other an empty value. Recorders drop keys without a value.
    bool isOnlyAKey() const { return before.value_or(QString()) == after.value_or(QString()); }
    /// False when the name of the key or of the section holds a "/". No address can name such a value, so it
    /// can be shown but not set.
    bool canBeSet() const { return path.count(u'/') == 2; }

    bool operator==(const ValueDifference &other) const = default;
};

/// The values that differ between two copies of the file \a name, in the order of their paths.
QList<ValueDifference> differences(const QString &name, const FileValues &before, const FileValues &after);

} // namespace paravue
