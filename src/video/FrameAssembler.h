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

/// The head of a data record, whose fields are those of DATA_T.
struct FragmentHead {
    qint32 length = 0;
    quint8 flags = 0;
    quint8 streamId = 0;
    quint16 word16 = 0;
    quint8 byteA = 0;
    quint8 byteB = 0;
};

/// Puts frames together that were sent in fragments.
///
/// The memory of a frame that no receiver keeps any more is used for the next one. Otherwise the system would
/// release and clear the pages of each large frame, which takes longer than copying the bytes.
class FrameAssembler
{
public:
    /// A frame whose payload is larger is dropped, and one that grows while all unfinished frames together
    /// would be larger. Without a limit the only bound is the range of a frame's length.
    void setMaxFrameSize(int bytes) { m_maxFrameSize = bytes; }

    /// Begins a fragment, of whose payload all head.length bytes have to be added before end().
    void begin(const FragmentHead &head);
    /// Copies the next bytes of the payload.
    void add(QByteArrayView payload)
    {
        if (m_open) {
            m_open->append(payload);
        }
    }
    /// Ends the fragment. True when it completes a frame, which has to be taken then. A fragment without a
    /// first one is dropped.
    bool end();
    /// The complete frame, which belongs to \a stream.
    DATA_T take(const STREAM_T &stream);
    /// Reuses the memory of a frame that was taken, unless a receiver keeps it until behind the next one.
    void recycle(QByteArray payload);
    /// Drops the unfinished frames.
    void clear();

    const Hvx3StreamCounts &counts(quint8 streamId) const { return m_counts[streamId]; }
    /// Of all streams together.
    Hvx3StreamCounts counts() const;

private:
    /// An unfinished frame, with the head of its first fragment.
    struct Partial {
        FragmentHead head;
        QByteArray payload;
    };
    using Partials = std::map<quint8, Partial>;

    void beginWhole();
    void beginPart();
    void finish(Partials::iterator partial);
    void setPayload(DATA_T &frame);
    void takeBackLent();
    void drop(Partials::iterator partial);

    Partials m_partials;
    /// The size of the payloads of the unfinished frames together.
    qsizetype m_held = 0;
    /// The current fragment, and the payload that it is added to; null when it is not used.
    FragmentHead m_head;
    QByteArray *m_open = nullptr;
    /// The payload of a complete frame.
    QByteArray m_whole;
    QByteArray m_spare;
    QByteArray m_lent; ///< the last payload, while a receiver has it
    /// Of the last frame that came in fragments.
    qsizetype m_usualSize = 0;
    int m_maxFrameSize = std::numeric_limits<int>::max();
    std::array<Hvx3StreamCounts, 256> m_counts;
};

} // namespace paravue
