#pragma once

#include "changes/ChangeList.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <functional>

class QDialogButtonBox;
class QLabel;
class QTreeWidget;
class QToolButton;

namespace paravue
{

/// One change as the user reads it.
struct ReviewedChange {
    Change change;
    QString caption;      ///< of the control, with its pages; empty when no open page shows the value
    int order = 0;        ///< place in the window
    bool isShown = false; ///< there is a control to go to
    bool isEdit = true;   ///< otherwise it follows from edits, and cannot be taken back
};

/// A field that holds something wrong.
struct ReviewedProblem {
    QString caption; ///< of the control, with its pages
    QString text;    ///< what is wrong
    int control = 0; ///< number in the table

    QString line() const { return caption + QStringLiteral(": ") + text; }
};

/// Lists what is going to be sent: caption, address, the value that the recorder has and the new one. Each
/// change can be taken back (Delete), or its control be shown (Enter). Above stand the fields with problems,
/// if there are any.
class ReviewDialog : public QDialog
{
    Q_OBJECT

public:
    using Changes = std::function<QList<ReviewedChange>()>;
    using Problems = std::function<QList<ReviewedProblem>()>;

    /// Both are asked anew whenever a change was taken back.
    ReviewDialog(Changes changes, Problems problems, QWidget *parent);

    /// The button "Send" besides "Close", which accepts the dialog.
    void offerSending();
    /// The path of the value whose control the user wants to see; empty for none.
    QString chosenPath() const { return m_chosenPath; }
    /// The number of the control with a problem that the user wants to see; -1 for none.
    int chosenControl() const { return m_chosenControl; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void takeBackRequested(const QStringList &paths);

private:
    void fill();
    void fillProblems();
    void goToProblem();
    void updateButtons();
    QStringList selectedPaths() const;
    void takeBack(const QStringList &paths);
    void goTo();

    Changes m_changes;
    Problems m_problems;
    QTreeWidget *m_list;
    QLabel *m_problemsTitle;
    QTreeWidget *m_problemList;
    QToolButton *m_takeBack;
    QToolButton *m_takeAllBack;
    QToolButton *m_goTo;
    QDialogButtonBox *m_buttons;
    QString m_chosenPath;
    int m_chosenControl = -1;
    bool m_offersSending = false; ///< Enter then sends
};

} // namespace paravue
