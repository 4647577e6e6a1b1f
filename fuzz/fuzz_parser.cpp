// Requires that the records of any stream are valid and the same however the stream is cut, and that the
// parser uses no more memory than its limit allows.
//
// Input: a byte that chooses the limit, one that chooses how the stream is cut, the stream.

#include "FuzzInput.h"
#include "Require.h"
#include "StreamLog.h"

#include "video/cHvx3Parser.h"

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <array>
#include <limits>

using namespace paravue::fuzz;

namespace
{

constexpr int NoLimit = std::numeric_limits<int>::max();
constexpr std::array<int, 8> Limits = {NoLimit, 1, 16, 64, 256, 1024, 4096, 128 * 1024};

/// How much of a stream the memory is measured with, and what a parser may hold of it: a data record that is
/// not whole, in a buffer that has grown by doubling, and for each byte of the limit its share of the
/// descriptor of a stream, of which five bytes make one.
constexpr qsizetype LongStream = 512 * 1024;
constexpr qint64 HeldRecord = 3 * 64 * 1024;
constexpr qint64 MemoryPerByte = 64;

struct Parsed {
    QList<QByteArray> records;
    paravue::Hvx3Losses losses;
    bool operator==(const Parsed &other) const
    {
        return records == other.records && losses.bytes == other.losses.bytes &&
               losses.gaps == other.losses.gaps && losses.fragments == other.losses.fragments &&
               losses.frames == other.losses.frames;
    }
};

void checkLosses(const paravue::Hvx3Losses &losses, qint64 usedBytes, qint64 size)
{
    require(losses.bytes >= 0 && losses.gaps >= 0 && losses.fragments >= 0 && losses.frames >= 0,
            "losses are counts");
    require(losses.gaps <= losses.bytes, "a gap has a byte at least");
    // Each has the head of a data record.
    const qint64 lostHeads = 4 * (losses.fragments + losses.frames);
    require(losses.bytes + lostHeads + usedBytes <= size, "no byte is counted twice");
}

Parsed parse(const QList<QByteArray> &pieces, int limit)
{
    cHvx3Parser parser;
    parser.setMaxFrameSize(limit);
    const StreamLog log(parser, limit);
    qint64 fed = 0;
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        parser.append(pieces.at(i));
        fed += pieces.at(i).size();
        if (i % 64 == 0)
            checkLosses(parser.losses(), log.usedBytes(), fed);
    }
    checkLosses(parser.losses(), log.usedBytes(), fed);
    return {log.records(), parser.losses()};
}

/// A part of the stream in single bytes, as those of a whole long stream would take most of the time.
QList<QByteArray> singleBytes(const QByteArray &stream, quint8 seed)
{
    constexpr qsizetype Longest = 1024;
    const qsizetype begin = std::max<qsizetype>(stream.size() - Longest, 0) * seed / 255;
    const qsizetype end = std::min(begin + Longest, stream.size());
    QList<QByteArray> pieces = {stream.first(begin)};
    for (qsizetype at = begin; at < end; ++at)
        pieces << stream.sliced(at, 1);
    return pieces << stream.sliced(end);
}

/// Requires that the memory does not grow when the stream is repeated.
void checkMemory(const QByteArray &stream, int limit)
{
    const auto before = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    const qint64 allowed = HeldRecord + 4 * stream.size() + MemoryPerByte * limit;
    cHvx3Parser parser;
    parser.setMaxFrameSize(limit);
    for (qsizetype fed = 0; fed < LongStream; fed += stream.size()) {
        parser.append(stream);
        const auto now = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
        require(now - before <= allowed, "the memory has the bound that the limit gives it");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const int limit = Limits[input.takeByte() % Limits.size()];
    const quint8 seed = input.takeByte();
    const QByteArray stream = input.rest();
    if (stream.isEmpty())
        return 0;

    const Parsed whole = parse({stream}, limit);
    require(parse(singleBytes(stream, seed), limit) == whole, "single bytes give the same records");
    require(parse(cutAtRandom(stream, seed), limit) == whole, "pieces give the same records");
    // A record that is not whole may claim 64 KiB more than there are, and be dropped for that.
    if (limit > stream.size() + 0xFFFF)
        require(parse({stream}, NoLimit) == whole, "a limit that nothing reaches changes nothing");
    // For some of the inputs only, as it takes a hundred times as long as the rest.
    if (limit <= 4096 && qChecksum(stream) % 64 == 0)
        checkMemory(stream, limit);
    return 0;
}
