#include "device/login/RememberedLogins.h"

#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"
#include "device/login/cODAdaptor.h"
#include "store/PasswordDigest.h"

#include <QCoreApplication>

namespace paravue
{

namespace
{

/// The longest wait for the companion's list; a running companion answers far sooner.
constexpr int CompanionLimitMs = 200;

QByteArray nameAtCompanion(const QByteArray &url)
{
    if (!QCoreApplication::instance())
        return {};
    cODAdaptor *adaptor = cODAdaptor::instance();
    adaptor->waitForList(CompanionLimitMs);
    return adaptor->name(QString::fromLocal8Bit(url)).toUtf8();
}

} // namespace

void fillInLogin(Credentials &record)
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

void Save(const Credentials &record)
{
    SettingsFile::shared()->change([record](SettingsMap &settings) { saveCredentials(settings, record); });
}

} // namespace paravue
