#pragma once

#include <QString>

namespace paravue
{

/// \a text as it may stand in a log that users send to others: on one line of limited length, and without
/// what gives access to a recorder. That is the account in an address (login:password\@host) and every digest
/// of a password, which logs in like the password itself.
QString logText(const QString &text);

} // namespace paravue
