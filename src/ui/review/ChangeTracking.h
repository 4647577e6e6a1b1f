#pragma once

#include "changes/ChangeList.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/EditSteps.h"
#include "ui/review/ChangeMarks.h"
#include "ui/review/ChangePlaces.h"
#include "ui/review/DescribedItems.h"
#include "ui/review/DialogRoutes.h"
#include "ui/review/FieldProblems.h"
#include "ui/review/FindDialog.h"
#include "ui/review/TabBadges.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <optional>

class QDialog;
class QToolButton;
class QWidget;

namespace paravue
{

class Bindings;
class ControlContext;
class ControlTable;
struct ReviewedChange;
struct ReviewedProblem;

/// What a window does about the changes that its user makes: it marks them, counts them, lists them, and
/// undoes and takes them back. It does the same about fields that hold something wrong.
class ChangeTracking : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object, except that the store may go.
    ChangeTracking(QWidget &window, ControlContext &context, Bindings &bindings, AdapterLookup adapterOf);
    ~ChangeTracking() override;

    /// "3 changes, 1 problem", hidden without any; reviewRequested() follows its click. For the header of the
    /// window.
    QToolButton *countButton() const { return m_count; }
    const ChangeList &list() const { return m_list; }
    ChangeList &list() { return m_list; }
    /// What the user would call the value at \a path: the caption of its first control, which may be one of a
    /// dialog, or the path.
    QString caption(const QString &path) const;
    /// There is a control that edits the value at \a path, in the window or in a dialog.
    bool isEditable(const QString &path) const;
    /// There are others than those that the host has made before the window was built. A snapshot without its
    /// recorder begins with the edits that it holds, and each save keeps those that there are.
    bool hasUserChanges() const;
    /// Fetching everything anew drops changes. A snapshot makes those that it holds again, but a recorder
    /// knows nothing of what the host has changed.
    bool isLostByFetching() const;
    /// The last save has been given all changes that there are.
    bool isAllGivenToASave() const;
    /// The last save was given something that the user has edited, or taken back, since it ended.
    bool isSaveOutdated() const { return m_sent && !m_sent->isEmpty() && !isAllGivenToASave(); }

    /// To be called when the window was built from another description: marks the new controls.
    void startDescription();
    /// To be called when a save begins, and when it has ended: \a arrived are the files that the recorder has
    /// taken.
    void noteSaveBegins() { m_sent = m_list.all(); }
    void noteSaved(const QStringList &arrived);
    /// The recorder may have taken the file \a name of the save.
    void noteUnanswered(const QString &name);

    /// In the order of the window.
    QList<ReviewedChange> reviewed() const;
    /// The fields with problems, in the order of the window.
    QList<ReviewedProblem> problems() const;
    bool hasProblems() const { return m_problems.count() > 0; }
    /// Asks whether to send with these problems. When the user wants to see them it goes to the first one.
    bool askAboutProblems();
    /// Which points of cameras wait to be set, as sentences; empty for none.
    QString deferredPoints() const;
    /// Asks whether to send without them.
    bool askAboutDeferredPoints() const;
    enum class Answer { Send, Discard, GoOnEditing };
    /// Asks what is to become of the changes when the window is closed.
    Answer askBeforeClosing() const;
    /// As one step, which can be undone. A list whose entries the user has moved is taken back as a whole.
    void takeBack(const QStringList &paths);
    /// Sets each value to the \a after of its edit, as one step too.
    void apply(const QList<ValueEdit> &edits);
    /// Shows where the value at \a path is edited; described dialogs in front of it are closed first.
    void goTo(const QString &path);
    void goToControl(int number);
    /// To be called before a modal \a dialog of the description is shown: marks its controls, and gives it
    /// the keys of the window. F8 and Ctrl+F find its own fields, as no others can be reached.
    void startDialog(QDialog &dialog);
    /// Lets the user find a control; \a run runs the dialog.
    void find(const std::function<void(QDialog &)> &run);
    void undo();
    void redo();
    /// See EditSteps::suspend().
    void suspendGesture(const std::function<void()> &wait) { m_steps.suspend(wait); }
    /// To be called when captions have changed that are no controls.
    void updateTexts();

Q_SIGNALS:
    void reviewRequested();
    void findRequested();
    /// The dialog with this tag is to be opened.
    void dialogRequested(const QString &tag);

private:
    QByteArray descriptionText() const;
    QString valueName(const ControlAdapter &editor, const QString &path) const;
    void addKeys(QWidget &dialog);
    /// The field with a problem behind the one that has the focus in \a window, or before it.
    void goToNextProblem(const QWidget &window, bool isBackwards);
    /// The modal dialog of the description in front; null without one.
    QDialog *frontDialog() const;
    /// Closes the dialogs in front of \a window, then does \a work. A dialog that refuses stays, and nothing
    /// is done.
    void leaveDialogs(const QWidget &window, const std::function<void()> &work);
    void show(int number);
    void showMoved(const QString &path);
    void noteChange(const QString &path);
    void markAll();
    /// Read when it is asked for first, and again when the description or the language has changed.
    const DescribedItems &described() const;
    /// Shows an element of a dialog that is not open, or else where the way to it begins.
    void showInDialog(const QDomElement &element, const QString &tag, const DialogRoutes::Route &route);
    FindDialog::Way wayTo(const DescribedDialog &dialog, const DialogRoutes::Route &route) const;
    void showCount();
    /// The changes are saved to a snapshot, not sent to a recorder.
    bool isOfAFile() const;

    QWidget &m_window;
    Bindings &m_bindings;
    ControlContext &m_context;
    const AdapterLookup m_adapterOf;
    ControlTable &m_controls;
    ChangePlaces m_places;
    ChangeList m_list;
    EditSteps m_steps;
    TabBadges m_badges;
    ChangeMarks m_marks{m_badges};
    FieldProblems m_problems;
    QToolButton *m_count;
    QPointer<QWidget> m_searched; ///< the dialog that the next search is about; null for everything
    mutable std::optional<DescribedItems> m_described;
    bool m_isStarted = false;            ///< a description was shown
    std::optional<QList<Change>> m_sent; ///< nothing before the first save
    QList<Change> m_keptChanges;         ///< made by the host, or saved to a file
};

} // namespace paravue
