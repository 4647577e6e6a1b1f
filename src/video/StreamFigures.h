#pragma once

#include "video/cHvx3Parser.h"

#include <QSize>
#include <QString>

#include <chrono>

namespace paravue
{

/// What a live stream has brought since its connection began, or over several, for support.
struct StreamFigures {
    QString codec;       ///< the recorder's name for it; empty before the header
    QSize size;          ///< of the last decoded picture, in pixels
    quint64 bytes = 0;   ///< parsed
    quint64 frames = 0;  ///< of pictures, whole
    quint64 leftOut = 0; ///< of them, because they could not be decoded in time
    /// How long the last frame has waited for its decoding.
    std::chrono::milliseconds wait{0};
    Hvx3Losses losses;

    /// Adds what an earlier connection has brought.
    StreamFigures &operator+=(const StreamFigures &earlier)
    {
        bytes += earlier.bytes;
        frames += earlier.frames;
        leftOut += earlier.leftOut;
        losses.bytes += earlier.losses.bytes;
        losses.gaps += earlier.losses.gaps;
        losses.fragments += earlier.losses.fragments;
        losses.frames += earlier.losses.frames;
        return *this;
    }
};

} // namespace paravue
