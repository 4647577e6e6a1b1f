#include "device/RememberedWindows.h"

#include "device/login/SettingsFile.h"

namespace paravue
{
namespace
{

/// Names in the file are of letters and digits only, whatever a recorder is called.
QString settingOf(const QString &key)
{
    return QStringLiteral("windows/") + QString::fromLatin1(key.toUtf8().toHex());
}

} // namespace

QByteArray rememberedWindow(const QString &key)
{
    return SettingsFile::shared()->value(settingOf(key));
}

void rememberWindow(const QString &key, const QByteArray &value)
{
    SettingsFile::shared()->setValue(settingOf(key), value);
}

} // namespace paravue
