#include "controls/UserListView.h"
#include "store/OrbSetup.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/ListRows.h"

#include <memory>

namespace paravue
{
namespace
{

RowKeys userKeys(const Control &control)
{
    return {firstAddress(control.element), QStringLiteral("/CNT"), QStringLiteral("/NAME")};
}

QMap<int, QString> levelCaptions(ControlContext &context, const Control &control)
{
    const QString tag = QStringLiteral("accesslevel");
    const QString number = QStringLiteral("level");
    QMap<int, QString> captions;
    int place = 0;
    for (QDomElement level = control.element.firstChildElement(tag); !level.isNull();
         level = level.nextSiblingElement(tag), ++place)
        captions.insert(level.hasAttribute(number) ? intAttribute(level, number) : place,
                        context.text(control, level.text()));
    return captions;
}

/// A list of the users; controls/UserListView.h describes the keys below the address in its "key". Its
/// "accesslevel" children are captions: of the level in their attribute "level", or of the level that is
/// their place, counted from 0.
class UserListAdapter : public TypedAdapter<UserListView>
{
public:
    UserListAdapter()
        : TypedAdapter({.changes = {onSignal<&UserListView::valueChanged>},
                        .attributes = {{"clearpassword", AttributeRule::Word, {"true", "false"}},
                                       {"keeppassword", AttributeRule::Word, {"true", "false"}}},
                        .children = {{"column", {{"width"}}}, {"accesslevel", {{"level"}}}},
                        .keys = {{.form = KeyRule::Group, .count = "/CNT"}},
                        .actionStates = rowStates(),
                        .cost = 50})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        auto *list = new UserListView(parent);
        addColumns(*list, context, control, {WindowText::tr("User"), WindowText::tr("Level")});
        return list;
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }

    bool load(ControlContext &context, const Control &control) const override
    {
        UserListView &list = widget(control);
        const bool newHeaders = list.setHeaders(columnHeaders(context, control));
        list.setLevelCaptions(levelCaptions(context, control));
        const QList<User> users = storedRows<User>(
            list, context, control, userKeys(control), 3, [](const auto &value, const QString &i) {
                return User{value("/NAME" + i), value("/PASSWD" + i), value("/LEVEL" + i)};
            });
        return list.setUsers(users) || newHeaders;
    }

    /// Writes the whole list. The keys of removed users are emptied.
    QList<Assignment> assignments(ControlContext &context, const Control &control) const override
    {
        const UserListView &list = widget(control);
        if (list.lastChange() != SortableListView::Edited || !list.isComplete())
            return {};
        OrbSetup &store = context.store();
        const RowKeys keys = userKeys(control);
        const QString &prefix = keys.prefix;
        const int oldCount = store.value(prefix + keys.count).toInt();
        int number = keys.first(store);
        const int oldEnd = number + oldCount;
        QList<Assignment> result{{prefix + keys.count, QString::number(list.users().size())}};
        for (const User &user : list.users()) {
            const QString i = QString::number(number++);
            result << Assignment{prefix + "/NAME" + i, user.name}
                   << Assignment{prefix + "/PASSWD" + i, user.password}
                   << Assignment{prefix + "/LEVEL" + i, user.level};
        }
        for (; number < oldEnd; ++number) {
            for (const char *key : {"/NAME", "/PASSWD", "/LEVEL"}) {
                const QString address = prefix + key + QString::number(number);
                if (!store.value(address).isEmpty())
                    result.append({address, QString()});
            }
        }
        return result;
    }

    QString valueName(const QString &path, const ValueAt &valueAt) const override
    {
        const QString key = path.section(u'/', 2);
        if (key == QLatin1StringView("CNT"))
            return WindowText::tr("Number of users");
        qsizetype end = key.size();
        while (end > 0 && key[end - 1].isDigit())
            --end;
        const QString number = key.sliced(end);
        const QString name = valueAt(path.section(u'/', 0, 1) + "/NAME" + number);
        const QString user = name.isEmpty() ? number : name;
        if (key == "NAME" + number)
            return WindowText::tr("User %1: name").arg(user);
        if (key == "PASSWD" + number)
            return WindowText::tr("User %1: password").arg(user);
        return key == "LEVEL" + number ? WindowText::tr("User %1: level").arg(user) : QString();
    }

    QString actionState(const Control &control) const override { return rowState(widget(control)); }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeUserListAdapter()
{
    return std::make_unique<UserListAdapter>();
}

} // namespace paravue
