#pragma once

#include "video/Hvx3Records.h"

#include <QByteArray>
#include <QList>
#include <QObject>

class cHvx3Parser;

namespace paravue::fuzz
{

/// Records what a parser emits, and requires of each record what holds for all streams.
class StreamLog : public QObject
{
public:
    /// \a limit is that of the \a parser, which must not have been given any bytes yet.
    StreamLog(const cHvx3Parser &parser, int limit);

    /// Every field of every record, so that equal logs mean equal records. The records themselves are not
    /// kept, as the parser reuses their memory.
    const QList<QByteArray> &records() const { return m_records; }
    /// The least number of bytes that the records take in the stream.
    qint64 usedBytes() const { return m_usedBytes; }

private:
    void noteHeader(const HDR_T &header);
    void noteIndex(const IDX_T &index);
    void noteFrame(const DATA_T &frame);
    bool isAnnounced(const STREAM_T &stream) const;

    QList<QByteArray> m_records;
    QList<STREAM_T> m_streams;
    qint64 m_usedBytes = 0;
    int m_limit;
    bool m_headerSeen = false;
    bool m_indexSeen = false;
};

} // namespace paravue::fuzz
