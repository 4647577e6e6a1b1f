#pragma once

#include "controls/UserListView.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace paravue
{

class Bindings;
class ControlContext;
class DialogManager;

/// Adds, changes and removes users of the "accesslist" that an element with the tag "accesslist" marks.
///
/// The user's name, level and password are typed in a dialog of the description with the tag "accessdlg",
/// whose controls are bound to addresses of this computer only: general/access/name, pass1, pass2, level,
/// edit, which is 1 while an existing user is edited and 0 for a new one, and keep, which is "on" while an
/// empty password leaves the stored one as it is and else "off". Refusals are shown by dialogs of the
/// description too; their tags begin with "accessdlgerr_".
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

    /// True when passwords are typed in the dialog of this tag, which may have several tags.
    bool takesPasswords(const QString &tag) const;
    /// To be called when such a dialog has closed.
    void clearPasswords();

private:
    UserListView *list() const;
    bool isSet(const UserListView &list, const QString &attribute) const;
    bool isEditable(const UserListView &list) const;
    void edit();
    void beginNew();
    void acceptTyped();
    void removeSelected();

    /// The logged-in user after the name was changed in the list. The session's login stays the old one.
    struct RenamedUser {
        QString login;
        QString newName;
        QList<User> users; ///< the list as this editor has left it
    };

    QString refusal(const QList<User> &users, int row);
    QString login() const;
    QString currentUser(const QList<User> &users);
    void rememberEdited(const QList<User> &users);
    QString typed(const QString &field) const;
    void setTyped(const QList<std::pair<QString, QString>> &fields);
    QString passwordFor(const UserListView &list, int row) const;

    ControlContext &m_context;
    Bindings &m_bindings;
    DialogManager &m_dialogs;
    std::function<void(const QString &)> m_showDialog;
    std::optional<RenamedUser> m_renamed;
};

} // namespace paravue
