#include "controls/EditActions.h"

#include "controls/EditGesture.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace paravue
{
namespace
{

class ActionText
{
    Q_DECLARE_TR_FUNCTIONS(paravue::EditActions)
};

const EditAction *actionFor(const EditActions &actions, const QKeyEvent &event)
{
    const QKeySequence key(
        QKeyCombination(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key())));
    const auto action = std::find_if(actions.cbegin(), actions.cend(), [&](const EditAction &action) {
        return action.isPossible && action.keys.contains(key);
    });
    return action == actions.cend() ? nullptr : &*action;
}

} // namespace

QList<QKeySequence> keysFor(QKeySequence::StandardKey standard, const QKeySequence &usual)
{
    QList<QKeySequence> keys{usual};
    for (const QKeySequence &key : QKeySequence::keyBindings(standard)) {
        if (!keys.contains(key))
            keys.append(key);
    }
    return keys;
}

QList<QKeySequence> letterKeys(Qt::Key latin)
{
    static const QString russian = QStringLiteral("ФИСВУАПРШОЛДЬТЩЗЙКЫЕГМЦЧНЯ"); // on A to Z
    return {latin, russian.at(latin - Qt::Key_A).unicode()};
}

EditActions groupedActions(const QList<EditActions> &groups)
{
    EditActions actions;
    for (const EditActions &group : groups) {
        if (!actions.isEmpty() && !group.isEmpty())
            actions.append(EditAction());
        actions.append(group);
    }
    return actions;
}

EditActions historyActions(EditGesture &gesture)
{
    return {{.text = ActionText::tr("Undo"),
             .keys = keysFor(QKeySequence::Undo, Qt::CTRL | Qt::Key_Z),
             .perform = [&gesture] { gesture.undo(); },
             .isPossible = gesture.canUndo(),
             .repeats = true},
            {.text = ActionText::tr("Redo"),
             .keys = keysFor(QKeySequence::Redo, Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
             .perform = [&gesture] { gesture.redo(); },
             .isPossible = gesture.canRedo(),
             .repeats = true}};
}

bool performByKey(const EditActions &actions, const QKeyEvent &event)
{
    const EditAction *action = actionFor(actions, event);
    if (action && (action->repeats || !event.isAutoRepeat()))
        action->perform();
    return action;
}

bool claimKey(const std::function<EditActions()> &actions, QEvent &event)
{
    if (event.type() != QEvent::ShortcutOverride || !actionFor(actions(), static_cast<QKeyEvent &>(event)))
        return false;
    event.accept();
    return true;
}

bool isMenuKey(const QKeyEvent &event)
{
#ifdef Q_OS_WIN
    Q_UNUSED(event);
    return false;
#else
    return event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier;
#endif
}

void showMenu(QWidget &editor, const EditActions &actions, const QPoint &globalPosition)
{
    auto *menu = new QMenu(&editor);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto *group = new QActionGroup(menu);
    for (const EditAction &action : actions) {
        if (!action.perform) {
            menu->addSeparator();
            group = new QActionGroup(menu);
            continue;
        }
        QAction *entry =
            menu->addAction(QString(action.text).replace(u'&', QStringLiteral("&&")), action.perform);
        entry->setShortcuts(action.keys);
        entry->setShortcutVisibleInContextMenu(true);
        entry->setEnabled(action.isPossible);
        entry->setCheckable(action.isChosen.has_value());
        entry->setChecked(action.isChosen.value_or(false));
        if (action.isChosen)
            group->addAction(entry);
    }
    menu->popup(globalPosition);
}

void showRefusal(QWidget &editor, const QString &reason)
{
    constexpr int Shown = 10'000; // milliseconds
    QToolTip::showText(editor.mapToGlobal(editor.rect().center()),
                       Qt::convertFromPlainText(reason, Qt::WhiteSpaceNormal), &editor, {}, Shown);
}

} // namespace paravue
