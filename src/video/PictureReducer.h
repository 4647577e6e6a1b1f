#pragma once

#include <QSize>

#include <array>
#include <cstdint>

struct AVFrame;

namespace paravue
{

/// The planes of a picture, in its own pixel format.
struct PicturePlanes {
    QSize size;
    std::array<const std::uint8_t *, 4> data{};
    std::array<int, 4> strides{};
};

PicturePlanes planesOf(const AVFrame &picture);

/// Halves \a picture as often as it can be halved without becoming smaller than \a target, so that no pixel
/// is left out when the rest of the way is scaled. When that is all but a hundredth of the way its edges are
/// cut off, and it has the size of the target. The memory is that of the picture, or is used again by the
/// next call in the same thread.
///
/// Done before the conversion to RGB, both together take a quarter of the time of a conversion of the whole
/// picture and a scaling behind it.
PicturePlanes halvedTo(const AVFrame &picture, QSize target);

} // namespace paravue
