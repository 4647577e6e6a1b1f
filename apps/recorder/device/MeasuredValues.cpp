#include "recorder/device/MeasuredValues.h"

#include "recorder/files/IniValues.h"

#include <QRegularExpression>

namespace recorder
{

namespace
{

bool isMeasured(const QString &file, const QByteArray &key)
{
    static const QRegularExpression ofDisk(
        QStringLiteral("^/(DISC[0-9]+|USB)_(MODEL|SERIAL|SIZE|USED|TEMP)$"));
    if (file == QLatin1String("disk"))
        return ofDisk.match(QString::fromUtf8(key)).hasMatch();
    return file == QLatin1String("state") && key.startsWith("health/");
}

} // namespace

QByteArray withMeasuredValues(const QString &file, const QByteArray &sent, const QByteArray &kept)
{
    const QMap<QByteArray, QByteArray> sentValues = iniValues(sent);
    const QMap<QByteArray, QByteArray> keptValues = iniValues(kept);
    QMap<QByteArray, QByteArray> stale;
    for (auto value = sentValues.cbegin(); value != sentValues.cend(); ++value) {
        const auto own = keptValues.constFind(value.key());
        if (own != keptValues.cend() && *own != *value && isMeasured(file, value.key()))
            stale.insert(value.key(), *own);
    }
    return stale.isEmpty() ? sent : withIniValues(sent, stale);
}

} // namespace recorder
