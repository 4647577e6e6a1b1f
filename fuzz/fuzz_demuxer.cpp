// Whatever a stream is, each of its records reaches the consumers that it is for and no others. Consumers
// that end themselves, forget all others or feed more of the stream are survived.
//
// Input: a byte that chooses the consumers, one that chooses what one of them does and when, one that chooses
// the borders, the stream.

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

/// A demuxer behind a parser, and what it is seen to do with the record under way.
class Bench
{
public:
    Bench(quint8 consumers, quint8 deed);
    void feed(const QByteArray &piece) { m_parser.append(piece); }

private:
    enum Deed { None, EndItself, ForgetAll, FeedMore };

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
    bool misbehaves() const { return m_deed != None; }

    cHvx3Parser m_parser;
    cHvx3Demuxer m_demuxer;
    std::map<int, std::unique_ptr<StreamConsumer>> m_consumers;
    QList<std::pair<int, Call>> m_calls;
    quint64 m_time = 0;
    Deed m_deed;
    int m_callsUntilDeed;
};

Bench::Bench(quint8 consumers, quint8 deed) : m_deed(Deed(deed % 4)), m_callsUntilDeed(deed / 4)
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

    // In this order: before the demuxer has the record, the demuxer, behind it.
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

void Bench::addConsumer(int key)
{
    m_consumers[key] = std::make_unique<StreamConsumer>(
        key, [this](int called, const Call &call) { noteCall(called, call); });
    m_demuxer.consumers()[key] = m_consumers[key].get();
}

void Bench::noteCall(int key, const Call &call)
{
    require(m_consumers.count(key) == 1, "who is called is a consumer");
    m_calls.append({key, call});
    if (misbehaves() && m_callsUntilDeed-- == 0)
        misbehave(key);
}

void Bench::misbehave(int key)
{
    switch (m_deed) {
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

void Bench::expectHeader(const HDR_T &header)
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

void Bench::expectTitle(int key, const QByteArray &title)
{
    expect(key, Call::CreateWithText);
    expect(key, Call::AppendBytes, title);
}

void Bench::expectFrame(const DATA_T &frame)
{
    const quint64 time = m_parser.index().value2 * MillisecondsPerSecond + frame.word16;
    if (m_consumers.count(frame.streamId) && frame.stream.streamType == 1)
        expectTime(time);
    expect(frame.streamId, Call::AppendBytes, frame.payload);
    expectNothingElse();
}

void Bench::expectTime(quint64 milliseconds)
{
    require(m_time == milliseconds, "the time is that of the record");
    if (m_consumers.count(cHvx3Demuxer::ClockKey))
        require(!m_calls.isEmpty() && m_calls.first().second.milliseconds == milliseconds,
                "the clock gets the time");
    expect(cHvx3Demuxer::ClockKey, Call::AppendTime);
}

/// The next call is this one, if the key has a consumer.
void Bench::expect(int key, Call::Kind kind, const QByteArray &bytes)
{
    if (!m_consumers.count(key))
        return;
    require(!m_calls.isEmpty(), "a consumer gets what is for it");
    const auto [called, call] = m_calls.takeFirst();
    require(called == key, "a consumer gets its own");
    require(call.kind == kind && call.bytes == bytes, "a consumer gets the right bytes in the right slot");
}

void Bench::expectNothingElse()
{
    require(m_calls.isEmpty(), "nobody gets what is for others");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const quint8 consumers = input.takeByte();
    const quint8 deed = input.takeByte();
    const quint8 seed = input.takeByte();
    Bench bench(consumers, deed);
    for (const QByteArray &piece : cutAtRandom(input.rest(), seed))
        bench.feed(piece);
    return 0;
}
