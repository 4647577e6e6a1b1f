#pragma once

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>
#include <QStringList>

#include <optional>

namespace recorder
{

/// Faults that are injected into a stream on request. Each kind occurs once in \c every pictures, the kinds
/// one after the other.
struct VideoFaults {
    enum Kind : quint32 {
        Garbage = 1,        ///< bytes outside of any record
        LostFragments = 2,  ///< one fragment of the next frame with several is missing
        HeaderTwice = 4,    ///< the header is sent again, twice, and the stream begins anew
        UnknownStreams = 8, ///< a record of a stream that the header does not list
        Stall = 16,         ///< nothing is sent for a while, in the middle of a record
        SizeChange = 32,    ///< the pictures get another size; test picture only
        CodecChange = 64,   ///< the pictures get another codec; test picture only
        Slow = 128,         ///< pictures come ten times as rarely, until the fault comes again
        TimeJump = 256,     ///< the time of the stream jumps by an hour, forwards and back in turn
    };
    static constexpr int MaxStall = 20 * 1000;
    static constexpr int MaxEvery = 100000;

    quint32 kinds = 0;
    int stall = 1000; ///< milliseconds
    int every = 75;   ///< pictures
    quint32 seed = 1; ///< of the random numbers

    bool has(Kind kind) const { return (kinds & kind) != 0; }
};

/// The names on the command line: "garbage", "lost", "header", "unknown", "stall", "size", "codec", "slow",
/// "jump".
QStringList videoFaultNames();
/// Reads names with commas between them; the stall may have its milliseconds, as in "stall=2000". Nothing,
/// with \a reason set, when a name is unknown.
std::optional<VideoFaults> readVideoFaults(const QString &list, QString &reason);

/// Determines when faults are due and applies them to records.
class FaultInjector
{
public:
    explicit FaultInjector(const VideoFaults &faults = {});

    const VideoFaults &faults() const { return m_faults; }
    void nextPicture() { ++m_picture; }
    bool isDue(VideoFaults::Kind kind) const;
    /// Applies the faults that are due to the records of one picture. Returns a line for the log for each.
    QStringList damage(QList<QByteArray> &records);

private:
    QByteArray garbage();

    VideoFaults m_faults;
    QRandomGenerator m_random;
    qint64 m_picture = 0;
    bool m_losesFragment = false;
};

} // namespace recorder
