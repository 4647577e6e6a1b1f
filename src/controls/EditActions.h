#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

class QEvent;
class QKeyEvent;
class QPoint;
class QWidget;

namespace paravue
{

class EditGesture;

/// Something that the user can do with an editor, by a key and from its context menu.
struct EditAction {
    QString text; ///< without access keys
    QList<QKeySequence> keys = {};
    std::function<void()> perform = {}; ///< none: a line between groups of entries
    bool isPossible = true;             ///< otherwise its keys are left to the window
    std::optional<bool> isChosen = {};  ///< of one of a group that excludes the others
    bool repeats = false;               ///< while its key is held
};

using EditActions = QList<EditAction>;

/// The keys of the platform for it, and the one that is usual in most programs as the first.
QList<QKeySequence> keysFor(QKeySequence::StandardKey standard, const QKeySequence &usual);
/// A letter without Ctrl, from Key_A to Key_Z, and the one that has its place on Russian keyboards: Qt knows
/// the Latin letter of a key only while Ctrl is held.
QList<QKeySequence> letterKeys(Qt::Key latin);
/// All of \a groups with a line between them.
EditActions groupedActions(const QList<EditActions> &groups);
/// Undo and redo.
EditActions historyActions(EditGesture &gesture);

/// Does what the key is for; false when it is for nothing that is possible.
bool performByKey(const EditActions &actions, const QKeyEvent &event);
/// Lets performByKey() have its keys before a shortcut of the window gets them. To be called with every event
/// of the editor; true when nothing else is to be done with it. \a actions is asked only when it matters.
bool claimKey(const std::function<EditActions()> &actions, QEvent &event);

/// Whether a key asks for the menu without a QContextMenuEvent of the platform.
bool isMenuKey(const QKeyEvent &event);
/// A menu of all actions with their keys; returns while it is open.
void showMenu(QWidget &editor, const EditActions &actions, const QPoint &globalPosition);

/// Says for some seconds why something was not done.
void showRefusal(QWidget &editor, const QString &reason);

} // namespace paravue
