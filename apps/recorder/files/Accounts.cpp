#include "recorder/files/Accounts.h"

#include "recorder/files/IniValues.h"

#include <QCryptographicHash>
#include <QSet>

#include <algorithm>

namespace recorder
{

namespace
{

constexpr int MaxAccounts = 256;

QByteArray digest(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

bool isDigest(const QByteArray &text)
{
    return text.size() == 32 && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
           });
}

bool passwordFits(const QByteArray &stored, const QByteArray &sent)
{
    if (sent == stored)
        return true;
    if (isDigest(stored))
        return sent.toLower() == stored.toLower() || digest(sent) == stored.toLower();
    return sent.toLower() == digest(stored);
}

} // namespace

QList<Account> readAccounts(const QByteArray &usersFile)
{
    const QMap<QByteArray, QByteArray> values = iniValues(usersFile);
    const auto field = [&](const char *name, int index) {
        return values.value('/' + (name + QByteArray::number(index)));
    };
    const int count = std::clamp(values.value("/CNT").toInt(), 0, MaxAccounts);
    const int first = field("NAME", 0).isEmpty() ? 1 : 0;
    QList<Account> accounts;
    for (int index = first; index < first + count; ++index)
        accounts.append({field("NAME", index), field("PASSWD", index), field("LEVEL", index).toInt()});
    return accounts;
}

QList<QByteArray> acceptedPasswords(const Account &account)
{
    if (isDigest(account.password))
        return {account.password, account.password.toLower()};
    return {account.password, digest(account.password)};
}

std::optional<Account> findAccount(const QList<Account> &accounts, const QByteArray &login,
                                   const QByteArray &pass)
{
    for (const Account &account : accounts) {
        if (!login.isEmpty() && account.name == login && passwordFits(account.password, pass))
            return account;
    }
    return std::nullopt;
}

QString accountsFault(const QByteArray &usersFile)
{
    const QList<Account> accounts = readAccounts(usersFile);
    QSet<QByteArray> names;
    for (const Account &account : accounts) {
        if (account.name.isEmpty())
            return QStringLiteral("a user has no name");
        if (names.contains(account.name))
            return QStringLiteral("the user name %1 is used twice").arg(QString::fromUtf8(account.name));
        names.insert(account.name);
    }
    const bool hasAdministrator = std::any_of(accounts.begin(), accounts.end(), [](const Account &account) {
        return account.level >= AdministratorLevel;
    });
    return hasAdministrator ? QString() : QStringLiteral("no administrator would be left");
}

} // namespace recorder
