#pragma once

#include "ExportRoute.h"
#include "FormatHandles.h"
#include "StreamClock.h"

#include <QSaveFile>

#include <map>
#include <type_traits>

namespace paravue
{

/// A Matroska or MP4 file that is being written. It has a temporary name until commit() and is removed
/// without commit(). All functions throw a MediaError.
class MediaFile
{
public:
    /// Whether the suffix of \a name is that of a format that can be written.
    static bool isKnownName(const QString &name);

    MediaFile(const QString &name, const ExportFile &content);

    void write(const RecordedFrame &frame);
    /// Completes the file, which keeps its temporary name.
    void finish();
    void commit();

    const QString &name() const { return m_name; }
    /// The number of pictures that are not shown at their times, because several have the same time or come
    /// in another order.
    qint64 movedTimes() const;
    int timesSetBack() const;

private:
    struct Track {
        int index = 0;
        StreamClock clock;
        PictureTimes times;
        qint64 lastDecoded = 0;
        qint64 step = 1;
    };

    void addTrack(quint8 streamId, const PictureFacts &facts, const ExportFile &content);
    /// Throws when \a result, which a function of FFmpeg has returned, is an error.
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
};

} // namespace paravue
