#include "controls/AccessList.h"

namespace paravue
{

namespace
{

constexpr int LevelColumn = 1;

} // namespace

AccessList::AccessList(QWidget *parent) : RowListView(parent)
{
    setPlaceholder(tr("No users"));
}

bool AccessList::setUsers(const QList<AccessUser> &users)
{
    m_users = users;
    return setRows(rows());
}

QList<QStringList> AccessList::rows() const
{
    QList<QStringList> rows;
    rows.reserve(m_users.size());
    for (const AccessUser &user : m_users)
        rows.append({user.name, m_captions.value(user.level.toInt(), user.level)});
    return rows;
}

void AccessList::addUser(const AccessUser &user)
{
    m_users.append(user);
    showRows(rows(), int(m_users.size()) - 1);
    notify(Edited);
}

void AccessList::replaceUser(int row, const AccessUser &user)
{
    m_users[row] = user;
    showRows(rows(), row);
    notify(Edited);
}

void AccessList::removeUser(int row)
{
    const int next = neighbour(row);
    m_users.removeAt(row);
    showRows(rows(), next > row ? next - 1 : next);
    notify(Edited);
}

QVariant AccessList::sortKey(int row, int column) const
{
    return column == LevelColumn ? QVariant(m_users.at(row).level.toInt()) : QVariant();
}

} // namespace paravue
