#pragma once

#include "video/Hvx3Records.h"

#include <QByteArrayView>

#include <limits>
#include <map>

namespace paravue
{

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

    /// Takes the fragment \a record with its \a payload, which is copied. True when it completes a frame:
    /// then \a record is that frame. A fragment without a first one is dropped.
    bool add(DATA_T &record, QByteArrayView payload);
    /// Returns the payload of a frame that add() has completed, when the receivers have had it.
    void giveBack(QByteArray payload);
    /// Drops the unfinished frames.
    void clear();

    /// The fragments that came without a first one.
    qint64 lostFragments() const { return m_lostFragments; }
    /// The frames that never came to their end, or were too large.
    qint64 lostFrames() const { return m_lostFrames; }

private:
    using Partial = std::map<quint8, DATA_T>::iterator;

    bool fill(DATA_T &record, QByteArrayView payload);
    void begin(const DATA_T &record, QByteArrayView payload);
    bool grow(Partial partial, QByteArrayView payload);
    void finish(Partial partial, DATA_T &record);
    void handOut(QByteArray payload, DATA_T &record);
    void lose(Partial partial);

    std::map<quint8, DATA_T> m_partials;
    /// The size of the payloads of the unfinished frames together.
    qsizetype m_held = 0;
    QByteArray m_spare;
    int m_maxFrameSize = std::numeric_limits<int>::max();
    qint64 m_lostFragments = 0;
    qint64 m_lostFrames = 0;
};

} // namespace paravue
