#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <utility>

namespace paravue
{

class UserListView;
class Bindings;
class ControlContext;
class DialogManager;

/// Adds, changes and removes users of the "accesslist" that an element with the tag "accesslist" marks.
///
/// The user's name, level and password are typed in a dialog of the description with the tag "accessdlg",
/// whose controls are bound to addresses of this computer only: general/access/name, pass1, pass2, level, and
/// edit, which is 1 while an existing user is edited and 0 for a new one. Refusals are shown by dialogs of
/// the description too; their tags begin with "accessdlgerr_".
class UserListEditor
{
public:
    /// \a showDialog opens the dialog of a tag and comes back when it is closed.
    UserListEditor(ControlContext &context, Bindings &bindings, DialogManager &dialogs,
                   std::function<void(const QString &tag)> showDialog);

    /// \a tag is one of:
    /// - "edit" puts the picked user, "new" an empty one, into the dialog's addresses;
    /// - "newok" checks what was typed there, changes the list and closes the dialog;
    /// - "remove" removes the picked user.
    void run(const QString &tag);

    /// To be called when the dialog of this tag has closed: typed passwords are erased.
    void dialogClosed(const QString &tag);

private:
    UserListView *list() const;
    bool isEditable(const UserListView &list) const;
    void edit();
    void beginNew();
    void acceptTyped();
    void removeSelected();

    QString refusal(const UserListView &list, int row) const;
    QString currentUser() const;
    QString typed(const QString &field) const;
    void setTyped(const QList<std::pair<QString, QString>> &fields);
    void clearPasswords();

    ControlContext &m_context;
    Bindings &m_bindings;
    DialogManager &m_dialogs;
    std::function<void(const QString &)> m_showDialog;
    QString m_login;   ///< the session's login, when its user was renamed
    QString m_newName; ///< and the name that the user has now
};

} // namespace paravue
