#pragma once

#include "hvx3-info/FormatHandles.h"
#include "video/FfmpegHandles.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace paravue::bench
{

/// The \a pictures of an H.264 stream, 25 per second, in a container \a format of libavformat such as
/// "mpegts".
QByteArray muxed(const char *format, const QList<QByteArrayView> &pictures);

struct PictureCount {
    qint64 pictures = 0;
    qint64 bytes = 0;
};

/// Reads a container with libavformat, which gets it in pieces of 64 KiB, each copied as from a socket.
class Demuxer
{
public:
    static constexpr qsizetype PieceSize = 64 * 1024;

    /// The \a flags of an AVFormatContext are added to the usual ones. Reads the head of the container.
    Demuxer(const char *format, const QByteArray &bytes, int flags = 0);

    /// Reads all pictures.
    PictureCount readAll();

private:
    static int read(void *demuxer, uint8_t *to, int size);
    static int64_t seek(void *demuxer, int64_t offset, int whence);

    QByteArray m_bytes;
    qsizetype m_at = 0;
    IoHandle m_io;
    InputHandle m_input;
    PacketHandle m_packet;
};

} // namespace paravue::bench
