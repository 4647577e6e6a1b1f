#pragma once

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>
#include <QStringList>

#include <optional>

namespace recorder
{

/// What goes wrong with a stream on request. Each kind happens once in so many pictures, the kinds one after
/// the other.
struct VideoFaults {
    enum Kind : quint32 {
        Garbage = 1,        ///< bytes that belong to no record
        LostFragments = 2,  ///< a fragment is missing, of the next frame that has several
        HeaderTwice = 4,    ///< the header comes again, twice, and the stream begins anew
        UnknownStreams = 8, ///< a record of a stream that the header does not know
        Stall = 16,         ///< nothing comes for a while, in the middle of a record
        SizeChange = 32,    ///< the pictures get another size; test picture only
        CodecChange = 64,   ///< the pictures get another codec; test picture only
    };
    static constexpr int MaxStall = 20 * 1000;
    static constexpr int MaxEvery = 100000;

    quint32 kinds = 0;
    int stall = 1000; ///< milliseconds
    int every = 75;   ///< pictures
    quint32 seed = 1; ///< of the garbage and of what is lost

    bool has(Kind kind) const { return (kinds & kind) != 0; }
};

/// The names on the command line: "garbage", "lost", "header", "unknown", "stall", "size", "codec".
QStringList videoFaultNames();
/// Reads names with a comma between them; the stall may say how long, as in "stall=2000". Nothing, with
/// \a reason set, when there is no such fault.
std::optional<VideoFaults> readVideoFaults(const QString &list, QString &reason);

/// Says when faults are due, and damages records.
class FaultInjector
{
public:
    explicit FaultInjector(const VideoFaults &faults = {});

    const VideoFaults &faults() const { return m_faults; }
    /// Goes on to the next picture.
    void nextPicture() { ++m_picture; }
    bool isDue(VideoFaults::Kind kind) const;
    /// Does to the records of one picture what is due; a fragment is lost of the next frame that has
    /// several. Returns what was done, for the log.
    QStringList damage(QList<QByteArray> &records);

private:
    QByteArray garbage();

    VideoFaults m_faults;
    QRandomGenerator m_random;
    qint64 m_picture = 0;
    bool m_losesFragment = false;
};

} // namespace recorder
