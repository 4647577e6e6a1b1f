#pragma once

#include "FrameReader.h"
#include "StreamClock.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <map>

namespace paravue
{

/// What a recording contains of one stream.
struct StreamSurvey {
    quint8 type = 0;
    QStringList codecs; ///< one after the other, as the headers name them
    QString charset;    ///< as the header names it
    QString title;
    QList<QSize> sizes; ///< of its pictures, one after the other
    StreamClock clock;
    Hvx3StreamCounts counts;
    qint64 frames = 0;
    qint64 keyFrames = 0;
    qint64 bytes = 0;
    qint64 smallestFrame = 0;
    qint64 largestFrame = 0;
};

/// What a recording contains. Complete when the reader has read it.
class RecordingSurvey
{
public:
    explicit RecordingSurvey(const FrameReader &reader) : m_reader(reader) {}

    void takeHeader(const HDR_T &header);
    void takeIndex(qint64 time);
    void takeFrame(const RecordedFrame &frame);

    // Of the whole recording.
    qint64 bytes() const { return m_reader.bytes(); }
    bool hasAnswerToLogin() const { return m_reader.hasAnswerToLogin(); }
    qint64 unreadBytes() const { return m_reader.parser().unreadBytes(); }
    Hvx3Losses losses() const { return m_reader.parser().losses(); }
    qint64 headers() const { return m_headers - (m_reader.hasGivenHeader() ? 1 : 0); }
    bool hasGivenHeader() const { return m_reader.hasGivenHeader(); }
    qint64 indexes() const { return m_indexes; }
    /// The times of the video frames. Without any, those of the index records, which are whole seconds.
    const StreamClock &clock() const { return m_hasVideo ? m_videoClock : m_indexClock; }
    /// Of the last header.
    const QString &name() const { return m_name; }
    const QStringList &texts() const { return m_texts; }

    /// By their ids.
    std::map<quint8, StreamSurvey> streams() const;

private:
    const FrameReader &m_reader;
    std::map<quint8, StreamSurvey> m_streams;
    StreamClock m_videoClock;
    StreamClock m_indexClock;
    bool m_hasVideo = false;
    QString m_name;
    QStringList m_texts;
    qint64 m_headers = 0;
    qint64 m_indexes = 0;
};

} // namespace paravue
