#include "ui/commands/UserListEditor.h"

#include "controls/UserListView.h"
#include "store/LocalEncoding.h"
#include "store/OrbSetup.h"
#include "store/PasswordDigest.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/commands/DialogManager.h"
#include "ui/commands/UserRights.h"
#include "ui/description/DialogTags.h"

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

const QString userListTag = QStringLiteral("accesslist");
const QString clearPassword = QStringLiteral("clearpassword");
const QString keepPassword = QStringLiteral("keeppassword");
const QString scratch = QStringLiteral("general/access/");
const QString firstPassword = QStringLiteral("pass1");
const QString secondPassword = QStringLiteral("pass2");

bool hasPasswords(const QDomElement &dialog)
{
    if (dialog.isNull())
        return false;
    if (!dialog.firstChildElement(dialogtags::User).isNull())
        return true;
    const QDomNodeList keys = dialog.elementsByTagName(QStringLiteral("key"));
    for (int i = 0; i < keys.size(); ++i) {
        const QString address = OrbSetup::path(addressText(keys.at(i).toElement()));
        if (address == scratch + firstPassword || address == scratch + secondPassword)
            return true;
    }
    return false;
}

} // namespace

UserListEditor::UserListEditor(ControlContext &context, Bindings &bindings, DialogManager &dialogs,
                               std::function<void(const QString &)> showDialog)
    : m_context(context), m_bindings(bindings), m_dialogs(dialogs), m_showDialog(std::move(showDialog))
{
}

void UserListEditor::run(const QString &tag)
{
    if (tag == QLatin1String("edit"))
        edit();
    else if (tag == QLatin1String("new"))
        beginNew();
    else if (tag == QLatin1String("newok"))
        acceptTyped();
    else if (tag == QLatin1String("remove"))
        removeSelected();
    else
        m_context.report(
            WindowText::tr("Unknown %1 tag \"%2\"").arg(QStringLiteral("CWinMain::accessListSlot"), tag));
}

bool UserListEditor::takesPasswords(const QString &tag) const
{
    return hasPasswords(m_context.description().document().first(tag).parentNode().toElement());
}

UserListView *UserListEditor::list() const
{
    auto *list = m_context.description().firstWidget<UserListView>(userListTag);
    if (!list)
        m_context.report(WindowText::tr("No list of users has the tag \"%1\"").arg(userListTag));
    return list;
}

bool UserListEditor::isSet(const UserListView &list, const QString &attribute) const
{
    const QDomElement element = m_context.description().table().of(&list)->element;
    return element.attribute(attribute) == QLatin1String("true");
}

bool UserListEditor::isEditable(const UserListView &list) const
{
    if (!list.isComplete())
        m_context.report(WindowText::tr("The list of users is not complete, so it cannot be changed"));
    return list.isComplete();
}

void UserListEditor::edit()
{
    const UserListView *users = list();
    if (!users)
        return;
    if (users->selectedRow() < 0) {
        // The dialog may open all the same and must not show the user of the last time.
        beginNew();
        return;
    }
    const User &user = users->users().at(users->selectedRow());
    setTyped({{"name", user.name},
              {firstPassword, {}},
              {secondPassword, {}},
              {"level", user.level},
              {"edit", "1"},
              {"keep", isSet(*users, keepPassword) ? "on" : "off"}});
}

void UserListEditor::beginNew()
{
    setTyped({{"name", {}},
              {firstPassword, {}},
              {secondPassword, {}},
              {"level", "1"},
              {"edit", "0"},
              {"keep", "off"}});
}

void UserListEditor::acceptTyped()
{
    UserListView *users = list();
    if (!users || !isEditable(*users))
        return;
    const bool isNew = typed("edit").toInt() != 1;
    const int row = isNew ? -1 : users->selectedRow();
    if (!isNew && row < 0) {
        m_context.report(WindowText::tr("No user is selected"));
        return;
    }
    QList<User> edited = users->users();
    if (const QString tag = refusal(edited, row); !tag.isEmpty()) {
        m_showDialog(tag);
        return;
    }
    if (!isSet(*users, clearPassword) && !isInLocalEncoding(typed(firstPassword))) {
        m_context.report(WindowText::tr("The password has letters that this computer cannot send."));
        return;
    }
    const User user{typed("name"), passwordFor(*users, row), typed("level")};
    if (row >= 0 && row == UserRights(edited, currentUser(edited)).self())
        m_renamed = RenamedUser{login(), user.name, {}};
    if (isNew)
        edited.append(user);
    else
        edited[row] = user;
    rememberEdited(edited);
    clearPasswords();
    if (isNew)
        users->addUser(user);
    else
        users->replaceUser(row, user);
    m_dialogs.closeLast([](const QDomElement &dialog) { return hasPasswords(dialog); });
}

/// What is stored as the password of the user \a row (-1: a new one).
QString UserListEditor::passwordFor(const UserListView &list, int row) const
{
    const QString password = typed(firstPassword);
    if (row >= 0 && password.isEmpty() && isSet(list, keepPassword))
        return list.users().at(row).password;
    if (isSet(list, clearPassword))
        return password;
    return QString::fromLatin1(passwordDigest(password.toLocal8Bit()));
}

/// The tag of the dialog that says why what was typed for the user \a row (-1: a new one) is refused; empty
/// when it is not.
QString UserListEditor::refusal(const QList<User> &users, int row)
{
    const User user{typed("name"), {}, typed("level")};
    for (int other = 0; other < users.size(); ++other) {
        if (other != row && users[other].name == user.name)
            return dialogtags::UserNameTaken;
    }
    const UserRights rights(users, currentUser(users));
    if (row < 0 ? !rights.mayAdd(user) : !rights.mayReplace(row, user))
        return dialogtags::UserNotAllowed;
    if (user.name.isEmpty())
        return dialogtags::UserNameEmpty;
    if (typed(firstPassword) != typed(secondPassword))
        return dialogtags::PasswordsDiffer;
    return {};
}

void UserListEditor::removeSelected()
{
    UserListView *users = list();
    if (!users || !isEditable(*users))
        return;
    QList<User> edited = users->users();
    const int row = users->selectedRow();
    if (edited.size() == 1) {
        m_showDialog(dialogtags::LastUser);
    } else if (row >= 0 && !UserRights(edited, currentUser(edited)).mayRemove(row)) {
        m_showDialog(dialogtags::UserNotAllowed);
    } else if (row >= 0) {
        edited.removeAt(row);
        rememberEdited(edited);
        users->removeUser(row);
    }
}

QString UserListEditor::login() const
{
    return m_context.store().value(QStringLiteral("general/network/login"));
}

/// The name that the logged-in user has among \a users. A login that is not among them would have all rights,
/// so a new name is forgotten only when the files that were fetched anew have the login again.
QString UserListEditor::currentUser(const QList<User> &users)
{
    const auto has = [&](const QString &name) {
        return std::any_of(users.begin(), users.end(), [&](const User &user) { return user.name == name; });
    };
    const QString current = login();
    const bool isStale = m_renamed && (current != m_renamed->login || !has(m_renamed->newName) ||
                                       (users != m_renamed->users && has(current)));
    if (isStale)
        m_renamed.reset();
    return m_renamed ? m_renamed->newName : current;
}

void UserListEditor::rememberEdited(const QList<User> &users)
{
    if (m_renamed)
        m_renamed->users = users;
}

QString UserListEditor::typed(const QString &field) const
{
    return m_context.store().value(scratch + field);
}

void UserListEditor::setTyped(const QList<std::pair<QString, QString>> &fields)
{
    QList<Assignment> assignments;
    for (const auto &[field, value] : fields)
        assignments.append({scratch + field, value});
    m_bindings.write(assignments);
}

void UserListEditor::clearPasswords()
{
    if (!typed(firstPassword).isEmpty() || !typed(secondPassword).isEmpty())
        setTyped({{firstPassword, {}}, {secondPassword, {}}});
}

} // namespace paravue
