#pragma once

#include <QEventLoop>
#include <QObject>

class QDialog;

namespace paravue
{

/// Runs a dialog modally in place of QDialog::exec(). An exception that passes through exec() leaves the
/// dialog with a pointer to an event loop that no longer exists, which closing the dialog would use.
class DialogLoop : public QObject
{
public:
    /// Shows \a dialog and returns when it is hidden for any reason, or deleted.
    static void run(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogLoop(QDialog &dialog);

    QEventLoop m_loop;
};

} // namespace paravue
