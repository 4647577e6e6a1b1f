#include "RecordingSurvey.h"

#include <QStringDecoder>

#include <set>

#ifdef Q_OS_WIN
#include <string>

#include <windows.h>
#endif

namespace paravue
{

namespace
{

/// Bounds for texts, which may be of any length, and for changes of codec and size, of which each picture may
/// be one.
constexpr qsizetype MaxText = 200;
constexpr qsizetype MaxChanges = 8;

constexpr int CharsetTag = 1;

/// Null when the bytes are none.
QString fromUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString() : text;
}

/// Null where nothing knows this encoding.
QString fromKoi8(const QByteArray &bytes)
{
#ifdef Q_OS_WIN
    // Qt knows it from ICU, without which it is built for Windows.
    constexpr UINT Koi8R = 20866;
    std::wstring wide(size_t(bytes.size()), L'\0'); // one letter for each byte
    const int length =
        MultiByteToWideChar(Koi8R, 0, bytes.constData(), int(bytes.size()), wide.data(), int(wide.size()));
    return length > 0 ? QString::fromWCharArray(wide.data(), length) : QString();
#else
    QStringDecoder decoder("KOI8-R");
    return decoder.isValid() ? QString(decoder(bytes)) : QString();
#endif
}

/// A text for the user. Control characters, which a terminal would execute, become question marks.
QString readable(const QByteArray &field, const QByteArray &charset)
{
    const QByteArray bytes = unterminated(field).left(MaxText);
    QString text = charset == "-koi8" ? fromKoi8(bytes) : fromUtf8(bytes);
    if (text.isNull())
        text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        if (!character.isPrint() && !character.isSurrogate())
            character = u'?';
    }
    return text;
}

template <typename Value>
void addChange(QList<Value> &values, const Value &value)
{
    if (values.size() < MaxChanges && (values.isEmpty() || values.last() != value))
        values.append(value);
}

} // namespace

void RecordingSurvey::takeHeader(const HDR_T &header)
{
    ++m_headers;
    const QList<QByteArray> texts = header.texts;
    const QByteArray charset = unterminated(texts.value(CharsetTag));
    m_name = readable(header.name, charset);
    m_texts.clear();
    for (const QByteArray &text : texts)
        m_texts.append(readable(text, charset));
    // The first stream with an id counts.
    std::set<quint8> described;
    for (const STREAM_T &stream : header.streams.value()) {
        if (!described.insert(stream.streamId).second)
            continue;
        StreamSurvey &survey = m_streams[stream.streamId];
        survey.type = stream.streamType;
        survey.title = readable(stream.label2, charset);
        survey.charset = readable(stream.label3, {});
        addChange(survey.codecs, readable(stream.label1, {}));
    }
}

void RecordingSurvey::takeIndex(qint64 time)
{
    ++m_indexes;
    m_indexClock.advance(time);
}

void RecordingSurvey::takeFrame(const RecordedFrame &frame)
{
    // Frames of other streams only have the time of the last index record.
    if (frame.record.stream.streamType == VideoStream) {
        m_hasVideo = true;
        m_videoClock.advance(frame.time);
    }
    StreamSurvey &survey = m_streams[frame.record.streamId];
    survey.clock.advance(frame.time);
    const qint64 size = frame.record.length;
    survey.bytes += size;
    survey.smallestFrame = survey.frames == 0 ? size : qMin(survey.smallestFrame, size);
    survey.largestFrame = qMax(survey.largestFrame, size);
    ++survey.frames;
    survey.keyFrames += frame.picture.isKey ? 1 : 0;
    if (!frame.picture.size.isEmpty())
        addChange(survey.sizes, frame.picture.size);
}

std::map<quint8, StreamSurvey> RecordingSurvey::streams() const
{
    std::map<quint8, StreamSurvey> streams = m_streams;
    for (auto &[id, survey] : streams)
        survey.counts = m_reader.parser().counts(id);
    return streams;
}

} // namespace paravue
