#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

namespace paravue
{

/// Shows how far a save is. The Stop button does not have the focus and Enter does not press it; it only asks
/// for the end by stopRequested(), as closing the dialog and Escape do.
class SaveProgressDialog : public QDialog
{
    Q_OBJECT

public:
    SaveProgressDialog();

    void setProgress(int percent, const QString &activity);
    void reject() override { Q_EMIT stopRequested(); }

Q_SIGNALS:
    void stopRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *m_activity;
    QProgressBar *m_bar;
};

} // namespace paravue
