#pragma once

#include "Outcome.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace paravue
{

/// What an inventory tells of a recorder or of a group of recorders.
struct InventoryEntry {
    QString name;
    QString address; ///< host[:port]; of a recorder only
    QString login;
    QString passwordFile;
    QStringList groups;               ///< of a recorder only
    QMap<QString, QString> variables; ///< by name
    QMap<QString, QString> values;    ///< that it is to have, by "file/section/key"
};

/// The recorders that one run is about, from a file:
///
/// - NAME.json: {"recorders": [{...}, ...], "groups": [{...}, ...]}, each an object of texts with a "name"
/// - NAME.csv: a line with the names of the columns, then one for each recorder
/// - any other: an ini file with a section [NAME] for each recorder and [group NAME] for each group
///
/// The fields are everywhere the same: "address" (needed), "groups" (separated by commas, in JSON also an
/// array), "login", "password-file" (relative to the inventory); a name with two "/" is that of a value, any
/// other word that of a variable.
class Inventory
{
public:
    /// Reads the file at \a path, as a whole or not at all.
    static Outcome read(const QString &path, Inventory &inventory);

    /// In the order of the file. What a recorder lacks is that of its groups, the first one first, and then
    /// that of the group "all".
    const QList<InventoryEntry> &recorders() const { return m_recorders; }
    /// True when a recorder is in the group.
    bool hasGroup(const QString &name) const;

private:
    friend class InventoryReader;

    QString complete(const QString &folder);
    void inherit(InventoryEntry &recorder, const QString &group) const;

    QList<InventoryEntry> m_recorders;
    QHash<QString, InventoryEntry> m_groups;
};

} // namespace paravue
