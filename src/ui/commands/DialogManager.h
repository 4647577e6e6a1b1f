#pragma once

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

class QDialog;
class QWidget;

namespace paravue
{

class ActionRunner;
class Bindings;
class ControlContext;
class PageBuilder;
class RetiredWidgets;
class TimeTasks;

/// The dialogs of the description. A dialog is found by the tag of any child of its element. It is built when
/// it opens, and its decorations leave the document when it closes.
class DialogManager
{
public:
    /// All must outlive the object. \a window owns the dialogs and is their event filter.
    DialogManager(QWidget &window, ControlContext &context, PageBuilder &builder, Bindings &bindings,
                  ActionRunner &actions, TimeTasks &tasks, RetiredWidgets &retired);

    /// Runs the dialog with \a runModal until it is closed. Reports an unknown tag. Does nothing when the
    /// dialog is open already.
    void run(const QString &tag, const std::function<void(QDialog &)> &runModal);
    /// Opens the dialog beside the window, or leaves it open. False when there is no such dialog.
    bool show(const QString &tag);
    /// Closes what show() has opened.
    void close(const QString &tag);
    /// Accepts the dialog that was opened last of those whose element \a isMeant, if any is open.
    void closeLast(const std::function<bool(const QDomElement &)> &isMeant);
    void closeAll();
    /// Updates the titles of the dialogs that are open.
    void showTitles();

private:
    struct OpenDialog {
        QDomElement element;
        QPointer<QDialog> dialog;
        QList<int> controls;
        QList<QDomElement> tasks;
        bool isModal = true;    ///< run() waits for its end and deletes it
        quint64 loopsBegun = 0; ///< when it was built
    };

    /// Null when the dialog was closed while it was being opened, or when too many are open.
    QDialog *open(const QDomElement &element);
    OpenDialog *find(const QDomElement &element);
    void closed(QDialog *dialog);
    /// Removes the dialog's controls, tasks and decorations.
    void release(const OpenDialog &open);
    QString title(const QDomElement &element) const;

    QWidget &m_window;
    ControlContext &m_context;
    PageBuilder &m_builder;
    Bindings &m_bindings;
    ActionRunner &m_actions;
    TimeTasks &m_tasks;
    RetiredWidgets &m_retired;
    std::vector<OpenDialog> m_open;
};

} // namespace paravue
