#include "recorder/device/DeviceFunctions.h"

#include "recorder/device/MeasuredValues.h"
#include "recorder/device/Report.h"
#include "recorder/files/DataFolder.h"
#include "recorder/files/DebPackage.h"
#include "recorder/files/IniValues.h"
#include "recorder/files/PackageList.h"

namespace recorder
{

namespace
{

/// What a reset of the settings restores. Packages and the contents of disks stay.
constexpr const char *SettingsFiles[] = {"streams", "net", "time", "timers", "disk", "users", "state"};
constexpr const char *PictureValues[] = {"brightness", "contrast", "saturation", "hue", "sharpness"};

QByteArray diskOf(const QByteArray &body)
{
    return iniValues(body).value("/DISC");
}

bool isPercentage(const QByteArray &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 && number <= 100;
}

} // namespace

Answer DeviceFunctions::run(Function function, const QByteArray &body, const QByteArray &now) const
{
    switch (function) {
    case Function::AdjustPicture:
        return adjustPicture(body);
    case Function::ClearEmails:
        return clearEmails(body);
    case Function::Format:
        return format(body);
    case Function::InstallPackage:
        return installPackage(body);
    case Function::Reboot:
        return reboot();
    case Function::RemovePackage:
        return removePackage(body);
    case Function::Report:
        return okAnswer(stateReport(m_folder, now));
    case Function::ResetSettings:
        return resetSettings();
    case Function::SendTestEmail:
        return sendTestEmail(now);
    }
    return errorAnswer(QStringLiteral("unknown command"));
}

QByteArray DeviceFunctions::content(const char *file) const
{
    return m_folder.read(QString::fromLatin1(file)).value_or(QByteArray());
}

Answer DeviceFunctions::store(const char *file, const QByteArray &content) const
{
    return m_folder.replace(QString::fromLatin1(file), content)
               ? okAnswer()
               : errorAnswer(QStringLiteral("the file %1 cannot be written").arg(QLatin1String(file)));
}

bool DeviceFunctions::hasDisk(const QByteArray &disk) const
{
    return !disk.isEmpty() && iniValues(content("disk")).contains('/' + disk + "_SIZE");
}

Answer DeviceFunctions::missingDisk(const QByteArray &disk) const
{
    return errorAnswer(QStringLiteral("there is no disk %1").arg(QString::fromUtf8(disk.left(32))));
}

Answer DeviceFunctions::format(const QByteArray &body) const
{
    const QByteArray disk = diskOf(body);
    if (!hasDisk(disk))
        return missingDisk(disk);
    if (!m_mails.clear(disk))
        return errorAnswer(QStringLiteral("the disk cannot be written"));
    return store("disk", withIniValues(content("disk"), {{'/' + disk + "_USED", "0G"}}));
}

Answer DeviceFunctions::clearEmails(const QByteArray &body) const
{
    const QByteArray disk = diskOf(body);
    if (!hasDisk(disk))
        return missingDisk(disk);
    return m_mails.clear(disk) ? okAnswer() : errorAnswer(QStringLiteral("the disk cannot be written"));
}

Answer DeviceFunctions::adjustPicture(const QByteArray &body) const
{
    const QMap<QByteArray, QByteArray> sent = iniValues(body);
    const QMap<QByteArray, QByteArray> known = iniValues(content("streams"));
    if (sent.isEmpty())
        return errorAnswer(QStringLiteral("there is nothing to adjust"));
    for (auto value = sent.cbegin(); value != sent.cend(); ++value) {
        const QByteArray name = value.key().mid(value.key().indexOf('/') + 1);
        const bool isPicture =
            std::find(std::begin(PictureValues), std::end(PictureValues), name) != std::end(PictureValues);
        if (!isPicture || !known.contains(value.key()))
            return errorAnswer(QStringLiteral("%1 cannot be adjusted").arg(QString::fromUtf8(name.left(32))));
        if (!isPercentage(value.value()))
            return errorAnswer(
                QStringLiteral("%1 is no number from 0 to 100").arg(QString::fromUtf8(name.left(32))));
    }
    return store("streams", withIniValues(content("streams"), sent));
}

Answer DeviceFunctions::installPackage(const QByteArray &body) const
{
    const DebPackage package = readDebPackage(body);
    if (!package.fault.isEmpty())
        return errorAnswer(package.fault);
    const PackageChange change = withPackage(content("soft"), package);
    return change.fault.isEmpty() ? store("soft", change.softFile) : errorAnswer(change.fault);
}

Answer DeviceFunctions::removePackage(const QByteArray &body) const
{
    const QByteArray name = iniValues(body).value("/PACKAGE_DELETE");
    const PackageChange change = withoutPackage(content("soft"), name);
    return change.fault.isEmpty() ? store("soft", change.softFile) : errorAnswer(change.fault);
}

Answer DeviceFunctions::reboot() const
{
    const QByteArray state = content("state");
    Answer answer = iniValues(state).contains("health/UPTIME_DAYS")
                        ? store("state", withIniValues(state, {{"health/UPTIME_DAYS", "0"}}))
                        : okAnswer();
    answer.restarts = answer.accepted;
    return answer;
}

Answer DeviceFunctions::resetSettings() const
{
    for (const char *file : SettingsFiles) {
        const QString name = QString::fromLatin1(file);
        const std::optional<QByteArray> shipped = m_folder.shipped(name);
        if (!shipped || !m_folder.replace(name, withMeasuredValues(name, *shipped, content(file))))
            return errorAnswer(QStringLiteral("the file %1 cannot be written").arg(name));
    }
    return okAnswer();
}

Answer DeviceFunctions::sendTestEmail(const QByteArray &now) const
{
    const QMap<QByteArray, QByteArray> net = iniValues(content("net"));
    if (net.value("/SMTP_SERVER").isEmpty())
        return errorAnswer(QStringLiteral("there is no mail server"));
    const QByteArray receiver = net.value("/MAIL_TO");
    if (receiver.isEmpty())
        return errorAnswer(QStringLiteral("the e-mail has no receiver"));
    if (!m_mails.add("DISC1", now + " to " + receiver + ": test, " + net.value("/MAIL_SUBJECT")))
        return errorAnswer(QStringLiteral("the disk cannot be written"));
    Answer answer = okAnswer();
    answer.logText = QStringLiteral("OK, test e-mail to %1").arg(QString::fromUtf8(receiver));
    return answer;
}

} // namespace recorder
