#include "video/FrameAssembler.h"

#include <utility>

namespace paravue
{

namespace
{

enum FragmentKind { Middle = 0, Last = 1, First = 2, Whole = 3 };

constexpr quint8 WholeFlags = Whole << 6;

/// A spare larger than that would keep the memory of one exceptional frame.
constexpr qsizetype LargestSpare = 16 * 1024 * 1024;

/// True when a frame of \a size bytes would waste what has room for \a capacity; a receiver may keep many.
bool wastes(qsizetype capacity, qsizetype size)
{
    return capacity > 4 * size + 1024;
}

} // namespace

bool FrameAssembler::add(DATA_T &record, QByteArrayView payload)
{
    const int kind = record.flags >> 6;
    Hvx3StreamCounts &counts = m_counts[record.streamId];
    ++counts.records;
    if (kind == Whole) {
        // Deliberate: a frame that was begun before it goes on behind it.
        return fill(record, payload);
    }
    const Partial partial = m_partials.find(record.streamId);
    const bool begun = partial != m_partials.end();
    if (kind == First) {
        if (begun) {
            lose(partial);
        }
        begin(record, payload);
        return false;
    }
    if (!begun) {
        ++counts.lostFragments;
        return false;
    }
    if (!grow(partial, payload) || kind == Middle) {
        return false;
    }
    finish(partial, record);
    return true;
}

void FrameAssembler::clear()
{
    for (const auto &[streamId, partial] : m_partials) {
        ++m_counts[streamId].lostFrames;
    }
    m_partials.clear();
    m_held = 0;
}

Hvx3StreamCounts FrameAssembler::counts() const
{
    Hvx3StreamCounts all;
    for (const Hvx3StreamCounts &one : m_counts) {
        all.records += one.records;
        all.lostFragments += one.lostFragments;
        all.lostFrames += one.lostFrames;
    }
    return all;
}

/// Makes a fragment that is a whole frame that frame.
bool FrameAssembler::fill(DATA_T &record, QByteArrayView payload)
{
    if (payload.size() > m_maxFrameSize) {
        ++m_counts[record.streamId].lostFrames;
        return false;
    }
    if (wastes(m_spare.capacity(), payload.size())) {
        record.payload = payload.toByteArray();
    } else {
        record.payload = std::exchange(m_spare, QByteArray()).append(payload);
    }
    return true;
}

void FrameAssembler::begin(const DATA_T &record, QByteArrayView payload)
{
    const Partial partial = m_partials.emplace(record.streamId, record).first;
    partial->second.payload = std::exchange(m_spare, QByteArray());
    grow(partial, payload);
}

/// Appends to the payload of an unfinished frame, or drops the frame when that makes it too large.
bool FrameAssembler::grow(Partial partial, QByteArrayView payload)
{
    if (payload.size() > m_maxFrameSize - m_held) {
        lose(partial);
        return false;
    }
    // Taken out, so that there is one reference and the bytes grow in place.
    QByteArray joined = partial->second.payload.take();
    joined.append(payload);
    partial->second.payload = std::move(joined);
    m_held += payload.size();
    return true;
}

/// Makes the last fragment the frame that has grown.
void FrameAssembler::finish(Partial partial, DATA_T &record)
{
    DATA_T &first = partial->second;
    handOut(first.payload.take(), record);
    record.length = static_cast<qint32>(record.payload.size());
    record.flags |= WholeFlags;
    record.word16 = first.word16;
    record.byteA = first.byteA;
    record.byteB = first.byteB;
    m_held -= record.length;
    m_partials.erase(partial);
}

void FrameAssembler::handOut(QByteArray payload, DATA_T &record)
{
    if (wastes(payload.capacity(), payload.size())) {
        record.payload = QByteArray(payload.constData(), payload.size());
        giveBack(std::move(payload));
    } else {
        record.payload = std::move(payload);
    }
}

void FrameAssembler::giveBack(QByteArray payload)
{
    if (payload.isDetached() && payload.capacity() > m_spare.capacity() &&
        payload.capacity() <= LargestSpare) {
        payload.resize(0);
        m_spare = std::move(payload);
    }
}

void FrameAssembler::lose(Partial partial)
{
    ++m_counts[partial->first].lostFrames;
    m_held -= partial->second.payload.size();
    m_partials.erase(partial);
}

} // namespace paravue
