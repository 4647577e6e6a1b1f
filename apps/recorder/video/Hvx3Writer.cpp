#include "recorder/video/Hvx3Writer.h"

#include <QtEndian>

#include <algorithm>

namespace recorder
{

namespace
{

constexpr quint32 HeaderMark = 0xB505B5B5;
constexpr quint32 IndexMark = 0xB5B5B505;
constexpr quint8 FirstFragment = 0x80;
constexpr quint8 LastFragment = 0x40;
constexpr qsizetype MaxBlob = 255;

template <typename Number>
QByteArray number(Number value)
{
    value = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

QByteArray text(const QByteArray &bytes)
{
    return QByteArray(bytes.constData()) + '\0';
}

/// \a prefix stands in the first record only.
QList<QByteArray> records(quint8 streamId, const QByteArray &frame, int fragmentSize,
                          const QByteArray &prefix)
{
    const qsizetype most = std::clamp<qsizetype>(fragmentSize, 1, 65535);
    QList<QByteArray> result;
    qsizetype position = 0;
    do {
        const qsizetype length = std::min(most, frame.size() - position);
        const bool isFirst = position == 0;
        const bool isLast = position + length == frame.size();
        const quint8 flags = (isFirst ? FirstFragment : 0) | (isLast ? LastFragment : 0);
        result.append(number(quint16(length)) + number(flags) + number(streamId) +
                      (isFirst ? prefix : QByteArray()) + frame.sliced(position, length));
        position += length;
    } while (position < frame.size());
    return result;
}

} // namespace

QByteArray headerRecord(const QByteArray &name, const QList<StreamDescription> &streams,
                        const QList<TaggedText> &texts)
{
    QByteArray list = text(name);
    for (const StreamDescription &stream : streams)
        list += number(stream.id) + number(stream.type) + text(stream.label) + text(stream.title) +
                text(stream.charset);
    QByteArray tagged;
    for (const TaggedText &entry : texts)
        tagged += number(entry.tag) + text(entry.text);
    const qsizetype fixedPart = sizeof HeaderMark + 2 * sizeof(quint16);
    return number(HeaderMark) + number(quint16(fixedPart + list.size())) + number(quint16(tagged.size())) +
           list + tagged;
}

QByteArray indexRecord(quint32 seconds, quint32 ordinal, const QByteArray &blob)
{
    const QByteArray rest = blob.left(MaxBlob);
    return number(IndexMark) + number(seconds) + number(ordinal) + number(quint8(rest.size())) + rest;
}

QList<QByteArray> dataRecords(quint8 streamId, const QByteArray &frame, int fragmentSize)
{
    return records(streamId, frame, fragmentSize, {});
}

QList<QByteArray> videoRecords(quint8 streamId, const QByteArray &frame, int fragmentSize,
                               quint16 milliseconds)
{
    const QByteArray ownUse(2, '\0');
    return records(streamId, frame, fragmentSize, number(milliseconds) + ownUse);
}

} // namespace recorder
