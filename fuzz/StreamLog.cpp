#include "StreamLog.h"

#include "Require.h"

#include "video/cHvx3Parser.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>

namespace paravue::fuzz
{

namespace
{

constexpr quint8 VideoType = 1;
constexpr quint8 WholeFlags = 0xC0;
constexpr int IndexSize = 13;

/// Also makes the sanitizer check every byte of \a text.
bool isText(const QByteArray &text)
{
    return text.endsWith('\0') && text.indexOf('\0') == text.size() - 1;
}

/// An empty value and a null one count as equal: no consumer tells them apart.
void write(QDataStream &out, const QByteArray &bytes)
{
    out.writeBytes(bytes.constData(), bytes.size());
}

void write(QDataStream &out, const STREAM_T &stream)
{
    out << stream.streamId << stream.streamType;
    write(out, stream.label1);
    write(out, stream.label2);
    write(out, stream.label3);
}

bool areEqual(const STREAM_T &a, const STREAM_T &b)
{
    return a.streamType == b.streamType && a.label1 == b.label1 && a.label2 == b.label2 &&
           a.label3 == b.label3;
}

} // namespace

StreamLog::StreamLog(const cHvx3Parser &parser, int limit) : m_limit(limit)
{
    connect(&parser, &cHvx3Parser::onHDR, this, [this](const HDR_T &header) { noteHeader(header); });
    connect(&parser, &cHvx3Parser::onIDX, this, [this](const IDX_T &index) { noteIndex(index); });
    connect(&parser, &cHvx3Parser::onDATA, this, [this](const DATA_T &frame) { noteFrame(frame); });
}

void StreamLog::noteHeader(const HDR_T &header)
{
    const QByteArray name = header.name;
    const QList<QByteArray> texts = header.texts;
    require(header.magic == Hvx3HeaderMagic, "a header begins with its magic");
    require(header.headerLength >= 0 && header.headerLength <= 0xFFFF, "a header length has 16 bits");
    require(header.tagBlockLength >= 0 && header.tagBlockLength <= 0xFFFF, "a tag block length has 16 bits");
    require(isText(name), "the name is a text");
    require(texts.size() == 9 && texts.at(0).isEmpty(), "there are nine texts, the first one empty");

    m_headerSeen = true;
    m_indexSeen = false;
    m_streams = header.streams;
    qint64 used = 8 + name.size();
    QByteArray record("header");
    QDataStream out(&record, QIODevice::Append);
    out << header.headerLength << header.tagBlockLength;
    write(out, name);
    for (const STREAM_T &stream : std::as_const(m_streams)) {
        require(isText(stream.label1) && isText(stream.label2) && isText(stream.label3), "labels are texts");
        used += 2 + stream.label1.size() + stream.label2.size() + stream.label3.size();
        write(out, stream);
    }
    require(m_streams.isEmpty() || used <= header.headerLength, "streams lie within the header length");
    for (const QByteArray &text : texts) {
        require(text.isEmpty() || isText(text), "tagged texts are texts");
        used += text.isEmpty() ? 0 : 1 + text.size();
        write(out, text);
    }
    require(used <= m_limit, "a header is no larger than the limit");
    m_usedBytes += used;
    m_records << record;
}

void StreamLog::noteIndex(const IDX_T &index)
{
    const QByteArray blob = index.blob;
    require(m_headerSeen, "an index record comes behind a header");
    require(index.value1 == Hvx3IndexMagic, "an index record begins with its magic");
    require(blob.size() <= 255, "the length of the rest has 8 bits");
    m_indexSeen = true;
    m_usedBytes += IndexSize + blob.size();
    QByteArray record("index");
    QDataStream out(&record, QIODevice::Append);
    out << index.value2 << index.value3;
    write(out, blob);
    m_records << record;
}

void StreamLog::noteFrame(const DATA_T &frame)
{
    const QByteArray payload = frame.payload;
    const bool isVideo = frame.stream.streamType == VideoType;
    require(m_indexSeen, "a frame comes behind an index record");
    require(frame.length == payload.size(), "the length is that of the payload");
    require(frame.length <= m_limit, "a frame is no larger than the limit");
    require((frame.flags & WholeFlags) == WholeFlags, "a frame is whole");
    require(frame.streamId == frame.stream.streamId && isAnnounced(frame.stream),
            "a frame is one of the first stream with its id");
    require(isVideo || (frame.word16 == 0 && frame.byteA == 0 && frame.byteB == 0),
            "only video has an extension");
    require(frame.byteA >= 4 || frame.word16 < 3000, "the milliseconds are folded");
    m_usedBytes += (isVideo ? 8 : 4) + payload.size();
    QByteArray record("frame");
    QDataStream out(&record, QIODevice::Append);
    out << frame.flags << frame.word16 << frame.byteA << frame.byteB;
    write(out, payload);
    write(out, frame.stream);
    m_records << record;
}

bool StreamLog::isAnnounced(const STREAM_T &stream) const
{
    const auto first = std::find_if(m_streams.begin(), m_streams.end(), [&](const STREAM_T &announced) {
        return announced.streamId == stream.streamId;
    });
    const quint8 type = stream.streamType;
    const bool accepted = type == 1 || type == 2 || type == 4 || type == 8 || type == 16;
    return accepted && first != m_streams.end() && areEqual(*first, stream);
}

} // namespace paravue::fuzz
