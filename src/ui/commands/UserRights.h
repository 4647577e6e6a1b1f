#pragma once

#include "controls/UserListView.h"

namespace paravue
{

/// What the current user may do to the users of a recorder. A higher level means more rights.
///
/// - Users of up to one's own level may be edited and removed; no user may be raised above it.
/// - Level 0 changes its own password and nothing else.
/// - Nobody removes himself or the last user of the highest level.
/// - The only one above level 0 keeps his level: nobody would be left who may edit others.
/// - A login that is not in the list may do everything; the recorder has the last word.
class UserRights
{
public:
    UserRights(const QList<User> &users, const QString &login);

    bool mayAdd(const User &user) const;
    bool mayReplace(int row, const User &user) const;
    bool mayRemove(int row) const;

    /// The row of the current user, or -1.
    int self() const { return m_self; }

private:
    int level(int row) const { return m_users[row].level.toInt(); }
    bool isLastOfHighestLevel(int row) const;
    bool isOnlyEditor(int row) const;

    QList<User> m_users;
    int m_self = -1;
};

} // namespace paravue
