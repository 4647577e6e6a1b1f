#pragma once

#include <QEventLoop>
#include <QObject>

class QDialog;

namespace paravue
{

/// Runs a dialog modally, in place of its own exec(): a text that is thrown through that leaves the dialog
/// with a loop that is gone, and closing the dialog afterwards would use it.
class DialogLoop : public QObject
{
public:
    /// Shows \a dialog and returns when it is hidden, whatever hid it. It may be deleted meanwhile.
    static void run(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogLoop(QDialog &dialog);

    QEventLoop m_loop;
};

} // namespace paravue
