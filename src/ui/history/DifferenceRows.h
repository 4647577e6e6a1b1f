#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QTreeWidget;
class QTreeWidgetItem;

namespace paravue
{

/// Lists of values with their captions and addresses, as the windows of the history have them.
namespace differencerows
{

/// A value with line ends, an empty one or none, in one line; dots for one that is secret.
QString shown(const std::optional<QString> &value, bool isSecret);

/// Gives \a list these columns and the ways of the other lists of the window.
void prepare(QTreeWidget &list, const QStringList &columns);
/// A row with these texts, also as tool tips, for the value at \a path.
QTreeWidgetItem *row(const QStringList &texts, const QString &path);
QString pathOf(const QTreeWidgetItem &row);

} // namespace differencerows

} // namespace paravue
