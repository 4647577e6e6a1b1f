#pragma once

#include "StreamClock.h"

#include <set>

namespace paravue
{

/// How far the order in which the pictures of a track are decoded differs from the order in which they are
/// shown. It differs only in streams with B pictures.
struct PictureOrder {
    int delay = 0;   ///< the most pictures before one of them in decoding that are shown behind it
    qint64 lead = 0; ///< the earliest time minus that of the first picture, 0 or less
    qint64 step = 1; ///< the mean time from one picture to the next

    /// Codecs allow no more.
    static constexpr int MaxDelay = 16;
};

/// Finds the order of the pictures of a track.
class PictureOrderFinder
{
public:
    /// Takes the next picture in the order of decoding.
    void take(qint64 time, bool isBPicture);
    PictureOrder order() const;

private:
    StreamClock m_clock;
    std::multiset<qint64> m_latest; ///< times
    PictureOrder m_found;
    qint64 m_pictures = 0;
    bool m_hasBPictures = false;
};

/// Gives the pictures of a track times that a media file can have: each is shown at a time of its own and not
/// before it is decoded, and they are decoded one after the other.
class PictureTimes
{
public:
    PictureTimes() = default;
    explicit PictureTimes(const PictureOrder &order) : m_order(order) {}

    struct Times {
        qint64 shown = 0;
        qint64 decoded = 0;
    };
    /// \a shown is the time of the next picture in the order of decoding.
    Times advance(qint64 shown);
    qint64 count() const { return m_taken; }
    /// How many pictures are shown at another time than they were to be.
    qint64 moved() const { return m_moved; }

private:
    PictureOrder m_order;
    std::set<qint64> m_waiting; ///< times at which pictures are shown that no decoding time was taken from
    qint64 m_first = 0;
    qint64 m_taken = 0; ///< pictures
    qint64 m_lastDecoded = 0;
    qint64 m_moved = 0;
};

} // namespace paravue
