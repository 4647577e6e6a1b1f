#include "ui/commands/UserListEditor.h"

#include "controls/UserListView.h"
#include "store/OrbSetup.h"
#include "store/PasswordDigest.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/commands/DialogManager.h"
#include "ui/commands/UserRights.h"

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

const QString userListTag = QStringLiteral("accesslist");
const QString dialogTag = QStringLiteral("accessdlg");
const QString keepPassword = QStringLiteral("keeppassword");
const QString scratch = QStringLiteral("general/access/");
const QString firstPassword = QStringLiteral("pass1");
const QString secondPassword = QStringLiteral("pass2");

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
    const QDomElement dialog = m_context.description().document().first(tag).parentNode().toElement();
    if (dialog.isNull())
        return false;
    if (!dialog.firstChildElement(dialogTag).isNull())
        return true;
    const QDomNodeList keys = dialog.elementsByTagName(QStringLiteral("key"));
    for (int i = 0; i < keys.size(); ++i) {
        const QString address = keys.at(i).toElement().text().trimmed();
        if (address == scratch + firstPassword || address == scratch + secondPassword)
            return true;
    }
    return false;
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
    if (const QString tag = refusal(*users, row); !tag.isEmpty()) {
        m_showDialog(tag);
        return;
    }
    const User user{typed("name"), passwordFor(*users, row), typed("level")};
    if (row >= 0 && row == UserRights(users->users(), currentUser()).self()) {
        m_login = m_context.store().value(QStringLiteral("general/network/login"));
        m_newName = user.name;
    }
    clearPasswords();
    if (isNew)
        users->addUser(user);
    else
        users->replaceUser(row, user);
    m_dialogs.close(dialogTag);
}

/// What is stored as the password of the user \a row (-1: a new one).
QString UserListEditor::passwordFor(const UserListView &list, int row) const
{
    const QString password = typed(firstPassword);
    if (row >= 0 && password.isEmpty() && isSet(list, keepPassword))
        return list.users().at(row).password;
    if (isSet(list, QStringLiteral("clearpassword")))
        return password;
    return QString::fromLatin1(passwordDigest(password.toLocal8Bit()));
}

/// The tag of the dialog that says why what was typed for the user \a row (-1: a new one) is refused; empty
/// when it is not.
QString UserListEditor::refusal(const UserListView &list, int row) const
{
    const QList<User> &users = list.users();
    const User user{typed("name"), {}, typed("level")};
    for (int other = 0; other < users.size(); ++other) {
        if (other != row && users[other].name == user.name)
            return QStringLiteral("accessdlgerr_namedouble");
    }
    const UserRights rights(users, currentUser());
    if (row < 0 ? !rights.mayAdd(user) : !rights.mayReplace(row, user))
        return QStringLiteral("accessdlgerr_editrights");
    if (user.name.isEmpty())
        return QStringLiteral("accessdlgerr_name");
    if (typed(firstPassword) != typed(secondPassword))
        return QStringLiteral("accessdlgerr_pass");
    return {};
}

void UserListEditor::removeSelected()
{
    UserListView *users = list();
    if (!users || !isEditable(*users))
        return;
    const int row = users->selectedRow();
    if (users->users().size() == 1)
        m_showDialog(QStringLiteral("accessdlgerr_lastuser"));
    else if (row >= 0 && !UserRights(users->users(), currentUser()).mayRemove(row))
        m_showDialog(QStringLiteral("accessdlgerr_editrights"));
    else if (row >= 0)
        users->removeUser(row);
}

/// The name that the logged-in user has in the list. When that user is renamed the session's login stays the
/// old one; a login that is not in the list would have all rights.
QString UserListEditor::currentUser() const
{
    const QString login = m_context.store().value(QStringLiteral("general/network/login"));
    return !m_login.isEmpty() && login == m_login ? m_newName : login;
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
