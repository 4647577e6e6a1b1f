#pragma once

#include "changes/FileValues.h"
#include "store/LinkStatus.h"
#include "ui/base/SilenceText.h"
#include "ui/sending/ForeignChangesDialog.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

class QDialogButtonBox;
class QLabel;
class QProgressBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace paravue
{

/// What a save does: the state of each file, and in the end that the recorder has what was sent, or which of
/// it it keeps otherwise, or what could not be sent. It only shows; the buttons come from whoever asks.
class SendingDialog : public QDialog
{
    Q_OBJECT

public:
    SendingDialog(const ValueTexts &texts, QWidget *parent);

    /// What the user may choose, beside closing the dialog.
    enum class Choice {
        Stop,
        SendAgain,
        SendMissing,
        ConfirmAgain,
        KeepRecorders,
        GoOnEditing,
        Leave, ///< the recorder's values untaken
        Close,
    };

    /// Something runs: \a text says what.
    void showBusy(const QString &text, const QString &stopCaption);
    /// \a activity is what the store does at the moment.
    void showSending(const SaveStatus &save, const QString &activity);
    /// To be called while something runs: nothing was sent or received for \a milliseconds.
    void showSilence(qint64 milliseconds);
    /// Silence of \a milliseconds, at first ReportedSilence, is shown.
    void setReportedSilence(qint64 milliseconds) { m_reportedSilence = milliseconds; }
    void showConfirming(const SaveStatus &save);
    void showConfirmed(const SaveStatus &save);
    void showKeptOtherwise(const QList<ValueDifference> &values);
    /// The recorder's values could not be taken into the window; \a again tries it once more.
    void showNotTaken(const QString &problem, Choice again);
    /// Everything was sent, but could not be compared.
    void showUnconfirmed(const QString &problem);
    /// Not everything was sent.
    void showFailed(const SaveStatus &save, const QString &problem);

    /// Escape and the cross choose Stop while something runs, then to go on editing, or to close when all is
    /// well.
    void reject() override;

Q_SIGNALS:
    void chosen(Choice choice);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Button {
        QString caption;
        Choice choice;
    };

    /// The first of \a buttons is the default; the last one stands for closing the dialog.
    void showState(const QString &headline, bool isBusy, const QList<Button> &buttons);
    void setButtons(const QList<Button> &buttons);
    void setFiles(const QStringList &names, const QString &state);

    const ValueTexts m_texts;
    QLabel *m_headline;
    QLabel *m_silence;
    QProgressBar *m_bar;
    QTreeWidget *m_files;
    QTreeWidget *m_values;
    QDialogButtonBox *m_buttons;
    QHash<QString, QTreeWidgetItem *> m_rows; ///< by file
    QStringList m_captions;                   ///< of the buttons
    QElapsedTimer m_offered;                  ///< since the buttons are there
    Choice m_onClosing = Choice::Stop;
    bool m_isBusy = true;
    qint64 m_reportedSilence = ReportedSilence;
};

} // namespace paravue
