#pragma once

#include "video/FrameAssembler.h"
#include "video/HeaderReader.h"
#include "video/cDataSplitter.h"

#include <QObject>

#include <array>

namespace paravue
{

/// What a parser has dropped.
struct Hvx3Losses {
    /// Bytes that belong to no record, and the number of places where they stood.
    qint64 bytes = 0;
    qint64 gaps = 0;
    /// Fragments whose frame has no first one.
    qint64 fragments = 0;
    /// Frames that were not finished before the next frame of their stream, the next index record or the
    /// limit of their size.
    qint64 frames = 0;
};

} // namespace paravue

/// Finds the records in a recorder's video stream (docs/stream-format.md) that arrives in pieces, and puts
/// frames together that were sent in fragments.
///
/// The signals are emitted from within append(), in the order of the stream, and do not depend on how the
/// stream is cut into pieces. Behind damage the parser searches for the next index record, or for a header,
/// which begins the stream anew. There are no errors: what cannot be used is dropped and counted in losses().
///
/// A parser is for one connection. The records are passed by value and through direct connections.
class cHvx3Parser : public QObject
{
    Q_OBJECT

public:
    explicit cHvx3Parser(QObject *parent = nullptr);

    /// Limits the bytes of a frame, of all unfinished frames together and of a header; larger ones are
    /// dropped. Without a limit a hostile stream takes all memory.
    void setMaxFrameSize(int bytes);

    /// The last header and the last index record, empty before the first ones.
    const HDR_T &header() const { return m_header; }
    const IDX_T &index() const { return m_index; }
    paravue::Hvx3Losses losses() const;
    const paravue::Hvx3StreamCounts &counts(quint8 streamId) const { return m_frames.counts(streamId); }
    /// Bytes of a record that is not complete.
    qsizetype unreadBytes() const { return m_input.size() + m_recordBytes; }

public Q_SLOTS:
    void append(const QByteArray &bytes);

Q_SIGNALS:
    void onHDR(HDR_T header);
    void onIDX(IDX_T index);
    /// A whole frame.
    void onDATA(DATA_T frame);

private:
    /// InPayload: the head of a data record was read.
    enum State { AwaitHeader = 0, AwaitIndex = 1, InData = 2, InPayload };

    bool takeWhole(QByteArrayView piece);
    void feed();
    void parse();
    bool isGarbageBefore(QByteArrayView rest) const;
    void keepRest();
    bool step();
    bool headerStep();
    bool indexStep();
    bool headerOrIndexStep();
    bool dataStep();
    bool requireBytes(int size);
    bool payloadStep();
    void addPayload(QByteArrayView bytes);
    bool skipTo(qsizetype magicAt);
    bool readHeader();
    bool dropLargeHeader();
    void skip(qsizetype bytes);

    HDR_T m_header;
    IDX_T m_index;
    paravue::FrameAssembler m_frames;
    State m_state = AwaitHeader;
    cDataSplitter m_input;
    /// The rest of the piece that append() was given, which m_input has not got yet.
    QByteArrayView m_rest;
    /// So many bytes at least are missing of the header, or of the head of the data record, at the front.
    qsizetype m_missing = 0;
    /// The stream of the data record whose payload is being read, how much of the payload is to come, and how
    /// many of the record's bytes were read.
    int m_recordStream = 0;
    int m_payloadLeft = 0;
    qsizetype m_recordBytes = 0;

    paravue::HeaderReader m_headerReader;
    /// The streams of the header, and for each stream id its place among them or -1.
    QList<STREAM_T> m_streams;
    std::array<qint16, 256> m_streamAt;
    int m_maxFrameSize;
    bool m_inGap = false;
    qint64 m_lostBytes = 0;
    qint64 m_gaps = 0;
};
