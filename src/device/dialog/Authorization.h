#pragma once

#include "device/login/RememberedLogins.h"

namespace paravue
{

/// With \a ask, asks the user in a modal dialog for the login to the recorder at \a record.url; returns false
/// when the user gave up. Without, fills \a record in as fillInLogin() does.
bool Authorize(Credentials &record, bool ask);

/// Asks the user in a dialog and keeps logins in the settings file. Gives up at once in a program that has no
/// widgets.
class CredentialsDialogs : public CredentialsSource
{
public:
    bool ask(Credentials &record) override;
    void save(const Credentials &record) override;

private:
    QByteArray m_lastUrl; ///< the question before
    QByteArray m_lastLogin;
};

} // namespace paravue
