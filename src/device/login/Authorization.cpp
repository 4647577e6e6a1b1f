#include "device/login/Authorization.h"

#include "controls/DialogLoop.h"
#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"
#include "device/login/cDlg.h"
#include "device/login/cODAdaptor.h"
#include "store/PasswordDigest.h"

#include <QApplication>
#include <QPointer>

namespace paravue
{

namespace
{

/// The longest wait for the companion's list; a running companion answers far sooner.
constexpr int CompanionLimitMs = 200;

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

QByteArray nameAtCompanion(const QByteArray &url)
{
    if (!QCoreApplication::instance())
        return {};
    cODAdaptor *adaptor = cODAdaptor::instance();
    adaptor->waitForList(CompanionLimitMs);
    return adaptor->name(QString::fromLocal8Bit(url)).toUtf8();
}

void fillIn(Credentials &record)
{
    if (record.name.isEmpty())
        record.name = nameAtCompanion(record.url);
    if (const auto saved = savedCredentials(SettingsFile::shared()->all(), record.url)) {
        record.level = saved->level;
        record.login = saved->login;
        record.password = saved->password;
    } else {
        record.login = record.level > 0 ? "admin" : "guest";
        record.password = passwordDigest({});
    }
}

} // namespace

bool Authorize(Credentials &record, bool ask)
{
    if (ask)
        return askUser(record);
    fillIn(record);
    return true;
}

void Save(const Credentials &record)
{
    SettingsFile::shared()->change([record](SettingsMap &settings) { saveCredentials(settings, record); });
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
