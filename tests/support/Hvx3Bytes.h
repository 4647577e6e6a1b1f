#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

/// The bytes of a recorder's video stream, record by record, for tests and benchmarks.
namespace paravue::test
{

struct Hvx3Stream {
    quint8 id = 0;
    quint8 type = 1;
    QByteArray label1 = "H264";
    QByteArray label2 = "Camera";
    QByteArray label3 = "-utf8";
};

struct Hvx3Extension {
    quint16 word16 = 0;
    quint8 byteA = 0;
    quint8 byteB = 0;
};

enum Hvx3Fragment : quint8 {
    MiddleFragment = 0x00,
    LastFragment = 0x40,
    FirstFragment = 0x80,
    WholeFrame = 0xC0
};

/// A header whose lengths fit what it holds. \a tagBlock is the bytes of the tagged texts.
QByteArray hvx3Header(const QList<Hvx3Stream> &streams, const QByteArray &name = "Recorder",
                      const QByteArray &tagBlock = QByteArray());
/// A header with the given lengths in front of \a rest.
QByteArray hvx3Header(quint16 headerLength, quint16 tagBlockLength, const QByteArray &rest);
QByteArray hvx3StreamBytes(const Hvx3Stream &stream);
QByteArray hvx3Index(quint32 value2, quint32 value3 = 0, const QByteArray &blob = QByteArray());
/// A data record of a stream without extension, or a fragment that has none.
QByteArray hvx3Data(quint8 streamId, quint8 flags, QByteArrayView payload);
/// A first or whole fragment of a video stream.
QByteArray hvx3Data(quint8 streamId, quint8 flags, QByteArrayView payload, const Hvx3Extension &extension);
/// A frame of a video stream in fragments of up to \a size bytes.
QByteArray hvx3Frame(quint8 streamId, QByteArrayView payload, qsizetype size,
                     const Hvx3Extension &extension = Hvx3Extension());

} // namespace paravue::test
