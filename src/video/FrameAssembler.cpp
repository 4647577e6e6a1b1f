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

void FrameAssembler::begin(const FragmentHead &head)
{
    takeBackLent();
    m_head = head;
    m_open = nullptr;
    if (head.flags >> 6 != Whole) {
        beginPart();
    } else if (head.length <= m_maxFrameSize) {
        // Deliberate: it does not end the unfinished frame of its stream.
        beginWhole();
    } else {
        ++m_counts[head.streamId].lostFrames;
    }
}

bool FrameAssembler::end()
{
    ++m_counts[m_head.streamId].records;
    if (!std::exchange(m_open, nullptr)) {
        return false;
    }
    const int kind = m_head.flags >> 6;
    if (kind == Last) {
        finish(m_partials.find(m_head.streamId));
    }
    return kind == Last || kind == Whole;
}

DATA_T FrameAssembler::take(const STREAM_T &stream)
{
    DATA_T frame;
    frame.length = m_head.length;
    frame.flags = m_head.flags;
    frame.streamId = m_head.streamId;
    frame.word16 = m_head.word16;
    frame.byteA = m_head.byteA;
    frame.byteB = m_head.byteB;
    frame.stream = stream;
    setPayload(frame);
    return frame;
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

void FrameAssembler::beginWhole()
{
    if (wastes(m_spare.capacity(), m_head.length)) {
        m_whole = QByteArray();
        m_whole.reserve(m_head.length);
    } else {
        m_whole = std::exchange(m_spare, QByteArray());
    }
    m_open = &m_whole;
}

/// Continues the frame that the fragment belongs to. Drops the frame if the fragment makes it too large.
void FrameAssembler::beginPart()
{
    auto partial = m_partials.find(m_head.streamId);
    if (m_head.flags >> 6 == First) {
        if (partial != m_partials.end()) {
            drop(partial);
        }
        // One unfinished frame may have more memory than it needs, not one of each stream.
        QByteArray memory = m_partials.empty() ? std::exchange(m_spare, QByteArray()) : QByteArray();
        partial = m_partials.emplace(m_head.streamId, Partial{m_head, std::move(memory)}).first;
        partial->second.payload.reserve(m_usualSize); // so that it is not copied while it grows
    } else if (partial == m_partials.end()) {
        ++m_counts[m_head.streamId].lostFragments;
        return;
    }
    if (m_head.length > m_maxFrameSize - m_held) {
        drop(partial);
        return;
    }
    m_held += m_head.length;
    m_open = &partial->second.payload;
}

/// Turns the last fragment into the whole frame.
void FrameAssembler::finish(Partials::iterator partial)
{
    const FragmentHead &first = partial->second.head;
    m_whole = std::move(partial->second.payload);
    m_head.length = static_cast<qint32>(m_whole.size());
    m_head.flags |= WholeFlags;
    m_head.word16 = first.word16;
    m_head.byteA = first.byteA;
    m_head.byteB = first.byteB;
    m_held -= m_head.length;
    m_usualSize = std::min<qsizetype>(m_head.length, LargestReserve);
    m_partials.erase(partial);
}

/// Moves the payload into the frame; copies it when it would keep much more memory than it needs.
void FrameAssembler::setPayload(DATA_T &frame)
{
    if (wastes(m_whole.capacity(), m_whole.size())) {
        frame.payload = QByteArray(m_whole.constData(), m_whole.size());
        recycle(std::exchange(m_whole, QByteArray()));
    } else {
        frame.payload = std::exchange(m_whole, QByteArray());
    }
}

void FrameAssembler::recycle(QByteArray payload)
{
    if (payload.capacity() > LargestSpare)
        return;
    if (!payload.isDetached()) {
        m_lent = std::move(payload);
    } else if (payload.capacity() > m_spare.capacity()) {
        payload.resize(0);
        m_spare = std::move(payload);
    }
}

/// A decoder lets a frame go once it is decoded, which may be before the next one comes.
void FrameAssembler::takeBackLent()
{
    if (!m_lent.isNull() && m_lent.isDetached())
        recycle(std::exchange(m_lent, QByteArray()));
}

void FrameAssembler::drop(Partials::iterator partial)
{
    ++m_counts[partial->first].lostFrames;
    m_held -= partial->second.payload.size();
    m_partials.erase(partial);
}

} // namespace paravue
