#pragma once

#include <QByteArray>
#include <QList>

/// Writes the records of a video stream (docs/stream-format.md).
namespace recorder
{

struct StreamDescription {
    enum Type : quint8 { Video = 1, Clock = 2, Text = 4 };

    quint8 id = 0;
    quint8 type = Video;
    QByteArray label; ///< the codec
    QByteArray title;
    QByteArray charset; ///< such as "-utf8"
};

struct TaggedText {
    quint8 tag = 1; ///< 1 to 8
    QByteArray text;
};

/// Texts are cut at their first zero byte.
QByteArray headerRecord(const QByteArray &name, const QList<StreamDescription> &streams,
                        const QList<TaggedText> &texts);

/// A position at which reading can begin. The blob has at most 255 bytes.
QByteArray indexRecord(quint32 seconds, quint32 number, const QByteArray &blob = {});

/// One frame of a stream, split into records with at most \a fragmentSize bytes (1 to 65535) of it each.
QList<QByteArray> dataRecords(quint8 streamId, const QByteArray &frame, int fragmentSize);
/// The same for a video stream, whose first record has the milliseconds since the index record (below 3000).
QList<QByteArray> videoRecords(quint8 streamId, const QByteArray &frame, int fragmentSize,
                               quint16 milliseconds);

} // namespace recorder
