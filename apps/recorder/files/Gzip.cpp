#include "recorder/files/Gzip.h"

#include <zlib.h>

#include <limits>

namespace recorder
{

namespace
{

constexpr int GzipWindow = 15 + 16; // 16 asks zlib for a gzip header instead of its own

} // namespace

QByteArray gzip(const QByteArray &plain)
{
    constexpr int MemoryLevel = 8;
    if (plain.size() > std::numeric_limits<uInt>::max() / 2)
        return {};
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, GzipWindow, MemoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        return {};
    QByteArray packed(qsizetype(deflateBound(&stream, uLong(plain.size()))), Qt::Uninitialized);
    // zlib does not write through next_in; it only lacks the const.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(plain.constData()));
    stream.avail_in = uInt(plain.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = uInt(packed.size());
    const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    packed.truncate(done ? qsizetype(stream.total_out) : 0);
    deflateEnd(&stream);
    return packed;
}

QByteArray gunzip(const QByteArray &packed, qsizetype most)
{
    z_stream stream{};
    if (packed.size() > std::numeric_limits<uInt>::max() || inflateInit2(&stream, GzipWindow) != Z_OK)
        return {};
    QByteArray plain(most, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.constData()));
    stream.avail_in = uInt(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(plain.data());
    stream.avail_out = uInt(plain.size());
    const bool done = inflate(&stream, Z_FINISH) == Z_STREAM_END;
    plain.truncate(done ? qsizetype(stream.total_out) : 0);
    inflateEnd(&stream);
    return plain;
}

bool isGzip(const QByteArray &bytes)
{
    return bytes.startsWith("\x1f\x8b");
}

} // namespace recorder
