// Requires that each record of any stream reaches its consumers and no others, and that a consumer may
// destroy itself, remove all consumers or parse more of the stream.
//
// Input: a byte that chooses the consumers, one that chooses what one of them does and when, one that chooses
// how the stream is cut, the stream.

#include "FuzzInput.h"
#include "Require.h"
#include "StreamConsumer.h"

#include "video/cHvx3Demuxer.h"
#include "video/cHvx3Parser.h"

#include <map>
#include <memory>

using namespace paravue::fuzz;
using Call = StreamConsumer::Call;

namespace
{

constexpr quint64 MillisecondsPerSecond = 1000;

/// A demuxer behind a parser, and the calls that it makes for the current record.
class DemuxerCheck
{
public:
    DemuxerCheck(quint8 consumers, quint8 action);
    void feed(const QByteArray &piece) { m_parser.append(piece); }

private:
    enum Action { None, EndItself, ForgetAll, FeedMore };

    void addConsumer(int key);
    void noteCall(int key, const Call &call);
    void misbehave(int key);
    void begin() { m_calls.clear(); }
    void expectHeader(const HDR_T &header);
    void expectTime(quint64 milliseconds);
    void expectFrame(const DATA_T &frame);
    void expect(int key, Call::Kind kind, const QByteArray &bytes = {});
    void expectTitle(int key, const QByteArray &title);
    void expectNothingElse();
    bool misbehaves() const { return m_action != None; }

    cHvx3Parser m_parser;
    cHvx3Demuxer m_demuxer;
    std::map<int, std::unique_ptr<StreamConsumer>> m_consumers;
    QList<std::pair<int, Call>> m_calls;
    quint64 m_time = 0;
    Action m_action;
    int m_callsUntilAction;
};

DemuxerCheck::DemuxerCheck(quint8 consumers, quint8 action)
    : m_action(Action(action % 4)), m_callsUntilAction(action / 4)
{
    for (const int id : {0, 1, 2, 3, 255}) {
        if (consumers >> (id % 5) & 1)
            addConsumer(id);
        if (consumers & 0x20)
            addConsumer(cHvx3Demuxer::TitleKey + id);
    }
    if (consumers & 0x40)
        addConsumer(cHvx3Demuxer::HeaderTextKey);
    if (consumers & 0x80)
        addConsumer(cHvx3Demuxer::ClockKey);

    // Connected in the order of the calls: before the demuxer, the demuxer, after it.
    QObject *const context = &m_demuxer;
    QObject::connect(&m_parser, &cHvx3Parser::onHDR, context, [this] { begin(); });
    QObject::connect(&m_parser, &cHvx3Parser::onIDX, context, [this] { begin(); });
    QObject::connect(&m_parser, &cHvx3Parser::onDATA, context, [this] { begin(); });
    QObject::connect(&m_parser, &cHvx3Parser::onHDR, &m_demuxer, &cHvx3Demuxer::hdr_slot);
    QObject::connect(&m_parser, &cHvx3Parser::onIDX, &m_demuxer, &cHvx3Demuxer::idx_slot);
    QObject::connect(&m_parser, &cHvx3Parser::onDATA, &m_demuxer, &cHvx3Demuxer::data_slot);
    QObject::connect(&m_demuxer, &cHvx3Demuxer::timer, context, [this](quint64 time) { m_time = time; });
    if (misbehaves())
        return;
    QObject::connect(&m_parser, &cHvx3Parser::onHDR, context,
                     [this](const HDR_T &header) { expectHeader(header); });
    QObject::connect(&m_parser, &cHvx3Parser::onIDX, context, [this](const IDX_T &index) {
        expectTime(index.value2 * MillisecondsPerSecond);
        expectNothingElse();
    });
    QObject::connect(&m_parser, &cHvx3Parser::onDATA, context,
                     [this](const DATA_T &frame) { expectFrame(frame); });
}

void DemuxerCheck::addConsumer(int key)
{
    m_consumers[key] = std::make_unique<StreamConsumer>(
        key, [this](int called, const Call &call) { noteCall(called, call); });
    m_demuxer.consumers()[key] = m_consumers[key].get();
}

void DemuxerCheck::noteCall(int key, const Call &call)
{
    require(m_consumers.count(key) == 1, "who is called is a consumer");
    m_calls.append({key, call});
    if (misbehaves() && m_callsUntilAction-- == 0)
        misbehave(key);
}

void DemuxerCheck::misbehave(int key)
{
    switch (m_action) {
    case EndItself:
        m_consumers.erase(key);
        break;
    case ForgetAll:
        m_demuxer.create();
        m_consumers.clear();
        break;
    case FeedMore:
        m_parser.append(QByteArray::fromHex("05b5b5b5ffffffff0000000000"
                                            "0200c000ffff0400abcd"));
        break;
    case None:
        break;
    }
}

void DemuxerCheck::expectHeader(const HDR_T &header)
{
    const QList<STREAM_T> streams = header.streams;
    const QList<QByteArray> texts = header.texts;
    for (const STREAM_T &stream : streams) {
        if (stream.streamType == 1 || stream.streamType == 4)
            expect(stream.streamId, Call::CreateWithText);
        else if (stream.streamType == 2)
            expect(stream.streamId, Call::CreatePlain);
    }
    expectTitle(cHvx3Demuxer::HeaderTextKey, header.name);
    expect(cHvx3Demuxer::ClockKey, Call::CreateWithText);
    for (const STREAM_T &stream : streams) {
        if (stream.streamType != 0)
            expectTitle(cHvx3Demuxer::TitleKey + stream.streamId, stream.label2);
    }
    expectNothingElse();
}

void DemuxerCheck::expectTitle(int key, const QByteArray &title)
{
    expect(key, Call::CreateWithText);
    expect(key, Call::AppendBytes, title);
}

void DemuxerCheck::expectFrame(const DATA_T &frame)
{
    const quint64 time = m_parser.index().value2 * MillisecondsPerSecond + frame.word16;
    if (m_consumers.count(frame.streamId) && frame.stream.streamType == 1)
        expectTime(time);
    expect(frame.streamId, Call::AppendBytes, frame.payload);
    expectNothingElse();
}

void DemuxerCheck::expectTime(quint64 milliseconds)
{
    require(m_time == milliseconds, "the time is that of the record");
    if (m_consumers.count(cHvx3Demuxer::ClockKey))
        require(!m_calls.isEmpty() && m_calls.first().second.milliseconds == milliseconds,
                "the clock gets the time");
    expect(cHvx3Demuxer::ClockKey, Call::AppendTime);
}

/// Requires that this was the next call, if the key has a consumer.
void DemuxerCheck::expect(int key, Call::Kind kind, const QByteArray &bytes)
{
    if (!m_consumers.count(key))
        return;
    require(!m_calls.isEmpty(), "a consumer gets what is for it");
    const auto [called, call] = m_calls.takeFirst();
    require(called == key, "a consumer gets its own");
    require(call.kind == kind && call.bytes == bytes, "a consumer gets the right bytes in the right slot");
}

void DemuxerCheck::expectNothingElse()
{
    require(m_calls.isEmpty(), "nobody gets what is for others");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const quint8 consumers = input.takeByte();
    const quint8 action = input.takeByte();
    const quint8 seed = input.takeByte();
    DemuxerCheck check(consumers, action);
    for (const QByteArray &piece : cutAtRandom(input.rest(), seed))
        check.feed(piece);
    return 0;
}
