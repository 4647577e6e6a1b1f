#include "controls/UserListView.h"

#include "controls/OwnTexts.h"

namespace paravue
{

namespace
{

constexpr int LevelColumn = 1;

} // namespace

UserListView::UserListView(QWidget *parent) : SortableListView(parent)
{
    keepTranslated(*this, [this] { setPlaceholder(tr("No users")); });
}

bool UserListView::setUsers(const QList<User> &users)
{
    m_users = users;
    return setRows(rows());
}

QList<QStringList> UserListView::rows() const
{
    QList<QStringList> rows;
    rows.reserve(m_users.size());
    for (const User &user : m_users)
        rows.append({user.name, m_captions.value(user.level.toInt(), user.level)});
    return rows;
}

void UserListView::addUser(const User &user)
{
    m_users.append(user);
    showRows(rows(), int(m_users.size()) - 1);
    notify(Edited);
}

void UserListView::replaceUser(int row, const User &user)
{
    m_users[row] = user;
    showRows(rows(), row);
    notify(Edited);
}

void UserListView::removeUser(int row)
{
    const int next = neighbour(row);
    m_users.removeAt(row);
    showRows(rows(), next > row ? next - 1 : next);
    notify(Edited);
}

QVariant UserListView::sortKey(int row, int column) const
{
    return column == LevelColumn ? QVariant(m_users.at(row).level.toInt()) : QVariant();
}

} // namespace paravue
