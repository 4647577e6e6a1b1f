#include "video/FrameAssembler.h"

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

enum FragmentKind { Middle = 0, Last = 1, First = 2, Whole = 3 };

constexpr quint8 WholeFlags = Whole << 6;

/// More would keep the memory of one exceptional frame.
constexpr qsizetype LargestSpare = 16 * 1024 * 1024;

/// Of unfinished frames, of which each stream may have one.
constexpr qsizetype LargestReserve = 256 * 1024;

/// True when memory of \a capacity is too much for a frame of \a size bytes, as a receiver may keep many.
bool wastes(qsizetype capacity, qsizetype size)
{
    return capacity > 4 * size + 1024;
}

} // namespace

void FrameAssembler::begin(const DATA_T &record)
{
    m_dropping = false;
    if (record.flags >> 6 != Whole) {
        beginPart(record);
    } else if (record.length <= m_maxFrameSize) {
        // Deliberate: it does not end the unfinished frame of its stream.
        beginWhole(record.length);
    } else {
        ++m_counts[record.streamId].lostFrames;
        m_dropping = true;
    }
}

void FrameAssembler::add(QByteArrayView payload)
{
    if (!m_dropping) {
        m_open.append(payload);
    }
}

bool FrameAssembler::end(DATA_T &record)
{
    const int kind = record.flags >> 6;
    ++m_counts[record.streamId].records;
    if (m_dropping) {
        return false;
    }
    if (kind == Whole) {
        record.payload = std::move(m_open);
        return true;
    }
    const Partial partial = m_partials.find(record.streamId);
    partial->second.payload = std::move(m_open);
    if (kind != Last) {
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

void FrameAssembler::beginWhole(int length)
{
    if (wastes(m_spare.capacity(), length)) {
        m_open = QByteArray();
        m_open.reserve(length);
    } else {
        m_open = std::exchange(m_spare, QByteArray());
    }
}

/// Takes the payload of the frame that the fragment belongs to. With a single reference it grows in place.
/// Drops the frame if the fragment makes it too large.
void FrameAssembler::beginPart(const DATA_T &record)
{
    Partial partial = m_partials.find(record.streamId);
    if (record.flags >> 6 == First) {
        if (partial != m_partials.end()) {
            drop(partial);
        }
        partial = m_partials.emplace(record.streamId, record).first;
        partial->second.payload = std::exchange(m_spare, QByteArray());
    } else if (partial == m_partials.end()) {
        ++m_counts[record.streamId].lostFragments;
        m_dropping = true;
        return;
    }
    if (record.length > m_maxFrameSize - m_held) {
        drop(partial);
        m_dropping = true;
        return;
    }
    m_held += record.length;
    m_open = partial->second.payload.take();
    if (m_open.isEmpty())
        m_open.reserve(m_usualSize); // so that it is not copied while it grows
}

/// Turns \a record, the last fragment, into the whole frame.
void FrameAssembler::finish(Partial partial, DATA_T &record)
{
    DATA_T &first = partial->second;
    setPayload(record, first.payload.take());
    record.length = static_cast<qint32>(record.payload.size());
    record.flags |= WholeFlags;
    record.word16 = first.word16;
    record.byteA = first.byteA;
    record.byteB = first.byteB;
    m_held -= record.length;
    m_usualSize = std::min<qsizetype>(record.length, LargestReserve);
    m_partials.erase(partial);
}

void FrameAssembler::setPayload(DATA_T &record, QByteArray payload)
{
    if (wastes(payload.capacity(), payload.size())) {
        record.payload = QByteArray(payload.constData(), payload.size());
        recycle(std::move(payload));
    } else {
        record.payload = std::move(payload);
    }
}

void FrameAssembler::recycle(QByteArray payload)
{
    if (payload.isDetached() && payload.capacity() > m_spare.capacity() &&
        payload.capacity() <= LargestSpare) {
        payload.resize(0);
        m_spare = std::move(payload);
    }
}

void FrameAssembler::drop(Partial partial)
{
    ++m_counts[partial->first].lostFrames;
    m_held -= partial->second.payload.size();
    m_partials.erase(partial);
}

} // namespace paravue
