#pragma once

#include "Outcome.h"
#include "device/login/Credentials.h"

#include <QString>

#include <functional>
#include <memory>

namespace paravue
{

struct ControlCommandLine;

/// Puts the login of \a line into \a address, in the form that OrbNetSetup takes: that of the address, of the
/// password file, of the environment, or the remembered one.
Outcome completeAddress(const ControlCommandLine &line, QString &address);

/// Asks on the terminal, once, when a login is refused; gives up when standard input is no terminal. Keeps
/// nothing. Calls \a typed when something was typed.
std::unique_ptr<CredentialsSource> terminalLogin(const QString &login, const std::function<void()> &typed);

} // namespace paravue
