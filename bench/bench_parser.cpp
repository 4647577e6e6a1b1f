// The parser of the video stream beside a memcpy of the same bytes in the same pieces, beside a parser
// written by hand, and beside libavformat's demuxers of the same pictures.

#include "LivePictures.h"
#include "MuxedVideo.h"
#include "PairedRatio.h"
#include "PlainParser.h"

#include "support/EncodedClip.h"
#include "support/Hvx3Bytes.h"
#include "video/cHvx3Parser.h"

#include <QCoreApplication>

#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <stdexcept>

using namespace paravue::test;
using namespace paravue::bench;

namespace
{

constexpr qsizetype TcpPiece = 1460;

/// A stream, cut into pieces as a socket returns them.
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

/// The pictures in fragments of up to 32 KiB, with an index record before every 25th.
QByteArray streamOf(const QList<QByteArrayView> &pictures)
{
    QByteArray stream = hvx3Header({Hvx3Stream()});
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        if (i % 25 == 0)
            stream += hvx3Index(quint32(i / 25));
        stream += hvx3Frame(0, pictures[i], 32 * KiB);
    }
    return stream;
}

QByteArray live(qsizetype size)
{
    static const QList<QByteArray> sources{noise(200 * KiB)};
    return streamOf(livePictures(sources, size));
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

/// Frames of as many fragments, of 419 bytes each.
QByteArray fragments(qsizetype size, qsizetype perFrame)
{
    constexpr qsizetype FragmentSize = 419;
    const QByteArray frame = hvx3Frame(0, QByteArray(perFrame * FragmentSize, 'x'), FragmentSize);
    return beginning() + frame.repeated(size / frame.size());
}

/// A header with a name of \a size bytes.
QByteArray headerStream(qsizetype size)
{
    return hvx3Header({}, QByteArray(size, 'x')) + hvx3Index(1);
}

/// Many headers whose streams take 64,000 bytes.
QByteArray streamHeaders(qsizetype size)
{
    const QByteArray label(80, 'x');
    const Hvx3Stream stream{.label1 = label, .label2 = label, .label3 = label};
    const qsizetype streams = 64'000 / hvx3StreamBytes(stream).size();
    const QByteArray header = hvx3Header(QList<Hvx3Stream>(streams, stream)) + hvx3Index(1);
    return header.repeated(size / header.size()) + hvx3Data(0, WholeFrame, "x", {});
}

/// What a parser has found in a stream.
struct Found {
    PictureCount frames;
    int headers = 0;

    bool operator==(const Found &other) const
    {
        return frames.pictures == other.frames.pictures && frames.bytes == other.frames.bytes &&
               headers == other.headers;
    }
};

/// Receives the frames by value, as the demuxer does.
class Frames : public QObject
{
public:
    explicit Frames(const cHvx3Parser &parser)
    {
        connect(&parser, &cHvx3Parser::onDATA, this, &Frames::take, Qt::DirectConnection);
        connect(&parser, &cHvx3Parser::onIDX, this, [this](IDX_T) { ++m_indexes; });
        connect(&parser, &cHvx3Parser::onHDR, this, [this](HDR_T) { ++m_headers; });
    }
    bool hasSome() const { return m_frames > 0 || m_indexes > 0; }
    Found found() const { return {{m_frames, m_bytes}, m_headers}; }

private:
    void take(DATA_T frame)
    {
        ++m_frames;
        m_bytes += frame.length;
        benchmark::DoNotOptimize(frame);
    }

    qint64 m_frames = 0;
    qint64 m_bytes = 0;
    qint64 m_indexes = 0;
    int m_headers = 0;
};

Found parse(const Pieces &pieces)
{
    cHvx3Parser parser;
    const Frames frames(parser);
    for (const QByteArray &piece : pieces.list)
        parser.append(piece);
    if (!frames.hasSome())
        throw std::runtime_error("nothing was found in the stream");
    return frames.found();
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

/// Both sides get the stream in pieces of 64 KiB and return every picture. Measured is the time from the
/// first piece to the last picture. The demuxer has read the head of its container before, and copies each
/// piece, as its interface demands.
void besideDemuxer(benchmark::State &state, const char *format, PairedOptions options, int flags = 0)
{
    static const QList<QByteArray> encoded =
        encodeClip({.encoder = "libx264", .size = {1280, 720}, .pictures = 25, .quality = 1, .noise = true})
            .pictures;
    const QList<QByteArrayView> pictures = livePictures(encoded, 64 * MiB);
    const Pieces ours(streamOf(pictures), Demuxer::PieceSize);
    const QByteArray container = muxed(format, pictures);
    qint64 wanted = 0;
    for (const QByteArrayView picture : pictures)
        wanted += picture.size();
    const auto requireAll = [&](const PictureCount &count) {
        // Containers mark the beginnings of pictures differently, so the sizes differ a little.
        if (count.pictures != pictures.size() || std::abs(count.bytes - wanted) > wanted / 1000)
            throw std::runtime_error("pictures are missing");
    };
    pairedRatio(
        state, [&] { requireAll(parse(ours).frames); },
        [&] {
            Demuxer demuxer(format, container, flags);
            const auto start = std::chrono::steady_clock::now();
            requireAll(demuxer.readAll());
            return Seconds(std::chrono::steady_clock::now() - start);
        },
        options);
}

Found parsePlainly(const Pieces &pieces)
{
    PictureCount count;
    PlainParser parser;
    parser.onIndex = [](quint32 seconds) { benchmark::DoNotOptimize(seconds); };
    parser.onFrame = [&count](const PlainParser::Frame &frame) {
        ++count.pictures;
        count.bytes += qint64(frame.payload.size());
        benchmark::DoNotOptimize(frame);
    };
    for (const QByteArray &piece : pieces.list)
        parser.append({piece.constData(), size_t(piece.size())});
    return {count, parser.headers()};
}

void besidePlainParser(benchmark::State &state, const Pieces &pieces, double limit)
{
    if (!(parse(pieces) == parsePlainly(pieces)))
        throw std::runtime_error("the parsers find different records");
    pairedRatio(
        state, [&] { parse(pieces); }, [&] { parsePlainly(pieces); }, {.limit = limit});
}

using MakeStream = QByteArray (*)(qsizetype size);

/// Our time per byte for a long stream beside that for short ones of the same total length, each with its own
/// parser. So both read the same amount of memory, and only the length of a stream differs.
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

void liveBesideMpegTs(benchmark::State &state)
{
    besideDemuxer(state, "mpegts", {.limit = 0.25});
}
BENCHMARK(liveBesideMpegTs)->Apply(applyPaired);

void liveBesideMatroska(benchmark::State &state)
{
    besideDemuxer(state, "matroska", {.limit = 1});
}
BENCHMARK(liveBesideMatroska)->Apply(applyPaired);

/// Without libavformat's parsers, which read the pictures of both containers and find the ends of those of an
/// MPEG-TS. Here a picture ends with its packet.
constexpr int WithoutParsers = AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN;

void liveBesideBareMpegTs(benchmark::State &state)
{
    besideDemuxer(state, "mpegts", {}, WithoutParsers);
}
BENCHMARK(liveBesideBareMpegTs)->Apply(applyPaired);

void liveBesideBareMatroska(benchmark::State &state)
{
    besideDemuxer(state, "matroska", {.limit = 1}, WithoutParsers);
}
BENCHMARK(liveBesideBareMatroska)->Apply(applyPaired);

void garbage(benchmark::State &state)
{
    besideMemcpy(state, Pieces(garbageStream(64 * MiB), state.range(0)), 5);
}
BENCHMARK(garbage)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void liveBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(live(64 * MiB), state.range(0)), 1.05);
}
BENCHMARK(liveBesidePlain)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void garbageBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(garbageStream(64 * MiB), state.range(0)), 1.1);
}
BENCHMARK(garbageBesidePlain)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void singleBytesBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(live(8 * MiB), 1), 2);
}
BENCHMARK(singleBytesBesidePlain)->Apply(applyPaired);

void headersInSingleBytesBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(streamHeaders(2 * MiB), 1), 2);
}
BENCHMARK(headersInSingleBytesBesidePlain)->Apply(applyPaired);

void fragmentsBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(fragments(64 * MiB, 100'000), state.range(0)), 1.5);
}
BENCHMARK(fragmentsBesidePlain)->Arg(TcpPiece)->Arg(64 * KiB)->Apply(applyPaired);

void smallRecordsBesidePlain(benchmark::State &state)
{
    besidePlainParser(state, Pieces(smallRecords(64 * MiB), 64 * KiB), 12);
}
BENCHMARK(smallRecordsBesidePlain)->Apply(applyPaired);

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
    const Pieces ours(fragments(64 * MiB, 10'000), TcpPiece);
    const Pieces peer(fragments(64 * MiB, 625), TcpPiece);
    pairedRatio(
        state, [&] { parse(ours); }, [&] { parse(peer); },
        {.limit = 1.3, .ourUnits = double(ours.bytes), .peerUnits = double(peer.bytes)});
}
BENCHMARK(growthOfFragments)->Apply(applyPaired);

void growthOfSmallRecords(benchmark::State &state)
{
    besideShorter(state, smallRecords, 64 * MiB, 4 * MiB, TcpPiece);
}
BENCHMARK(growthOfSmallRecords)->Apply(applyPaired);

void growthOfHeader(benchmark::State &state)
{
    // All of it is kept. Memory of new pages, or beyond the caches of processors, would be measured.
    mallopt(M_MMAP_THRESHOLD, 16 * MiB);
    mallopt(M_TRIM_THRESHOLD, 16 * MiB);
    besideShorter(state, headerStream, 512 * KiB, 32 * KiB, TcpPiece);
}
BENCHMARK(growthOfHeader)->Apply(applyPaired);

/// DATA_T with its containers at aligned addresses, which leaves gaps.
struct AlignedRecord {
    qint32 length = 0;
    quint8 flags = 0;
    quint8 streamId = 0;
    quint16 word16 = 0;
    quint8 byteA = 0;
    quint8 byteB = 0;
    quint8 labelledId = 0;
    quint8 streamType = 0;
    QByteArray label1;
    QByteArray label2;
    QByteArray label3;
    QByteArray payload;
};

const QByteArray &labelOf(const AlignedRecord &record)
{
    return record.label1;
}

const paravue::Packed<QByteArray> &labelOf(const DATA_T &record)
{
    return record.stream.label1;
}

constexpr int RecordCount = 100'000;

/// Fills, copies and reads records as the parser and its receivers do.
template <typename Record>
void passRecords(void (*read)(const Record &))
{
    const QByteArray payload(1000, 'x');
    for (int i = 0; i < RecordCount; ++i) {
        Record record;
        record.payload = payload;
        const Record copy = record;
        read(copy);
    }
}

template <typename Record>
void readInPlace(const Record &record)
{
    benchmark::DoNotOptimize(record.payload.size());
    benchmark::DoNotOptimize(record.payload.constData());
    benchmark::DoNotOptimize(labelOf(record).startsWith("H264"));
}

void readCopies(const DATA_T &record)
{
    benchmark::DoNotOptimize(record.payload.value().size());
    benchmark::DoNotOptimize(record.payload.value().constData());
    benchmark::DoNotOptimize(record.stream.label1.value().startsWith("H264"));
}

/// The cost of keeping the containers of a record at any address.
void recordsBesideAligned(benchmark::State &state)
{
    pairedRatio(
        state, [] { passRecords<DATA_T>(readInPlace); }, [] { passRecords<AlignedRecord>(readInPlace); });
}
BENCHMARK(recordsBesideAligned)->Apply(applyPaired);

/// What the functions of packed containers save over copying the value first.
void recordsBesideCopies(benchmark::State &state)
{
    pairedRatio(
        state, [] { passRecords<DATA_T>(readInPlace); }, [] { passRecords<DATA_T>(readCopies); });
}
BENCHMARK(recordsBesideCopies)->Apply(applyPaired);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
