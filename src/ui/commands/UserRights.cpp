#include "ui/commands/UserRights.h"

#include <algorithm>

namespace paravue
{

UserRights::UserRights(const QList<User> &users, const QString &login) : m_users(users)
{
    const auto found =
        std::find_if(users.begin(), users.end(), [&](const User &user) { return user.name == login; });
    if (found != users.end())
        m_self = int(found - users.begin());
}

bool UserRights::mayAdd(const User &user) const
{
    return m_self < 0 || (level(m_self) > 0 && user.level.toInt() <= level(m_self));
}

bool UserRights::mayReplace(int row, const User &user) const
{
    if (m_self < 0)
        return true;
    if (level(m_self) <= 0)
        return row == m_self && user.name == m_users[row].name && user.level == m_users[row].level;
    if (row == m_self && isOnlyEditor(row) && user.level.toInt() != level(row))
        return false;
    return level(row) <= level(m_self) && user.level.toInt() <= level(m_self);
}

bool UserRights::mayRemove(int row) const
{
    if (m_self < 0)
        return true;
    return row != m_self && level(m_self) > 0 && level(row) <= level(m_self) && !isLastOfHighestLevel(row);
}

bool UserRights::isLastOfHighestLevel(int row) const
{
    const auto isAsHigh = [&](const User &user) { return user.level.toInt() >= level(row); };
    return std::count_if(m_users.begin(), m_users.end(), isAsHigh) == 1;
}

bool UserRights::isOnlyEditor(int row) const
{
    const auto mayEditOthers = [](const User &user) { return user.level.toInt() > 0; };
    return level(row) > 0 && std::count_if(m_users.begin(), m_users.end(), mayEditOthers) == 1;
}

} // namespace paravue
