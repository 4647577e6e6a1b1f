#include "snapshots/SnapshotManifest.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace paravue
{

namespace
{

class ManifestText
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotManifest)
};

const QString Format = QStringLiteral("paravue-snapshot");
constexpr int Version = 1;
constexpr int ChecksumBytes = 32;
constexpr qsizetype LongestName = 500;

QString damagedManifest()
{
    return ManifestText::tr("The list of contents of the snapshot is damaged.");
}

/// A short text in one line; what is longer was not written by this program.
QString shortText(const QJsonValue &value)
{
    return value.toString().left(LongestName).simplified();
}

bool readFiles(const QJsonObject &listed, QHash<QString, SnapshotManifest::File> &files)
{
    for (auto entry = listed.begin(); entry != listed.end(); ++entry) {
        const QJsonObject properties = entry->toObject();
        const QByteArray text = properties.value(QLatin1StringView("sha256")).toString().toLatin1();
        const auto sum = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
        const double size = properties.value(QLatin1StringView("size")).toDouble(-1);
        constexpr double Largest = 1e15;
        if (!sum || (*sum).size() != ChecksumBytes || !(size >= 0 && size <= Largest))
            return false;
        files.insert(entry.key(), {qint64(size), *sum});
    }
    return true;
}

} // namespace

QByteArray SnapshotManifest::toJson() const
{
    QJsonObject listed;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        const QByteArray sum = file->sha256.toBase64(QByteArray::OmitTrailingEquals);
        listed.insert(file.key(), QJsonObject{{QStringLiteral("size"), file->size},
                                              {QStringLiteral("sha256"), QString::fromLatin1(sum)}});
    }
    const QJsonObject manifest{
        {QStringLiteral("format"), Format},
        {QStringLiteral("version"), Version},
        {QStringLiteral("recorder"), info.recorder},
        {QStringLiteral("model"), info.model},
        {QStringLiteral("firmware"), info.firmware},
        {QStringLiteral("time"), info.time.toUTC().toString(Qt::ISODateWithMs)},
        {QStringLiteral("leftOut"), QJsonArray::fromStringList(info.leftOut)},
        {QStringLiteral("files"), listed},
    };
    return QJsonDocument(manifest).toJson(QJsonDocument::Compact);
}

QString SnapshotManifest::read(const QByteArray &json, SnapshotManifest &manifest)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.isEmpty())
        return damagedManifest();
    if (object.value(QLatin1StringView("format")).toString() != Format)
        return ManifestText::tr("The file is no snapshot of a recorder.");
    const int version = object.value(QLatin1StringView("version")).toInt();
    if (version > Version)
        return ManifestText::tr("The snapshot was written by a newer version of this program.");
    SnapshotManifest found;
    found.info.recorder = shortText(object.value(QLatin1StringView("recorder")));
    found.info.model = shortText(object.value(QLatin1StringView("model")));
    found.info.firmware = shortText(object.value(QLatin1StringView("firmware")));
    found.info.time =
        QDateTime::fromString(object.value(QLatin1StringView("time")).toString(), Qt::ISODateWithMs).toUTC();
    const QJsonValue leftOut = object.value(QLatin1StringView("leftOut"));
    for (const QJsonValue path : leftOut.toArray())
        found.info.leftOut << path.toString();
    const QJsonValue files = object.value(QLatin1StringView("files"));
    if (version < 1 || !found.info.time.isValid() || !leftOut.isArray() || !files.isObject() ||
        !readFiles(files.toObject(), found.files))
        return damagedManifest();
    manifest = std::move(found);
    return {};
}

} // namespace paravue
