#pragma once

#include "changes/ChangeList.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <functional>

class QDialogButtonBox;
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
};

/// Lists what is going to be sent: caption, address, the value that the recorder has and the new one. Each
/// change can be taken back (Delete), or its control be shown (Enter).
class ReviewDialog : public QDialog
{
    Q_OBJECT

public:
    using Changes = std::function<QList<ReviewedChange>()>;

    /// \a changes is asked anew whenever one was taken back.
    ReviewDialog(Changes changes, QWidget *parent);

    /// The button "Send" besides "Close", which accepts the dialog.
    void offerSending();
    /// The path of the value whose control the user wants to see; empty for none.
    QString chosenPath() const { return m_chosenPath; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void takeBackRequested(const QStringList &paths);

private:
    void fill();
    void updateButtons();
    QStringList selectedPaths() const;
    void takeBack(const QStringList &paths);
    void goTo();

    Changes m_changes;
    QTreeWidget *m_list;
    QToolButton *m_takeBack;
    QToolButton *m_takeAllBack;
    QToolButton *m_goTo;
    QDialogButtonBox *m_buttons;
    QString m_chosenPath;
    bool m_offersSending = false; ///< Enter then sends
};

} // namespace paravue
