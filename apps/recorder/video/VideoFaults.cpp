#include "recorder/video/VideoFaults.h"

#include "recorder/files/RecorderText.h"
#include "recorder/video/Hvx3Writer.h"

#include <bit>

namespace recorder
{

namespace
{

constexpr quint8 UnknownStream = 77;
const QString StallPrefix = QStringLiteral("stall=");

} // namespace

QStringList videoFaultNames()
{
    return {QStringLiteral("garbage"), QStringLiteral("lost"),  QStringLiteral("header"),
            QStringLiteral("unknown"), QStringLiteral("stall"), QStringLiteral("size"),
            QStringLiteral("codec"),   QStringLiteral("slow"),  QStringLiteral("jump")};
}

std::optional<VideoFaults> readVideoFaults(const QString &list, QString &reason)
{
    VideoFaults faults;
    for (QString name : list.split(u',')) {
        if (name.startsWith(StallPrefix)) {
            bool isNumber = false;
            faults.stall = name.mid(StallPrefix.size()).toInt(&isNumber);
            if (!isNumber || faults.stall < 1 || faults.stall > VideoFaults::MaxStall) {
                reason = RecorderText::tr("a stall lasts 1 to %1 milliseconds").arg(VideoFaults::MaxStall);
                return std::nullopt;
            }
            name = QStringLiteral("stall");
        }
        const qsizetype number = videoFaultNames().indexOf(name);
        if (number < 0) {
            reason = RecorderText::tr("there is no fault \"%1\", only %2")
                         .arg(name, videoFaultNames().join(QStringLiteral(", ")));
            return std::nullopt;
        }
        faults.kinds |= 1u << number;
    }
    return faults;
}

FaultInjector::FaultInjector(const VideoFaults &faults) : m_faults(faults), m_random(faults.seed) {}

bool FaultInjector::isDue(VideoFaults::Kind kind) const
{
    if (!m_faults.has(kind))
        return false;
    const int every = std::max(1, m_faults.every);
    const int place = std::popcount(m_faults.kinds & (quint32(kind) - 1)) + 1;
    const int places = std::popcount(m_faults.kinds) + 1;
    return m_picture % every == qint64(place) * every / places;
}

QStringList FaultInjector::damage(QList<QByteArray> &records)
{
    QStringList done;
    const auto anyPlace = [&] { return m_random.bounded(int(records.size()) + 1); };
    m_losesFragment = m_losesFragment || isDue(VideoFaults::LostFragments);
    if (m_losesFragment && records.size() > 1) {
        const int lost = m_random.bounded(int(records.size()));
        done << QStringLiteral("lost: fragment %1 of %2").arg(lost + 1).arg(records.size());
        records.removeAt(lost);
        m_losesFragment = false;
    }
    if (isDue(VideoFaults::Garbage)) {
        const QByteArray bytes = garbage();
        done << QStringLiteral("garbage: %1 bytes").arg(bytes.size());
        records.insert(anyPlace(), bytes);
    }
    if (isDue(VideoFaults::UnknownStreams)) {
        done << QStringLiteral("unknown: a record of stream %1").arg(UnknownStream);
        records.insert(anyPlace(), dataRecords(UnknownStream, "nobody knows this stream", 65535).join());
    }
    return done;
}

/// Random bytes that cannot contain the magic number of a record.
QByteArray FaultInjector::garbage()
{
    constexpr int Min = 8;
    constexpr int Max = 400;
    constexpr int FirstByte = 0x80;
    constexpr int LastByte = 0xB4;
    QByteArray bytes(m_random.bounded(Min, Max), '\0');
    for (char &byte : bytes)
        byte = char(m_random.bounded(FirstByte, LastByte));
    return bytes;
}

} // namespace recorder
