#pragma once

#include "controls/SortableListView.h"

#include <QMap>

namespace paravue
{

/// One user of a recorder. The password is what the recorder keeps, clear text or its digest; the level is a
/// decimal number, a higher one means more rights, kept as it was written.
struct User {
    QString name;
    QString password;
    QString level;

    bool operator==(const User &) const = default;
};

/// The users of a recorder, one per row: name and access level. A password is never shown.
///
/// It shows these keys below one prefix, file/section, of the configuration:
///
///     CNT        the number of users, decimal
///     NAMEi      the login name of user i
///     PASSWDi    the password: clear text, or the lower-case hexadecimal MD5 digest
///     LEVELi     the access level, a decimal number
///
/// i counts from 0 when NAME0 has a value and from 1 otherwise. The list itself does not write them: a
/// receiver of valueChanged() writes users() back when lastChange() is Edited.
class UserListView : public SortableListView
{
    Q_OBJECT

public:
    explicit UserListView(QWidget *parent = nullptr);

    /// The captions of the levels in the second column; a level without one is shown as its number. They take
    /// effect with the next setUsers().
    void setLevelCaptions(const QMap<int, QString> &captions) { m_captions = captions; }
    /// Shows these users and emits nothing. Returns false when they are shown already.
    bool setUsers(const QList<User> &users);
    const QList<User> &users() const { return m_users; }

    /// These edit the list and select the edited user, or the neighbour of a removed one.
    void addUser(const User &user);
    void replaceUser(int row, const User &user);
    void removeUser(int row);

protected:
    QVariant sortKey(int row, int column) const override;

private:
    QList<QStringList> rows() const;

    QList<User> m_users;
    QMap<int, QString> m_captions;
};

} // namespace paravue
