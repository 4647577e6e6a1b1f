#include "recorder/device/Report.h"

#include "recorder/device/MailStore.h"
#include "recorder/files/Accounts.h"
#include "recorder/files/DataFolder.h"
#include "recorder/files/IniValues.h"
#include "recorder/files/PackageList.h"

namespace recorder
{

namespace
{

using Values = QMap<QByteArray, QByteArray>;

QByteArray line(const QByteArray &name, QByteArray value)
{
    return name + " = '" + value.replace('\'', ' ') + "'\n";
}

QByteArray section(const QByteArray &name)
{
    return "\n[ " + name + " ]\n";
}

QByteArray disks(const Values &disk)
{
    QByteArray text = section("disks");
    for (const QByteArray name : {"DISC1", "DISC2", "USB"}) {
        const auto fact = [&](const char *what) { return disk.value('/' + name + '_' + what); };
        text += line(name, fact("MODEL") + ", " + fact("USED") + " / " + fact("SIZE") + ", " + fact("TEMP") +
                               " \302\260C");
    }
    return text;
}

QByteArray packages(const QByteArray &softFile)
{
    const QList<QByteArray> titles = packageTitles(softFile);
    QByteArray text = section("packages") + line("COUNT", QByteArray::number(titles.size()));
    for (qsizetype i = 0; i < titles.size(); ++i)
        text += line("PACKAGE_" + QByteArray::number(i), titles[i]);
    return text;
}

QByteArray emails(const MailStore &store)
{
    QByteArray text = section("emails");
    for (const QByteArray disk : {"DISC1", "DISC2", "USB"})
        text += line(disk, QByteArray::number(store.count(disk)));
    return text + line("LAST", store.last());
}

} // namespace

QByteArray stateReport(const DataFolder &folder, const QByteArray &created)
{
    const auto content = [&](const char *file) {
        return folder.read(QString::fromLatin1(file)).value_or(QByteArray());
    };
    const Values soft = iniValues(content("soft"));
    const Values net = iniValues(content("net"));
    const Values state = iniValues(content("state"));
    const qsizetype accounts = readAccounts(content("users")).size();

    QByteArray text = "[ report ]\n" + line("CREATED", created);
    for (const char *name : {"MODEL", "SERIAL", "FIRMWARE"})
        text += line(name, soft.value(QByteArray("/") + name));
    text += line("NAME", iniValues(content("streams")).value("common/name"));
    text += line("TIME_ZONE", iniValues(content("time")).value("/TIME_ZONE"));
    text += line("ACCOUNTS", QByteArray::number(accounts));
    text += section("health");
    for (const char *name : {"UPTIME_DAYS", "CPU_LOAD", "MEMORY_USED"})
        text += line(name, state.value(QByteArray("health/") + name));
    text += section("network");
    for (const char *name : {"HOSTNAME", "IP", "MAC"})
        text += line(name, net.value(QByteArray("/") + name));
    return text + disks(iniValues(content("disk"))) + packages(content("soft")) + emails(MailStore(folder));
}

} // namespace recorder
