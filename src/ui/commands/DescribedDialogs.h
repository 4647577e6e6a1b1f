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

/// The dialogs of the description. A dialog is found by the tag of any child of its element; it is built when
/// it opens and leaves no trace in the document when it closes, so that it opens the same way again.
class DescribedDialogs
{
public:
    /// All must outlive the object. \a window owns the dialogs and is their event filter.
    DescribedDialogs(QWidget &window, ControlContext &context, PageBuilder &builder, Bindings &bindings,
                     ActionRunner &actions, TimeTasks &tasks, RetiredWidgets &retired);

    /// Runs the dialog until it is closed. \a runModal is what runs it; reports an unknown tag. A dialog that
    /// is open already stays as it is.
    void run(const QString &tag, const std::function<void(QDialog &)> &runModal);
    /// Opens the dialog beside the window, or leaves it open. False when there is no such dialog.
    bool show(const QString &tag);
    /// Closes what show() has opened.
    void close(const QString &tag);
    void closeAll();

private:
    struct OpenDialog {
        QDomElement element;
        QPointer<QDialog> dialog;
        QList<int> controls;
        QList<QDomElement> tasks;
        bool isModal = true;    ///< its end is waited for, and then it is deleted
        quint64 loopsBegun = 0; ///< when it was built
    };

    /// Null when the dialog was closed while it was being opened, or when too many are open.
    QDialog *open(const QDomElement &element);
    OpenDialog *find(const QDomElement &element);
    void closed(QDialog *dialog);
    /// Drops what the dialog has put into the tables and the document.
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
