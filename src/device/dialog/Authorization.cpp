#include "device/dialog/Authorization.h"

#include "controls/DialogLoop.h"
#include "device/dialog/cDlg.h"
#include "device/login/cODAdaptor.h"

#include <QApplication>
#include <QPointer>

namespace paravue
{

namespace
{

bool askUser(Credentials &record)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return false;
    // As a child of the window that is active, or that would keep the keyboard.
    QWidget *above = QApplication::activeModalWidget();
    auto dialog =
        std::make_unique<cDlg>(record, cODAdaptor::instance(), above ? above : QApplication::activeWindow());
    if (record.isAfterRefusal)
        dialog->tellRefusal();
    // The parent may be destroyed meanwhile, and the dialog with it.
    const QPointer<cDlg> alive(dialog.get());
    DialogLoop::run(*dialog);
    if (!alive) {
        static_cast<void>(dialog.release());
        return false;
    }
    return dialog->result() == QDialog::Accepted;
}

} // namespace

bool Authorize(Credentials &record, bool ask)
{
    if (ask)
        return askUser(record);
    fillInLogin(record);
    return true;
}

bool CredentialsDialogs::ask(Credentials &record)
{
    // Whoever mistyped the password need not type the login again.
    if (record.login.isEmpty() && record.url == m_lastUrl)
        record.login = m_lastLogin;
    const bool isAnswered = Authorize(record, true);
    m_lastUrl = record.url;
    m_lastLogin = record.login;
    return isAnswered;
}

void CredentialsDialogs::save(const Credentials &record)
{
    Save(record);
}

} // namespace paravue
