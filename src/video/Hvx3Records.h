#pragma once

#include "video/Packed.h"

#include <QByteArray>
#include <QList>

/// The records of a recorder's video stream, as docs/stream-format.md describes them.
///
/// Copying a record copies references, not bytes. Records have no alignment gaps (see paravue::Packed). Texts
/// keep the zero byte that ends them in the stream.

/// The first four bytes of a header and of an index record. Other records are data records.
inline constexpr quint32 Hvx3HeaderMagic = 0xB505B5B5;
inline constexpr quint32 Hvx3IndexMagic = 0xB5B5B505;

namespace paravue
{

/// The types of streams that the library distinguishes.
enum Hvx3StreamType : quint8 { UnusedStream = 0, VideoStream = 1, PlainStream = 2, TextStream = 4 };

/// A text of a record without the zero byte that ends it.
inline QByteArray unterminated(const QByteArray &text)
{
    const qsizetype zero = text.indexOf('\0');
    return zero < 0 ? text : text.first(zero);
}

} // namespace paravue

/// One stream of those that the header announces.
struct STREAM_T {
    quint8 streamId = 0;
    /// 1 is video and 4 is text; 2, 8 and 16 are accepted too, and data of any other type is not.
    quint8 streamType = 0;
    /// Of a video stream the codec: "mp4v", "mjpeg" or "H264".
    paravue::Packed<QByteArray> label1;
    /// The title.
    paravue::Packed<QByteArray> label2;
    /// Of a text stream the charset: "-utf8" or "-koi8".
    paravue::Packed<QByteArray> label3;
};
Q_DECLARE_TYPEINFO(STREAM_T, Q_RELOCATABLE_TYPE);

/// The header that a stream begins with.
struct HDR_T {
    quint32 magic = 0;
    /// Where the streams end and how long the tagged texts behind them are, in bytes of the stream.
    qint32 headerLength = 0;
    qint32 tagBlockLength = 0;
    paravue::Packed<QByteArray> name;
    /// In the order of the header.
    paravue::Packed<QList<STREAM_T>> streams;
    /// Always nine, by tag; the first one is never used.
    paravue::Packed<QList<QByteArray>> texts = QList<QByteArray>(9);
};

/// An index record, behind which data begins. A reader finds the next one behind damage.
struct IDX_T {
    /// The magic of the record itself.
    quint32 value1 = 0;
    /// The time of the stream in seconds.
    quint32 value2 = 0;
    quint32 value3 = 0;
    paravue::Packed<QByteArray> blob;
};

/// A frame of one stream, put together from its fragments.
struct DATA_T {
    /// The size of the payload.
    qint32 length = 0;
    /// Bits 7 and 6 are set; the others are those of the last fragment.
    quint8 flags = 0;
    quint8 streamId = 0;
    /// Only streams of type 1 have these three; of other streams they are 0. The first one is milliseconds.
    quint16 word16 = 0;
    quint8 byteA = 0;
    quint8 byteB = 0;
    /// The stream as the header announces it.
    STREAM_T stream;
    paravue::Packed<QByteArray> payload;
};

static_assert(sizeof(STREAM_T) == 2 + 3 * sizeof(QByteArray));
static_assert(sizeof(HDR_T) == 12 + sizeof(QByteArray) + sizeof(QList<STREAM_T>) + sizeof(QList<QByteArray>));
static_assert(sizeof(IDX_T) == 12 + sizeof(QByteArray));
static_assert(sizeof(DATA_T) == 10 + sizeof(STREAM_T) + sizeof(QByteArray));
