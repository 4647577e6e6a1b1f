#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace paravue
{

/// A value that two copies of a configuration file do not agree on. A key that is missing counts as empty, as
/// recorders drop keys without a value.
struct ValueDifference {
    QString path; ///< "file/section/key"
    QString before;
    QString after;

    bool operator==(const ValueDifference &other) const = default;
};

/// The values that differ between two copies of the file \a name, in the order of their paths.
QList<ValueDifference> differences(const QString &name, const QByteArray &before, const QByteArray &after);

} // namespace paravue
