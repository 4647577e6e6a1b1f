#include "Hvx3Bytes.h"

#include <QtEndian>

#include <algorithm>

namespace paravue::test
{

namespace
{

template <typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof(Number), Qt::Uninitialized);
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray cString(const QByteArray &text)
{
    return text + '\0';
}

QByteArray dataHead(quint8 streamId, quint8 flags, qsizetype length)
{
    return littleEndian(quint16(length)) + char(flags) + char(streamId);
}

} // namespace

QByteArray hvx3Header(quint16 headerLength, quint16 tagBlockLength, const QByteArray &rest)
{
    return littleEndian(quint32(0xB505B5B5)) + littleEndian(headerLength) + littleEndian(tagBlockLength) +
           rest;
}

QByteArray hvx3Header(const QList<Hvx3Stream> &streams, const QByteArray &name, const QByteArray &tagBlock)
{
    QByteArray rest = cString(name);
    for (const Hvx3Stream &stream : streams)
        rest += hvx3StreamBytes(stream);
    return hvx3Header(quint16(8 + rest.size()), quint16(tagBlock.size()), rest + tagBlock);
}

QByteArray hvx3StreamBytes(const Hvx3Stream &stream)
{
    return QByteArray(1, char(stream.id)) + char(stream.type) + cString(stream.label1) +
           cString(stream.label2) + cString(stream.label3);
}

QByteArray hvx3Index(quint32 value2, quint32 value3, const QByteArray &blob)
{
    return littleEndian(quint32(0xB5B5B505)) + littleEndian(value2) + littleEndian(value3) +
           char(blob.size()) + blob;
}

QByteArray hvx3Data(quint8 streamId, quint8 flags, QByteArrayView payload)
{
    return dataHead(streamId, flags, payload.size()).append(payload);
}

QByteArray hvx3Data(quint8 streamId, quint8 flags, QByteArrayView payload, const Hvx3Extension &extension)
{
    QByteArray bytes = dataHead(streamId, flags, payload.size()) + littleEndian(extension.word16) +
                       char(extension.byteA) + char(extension.byteB);
    return bytes.append(payload);
}

QByteArray hvx3Frame(quint8 streamId, QByteArrayView payload, qsizetype size, const Hvx3Extension &extension)
{
    if (payload.size() <= size)
        return hvx3Data(streamId, WholeFrame, payload, extension);
    QByteArray bytes = hvx3Data(streamId, FirstFragment, payload.first(size), extension);
    for (qsizetype at = size; at < payload.size(); at += size) {
        const bool last = at + size >= payload.size();
        bytes += hvx3Data(streamId, last ? LastFragment : MiddleFragment,
                          payload.sliced(at, std::min(size, payload.size() - at)));
    }
    return bytes;
}

} // namespace paravue::test
