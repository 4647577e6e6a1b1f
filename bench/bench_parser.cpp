// The parser of the video stream beside a memcpy of the same bytes in the same pieces.

#include "PairedRatio.h"

#include "support/Hvx3Bytes.h"
#include "video/cHvx3Parser.h"

#include <QCoreApplication>

#include <cstring>
#include <random>
#include <stdexcept>

using namespace paravue::test;
using paravue::bench::applyPaired;
using paravue::bench::pairedRatio;

namespace
{

constexpr qsizetype KiB = 1024;
constexpr qsizetype MiB = 1024 * KiB;
constexpr qsizetype TcpPiece = 1460;

/// A stream, cut into pieces as a socket would hand them out.
struct Pieces {
    Pieces(const QByteArray &stream, qsizetype size) : bytes(stream.size())
    {
        for (qsizetype at = 0; at < stream.size(); at += size)
            list.append(stream.mid(at, size));
    }
    qsizetype bytes;
    QList<QByteArray> list;
};

QByteArray beginning()
{
    return hvx3Header({Hvx3Stream()}) + hvx3Index(1);
}

QByteArray noise(qsizetype size)
{
    std::mt19937 random(1);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random());
    return bytes;
}

/// Frames of 2 to 200 KiB in fragments of up to 32 KiB, with an index record before every 25th.
QByteArray live(qsizetype size)
{
    const QByteArray picture = noise(200 * KiB);
    std::mt19937 random(2);
    std::uniform_int_distribution<qsizetype> frameSize(2 * KiB, 200 * KiB);
    QByteArray stream = hvx3Header({Hvx3Stream()});
    stream.reserve(size + MiB);
    for (quint32 i = 0; stream.size() < size; ++i) {
        if (i % 25 == 0)
            stream += hvx3Index(i / 25);
        stream += hvx3Frame(0, QByteArrayView(picture).first(frameSize(random)), 32 * KiB);
    }
    return stream;
}

/// Bytes that belong to no record before the first index record.
QByteArray garbageStream(qsizetype size)
{
    return hvx3Header({Hvx3Stream()}) + noise(size) + hvx3Index(1);
}

/// Records of 64 bytes.
QByteArray smallRecords(qsizetype size)
{
    return beginning() + hvx3Frame(0, QByteArray(56, 'x'), 56).repeated(size / 64);
}

/// Frames of 10,000 fragments each.
QByteArray fragments(qsizetype size)
{
    constexpr qsizetype FrameSize = 4 * MiB;
    const QByteArray frame = hvx3Frame(0, QByteArray(FrameSize, 'x'), FrameSize / 9999);
    return beginning() + frame.repeated(size / FrameSize);
}

/// A header with a name of \a size bytes, which is searched for its end.
QByteArray headerStream(qsizetype size)
{
    return hvx3Header({}, QByteArray(size, 'x')) + hvx3Index(1);
}

/// Takes the frames as the demuxer does, by value.
class Frames : public QObject
{
public:
    explicit Frames(const cHvx3Parser &parser)
    {
        connect(&parser, &cHvx3Parser::onDATA, this, &Frames::take, Qt::DirectConnection);
        connect(&parser, &cHvx3Parser::onIDX, this, [this](IDX_T) { ++m_indexes; });
    }
    bool hasSome() const { return m_frames > 0 || m_indexes > 0; }

private:
    void take(DATA_T frame)
    {
        ++m_frames;
        benchmark::DoNotOptimize(frame);
    }

    qint64 m_frames = 0;
    qint64 m_indexes = 0;
};

void parse(const Pieces &pieces)
{
    cHvx3Parser parser;
    const Frames frames(parser);
    for (const QByteArray &piece : pieces.list)
        parser.append(piece);
    if (!frames.hasSome())
        throw std::runtime_error("nothing was found in the stream");
}

/// Ours beside a memcpy of all pieces to one place that holds them all.
void besideMemcpy(benchmark::State &state, const Pieces &pieces, double limit)
{
    QByteArray copy(pieces.bytes, '\0');
    pairedRatio(
        state, [&] { parse(pieces); },
        [&] {
            char *to = copy.data();
            for (const QByteArray &piece : pieces.list) {
                std::memcpy(to, piece.constData(), size_t(piece.size()));
                to += piece.size();
            }
            benchmark::DoNotOptimize(copy.data());
        },
        {.limit = limit});
}

using MakeStream = QByteArray (*)(qsizetype size);

/// Ours for a long stream beside ours for short ones that are as long together, each with its own parser, per
/// byte. So both read as much memory, and what differs is the length of a stream alone.
void besideShorter(benchmark::State &state, MakeStream make, qsizetype longer, qsizetype shorter,
                   qsizetype piece, double limit = 1.3)
{
    const Pieces ours(make(longer), piece);
    QList<Pieces> peers;
    qsizetype peerBytes = 0;
    for (qsizetype i = 0; i < longer / shorter; ++i) {
        peers.append(Pieces(make(shorter), piece));
        peerBytes += peers.last().bytes;
    }
    pairedRatio(
        state, [&] { parse(ours); },
        [&] {
            for (const Pieces &peer : peers)
                parse(peer);
        },
        {.limit = limit, .ourUnits = double(ours.bytes), .peerUnits = double(peerBytes)});
}

void liveStream(benchmark::State &state)
{
    besideMemcpy(state, Pieces(live(64 * MiB), state.range(0)), 2.5);
}
BENCHMARK(liveStream)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void garbage(benchmark::State &state)
{
    besideMemcpy(state, Pieces(garbageStream(64 * MiB), state.range(0)), 5);
}
BENCHMARK(garbage)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void growthOfLiveStream(benchmark::State &state)
{
    besideShorter(state, live, 64 * MiB, 4 * MiB, state.range(0));
}
BENCHMARK(growthOfLiveStream)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void growthOfSingleBytes(benchmark::State &state)
{
    besideShorter(state, live, 8 * MiB, 1 * MiB, 1);
}
BENCHMARK(growthOfSingleBytes)->Apply(applyPaired);

void growthOfGarbage(benchmark::State &state)
{
    besideShorter(state, garbageStream, 64 * MiB, 4 * MiB, TcpPiece);
}
BENCHMARK(growthOfGarbage)->Apply(applyPaired);

void growthOfFragments(benchmark::State &state)
{
    besideShorter(state, fragments, 64 * MiB, 4 * MiB, TcpPiece);
}
BENCHMARK(growthOfFragments)->Apply(applyPaired);

void growthOfSmallRecords(benchmark::State &state)
{
    besideShorter(state, smallRecords, 64 * MiB, 4 * MiB, TcpPiece);
}
BENCHMARK(growthOfSmallRecords)->Apply(applyPaired);

void growthOfHeader(benchmark::State &state)
{
    // Short, as all of it has to be kept: beyond a few MiB fresh pages of memory would be measured.
    besideShorter(state, headerStream, 2 * MiB, 128 * KiB, TcpPiece, 2);
}
BENCHMARK(growthOfHeader)->Apply(applyPaired);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
