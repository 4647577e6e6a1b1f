#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace recorder
{

/// Access levels of the users file; a higher one includes the lower ones.
enum AccessLevel { GuestLevel = 0, OperatorLevel = 1, AdministratorLevel = 2 };

struct Account {
    QByteArray name;
    /// Clear text, or 32 hexadecimal digits of its MD5 digest.
    QByteArray password;
    int level = GuestLevel;
};

/// The accounts of a users file: CNT, and NAMEi, PASSWDi, LEVELi for each, counted from 0 or, when NAME0 has
/// no value, from 1.
QList<Account> readAccounts(const QByteArray &usersFile);

/// The forms in which an account's password is accepted: in clear, if that is known, and as its digest.
QList<QByteArray> acceptedPasswords(const Account &account);

/// The account with this name and password. Clients send the password in clear or as its digest, and the file
/// may hold either form.
std::optional<Account> findAccount(const QList<Account> &accounts, const QByteArray &login,
                                   const QByteArray &pass);

/// Why a users file would lock everybody out or is inconsistent; empty when it is fine.
QString accountsFault(const QByteArray &usersFile);

} // namespace recorder
