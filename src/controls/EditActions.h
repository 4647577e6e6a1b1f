#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>

class QEvent;
class QKeyEvent;

namespace paravue
{

class EditGesture;

/// Something that the user can do with an editor by a key.
struct EditAction {
    QString text;
    QList<QKeySequence> keys;
    std::function<void()> perform;
    bool isPossible = true; ///< otherwise its keys are left to the window
};

using EditActions = QList<EditAction>;

/// Undo and redo.
EditActions historyActions(EditGesture &gesture);

/// Does what the key is for; false when it is for nothing that is possible.
bool performByKey(const EditActions &actions, const QKeyEvent &event);
/// Lets performByKey() have its keys before a shortcut of the window gets them. To be called with every event
/// of the editor; true when nothing else is to be done with it. \a actions is asked only when it matters.
bool claimKey(const std::function<EditActions()> &actions, QEvent &event);

} // namespace paravue
