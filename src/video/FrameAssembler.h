#pragma once

#include "video/Hvx3Records.h"

#include <QByteArrayView>

#include <array>
#include <limits>
#include <map>

namespace paravue
{

/// What came of one stream.
struct Hvx3StreamCounts {
    /// The data records, each a fragment or a whole frame.
    qint64 records = 0;
    /// Fragments that came without the first one of their frame.
    qint64 lostFragments = 0;
    /// Frames that never came to their end, or were too large.
    qint64 lostFrames = 0;
};

/// Puts frames together that were sent in fragments.
///
/// The bytes of a frame that nobody has kept serve for the next one: without that, the system would take back
/// and hand out the pages of each large frame, which costs more than all the copying.
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
    /// Returns the payload of a frame that end() has completed, when the receivers have had it.
    void giveBack(QByteArray payload);
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
    void handOut(QByteArray payload, DATA_T &record);
    void lose(Partial partial);

    std::map<quint8, DATA_T> m_partials;
    /// The size of the payloads of the unfinished frames together.
    qsizetype m_held = 0;
    /// The payload that the fragment under way is added to, taken from its frame; nothing is added to one
    /// that is dropped.
    QByteArray m_open;
    bool m_dropping = false;
    QByteArray m_spare;
    int m_maxFrameSize = std::numeric_limits<int>::max();
    std::array<Hvx3StreamCounts, 256> m_counts;
};

} // namespace paravue
