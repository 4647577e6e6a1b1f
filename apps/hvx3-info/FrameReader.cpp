#include "FrameReader.h"

#include "Recording.h"
#include "video/VideoLimits.h"

namespace paravue
{

namespace
{

constexpr qint64 MillisecondsPerIndexSecond = 1000;

} // namespace

FrameReader::FrameReader(const QByteArray &header) : m_givenHeader(header)
{
    m_parser.setMaxFrameSize(MaxFrameBytes);
    const auto connect = [this](auto signal, auto slot) {
        QObject::connect(&m_parser, signal, &m_parser, slot, Qt::DirectConnection);
    };
    connect(&cHvx3Parser::onHDR, [this](const HDR_T &header) {
        if (onHeader)
            onHeader(header);
    });
    connect(&cHvx3Parser::onIDX, [this](const IDX_T &index) {
        if (onIndex)
            onIndex(index.value2 * MillisecondsPerIndexSecond);
    });
    connect(&cHvx3Parser::onDATA, [this](const DATA_T &record) { takeFrame(record); });
}

void FrameReader::read(const QString &file)
{
    m_parser.append(m_givenHeader);
    readRecording(file, [this](const QByteArray &piece) {
        m_bytes += piece.size();
        parse(piece);
        return true;
    });
    m_parser.append(m_start);
}

/// Collects the first bytes, as the pieces of a pipe may be as short as a byte.
void FrameReader::parse(const QByteArray &piece)
{
    if (m_hasStarted)
        return m_parser.append(piece);
    m_start += piece;
    const QByteArray answer(AnswerToLogin);
    if (answer.size() > m_start.size() && answer.startsWith(m_start))
        return;
    m_hasStarted = true;
    m_hasAnswer = m_start.startsWith(answer);
    m_parser.append(m_start.mid(m_hasAnswer ? answer.size() : 0));
    m_start.clear();
}

void FrameReader::takeFrame(const DATA_T &record)
{
    if (!onFrame)
        return;
    const qint64 second = m_parser.index().value2 * MillisecondsPerIndexSecond;
    onFrame({record, second + record.word16, inspect(record)});
}

PictureFacts FrameReader::inspect(const DATA_T &record)
{
    if (record.stream.streamType != VideoStream)
        return {};
    const QByteArray label = unterminated(record.stream.label1);
    const auto [at, isNew] = m_inspected.try_emplace(record.streamId);
    Inspected &inspected = at->second;
    if (isNew || inspected.label != label)
        inspected = {label, PictureInspector::create(label)};
    return inspected.inspector ? inspected.inspector->inspect(record.payload) : PictureFacts();
}

} // namespace paravue
