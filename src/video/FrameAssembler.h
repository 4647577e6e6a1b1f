#pragma once

#include "video/Hvx3Records.h"

#include <QByteArrayView>

#include <array>
#include <limits>
#include <map>

namespace paravue
{

/// What was received of one stream.
struct Hvx3StreamCounts {
    /// Data records, each a fragment or a whole frame.
    qint64 records = 0;
    /// Fragments whose frame has no first one.
    qint64 lostFragments = 0;
    /// Frames that were not completed, or were too large.
    qint64 lostFrames = 0;
};

/// Puts frames together that were sent in fragments.
///
/// The memory of a frame that no receiver has kept is used for the next one. Otherwise the system would
/// release and clear the pages of each large frame, which takes longer than copying the bytes.
class FrameAssembler
{
public:
    /// A frame whose payload is larger is dropped, and one that grows while all unfinished frames together
    /// would be larger. Without a limit the only bound is the range of a frame's length.
    void setMaxFrameSize(int bytes) { m_maxFrameSize = bytes; }

    /// Begins the fragment \a record, of whose payload all record.length bytes have to be added before end().
    void begin(const DATA_T &record);
    /// Copies the next bytes of the payload.
    void add(QByteArrayView payload);
    /// Ends the fragment \a record, the one that was begun. True when it completes a frame: then \a record is
    /// that frame. A fragment without a first one is dropped.
    bool end(DATA_T &record);
    /// Reuses the memory of a frame that end() has completed, unless a receiver has kept it.
    void recycle(QByteArray payload);
    /// Drops the unfinished frames.
    void clear();

    const Hvx3StreamCounts &counts(quint8 streamId) const { return m_counts[streamId]; }
    /// Of all streams together.
    Hvx3StreamCounts counts() const;

private:
    using Partial = std::map<quint8, DATA_T>::iterator;

    void beginWhole(int length);
    void beginPart(const DATA_T &record);
    void finish(Partial partial, DATA_T &record);
    void setPayload(DATA_T &record, QByteArray payload);
    void drop(Partial partial);

    std::map<quint8, DATA_T> m_partials;
    /// The size of the payloads of the unfinished frames together.
    qsizetype m_held = 0;
    /// The payload that the current fragment is added to; it is taken from its frame.
    QByteArray m_open;
    /// The current fragment is not used.
    bool m_dropping = false;
    QByteArray m_spare;
    /// Of the last frame that came in fragments.
    qsizetype m_usualSize = 0;
    int m_maxFrameSize = std::numeric_limits<int>::max();
    std::array<Hvx3StreamCounts, 256> m_counts;
};

} // namespace paravue
