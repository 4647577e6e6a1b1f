#pragma once

#include "ExportRoute.h"
#include "FormatHandles.h"
#include "StreamClock.h"

#include <QSaveFile>

#include <map>
#include <type_traits>

namespace paravue
{

/// A Matroska or MP4 file that is being written. Until commit() it has another name; without it, it is gone.
/// All functions throw a MediaError.
class MediaFile
{
public:
    /// Whether the ending of \a name is that of a format which can be written.
    static bool isKnownName(const QString &name);

    MediaFile(const QString &name, const ExportFile &content);

    void write(const RecordedFrame &frame);
    /// Completes the file, which keeps its other name.
    void finish();
    void commit();

    const QString &name() const { return m_name; }
    /// How many times were moved because they were not behind the one before.
    qint64 movedTimes() const { return m_movedTimes; }
    int timesSetBack() const;

private:
    struct Track {
        int index = 0;
        StreamClock clock;
        qint64 last = -1;
        qint64 step = 1;
    };

    void addTrack(quint8 streamId, const PictureFacts &facts, qint64 begin);
    /// Checks what a function of FFmpeg has returned.
    void require(int result) const;

    // FFmpeg 7 made them constant.
    using WrittenByte = std::conditional_t<(LIBAVFORMAT_VERSION_MAJOR < 61), uint8_t, const uint8_t>;
    static int writeBytes(void *file, WrittenByte *bytes, int size);
    static int64_t seek(void *file, int64_t offset, int whence);

    QString m_name;
    QSaveFile m_file;
    IoHandle m_io;
    FormatHandle m_format;
    PacketHandle m_packet;
    std::map<quint8, Track> m_tracks;
    qint64 m_movedTimes = 0;
};

} // namespace paravue
