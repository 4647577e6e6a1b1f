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

void FrameAssembler::begin(const DATA_T &record)
{
    m_dropping = false;
    if (record.flags >> 6 != Whole) {
        beginPart(record);
    } else if (record.length <= m_maxFrameSize) {
        // Deliberate: a frame that was begun before it goes on behind it.
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

/// Takes the payload of the frame that the fragment belongs to, so that there is one reference and the bytes
/// grow in place. Drops the frame when that makes it too large.
void FrameAssembler::beginPart(const DATA_T &record)
{
    Partial partial = m_partials.find(record.streamId);
    if (record.flags >> 6 == First) {
        if (partial != m_partials.end()) {
            lose(partial);
        }
        partial = m_partials.emplace(record.streamId, record).first;
        partial->second.payload = std::exchange(m_spare, QByteArray());
    } else if (partial == m_partials.end()) {
        ++m_counts[record.streamId].lostFragments;
        m_dropping = true;
        return;
    }
    if (record.length > m_maxFrameSize - m_held) {
        lose(partial);
        m_dropping = true;
        return;
    }
    m_held += record.length;
    m_open = partial->second.payload.take();
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
