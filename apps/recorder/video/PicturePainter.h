#pragma once

#include <QRect>
#include <QSize>

#include <cstdint>

namespace recorder
{

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

/// The planes of a YCbCr 4:2:0 picture: Cb and Cr have half the width and height of Y.
struct PicturePlanes {
    uint8_t *data[3] = {};
    int strides[3] = {};
    QSize size;
    /// Full range uses the values 0 to 255 (motion JPEG), limited range 16 to 235 for Y and to 240 for Cb and
    /// Cr.
    bool fullRange = false;
};

/// Fills rectangles, clipped to the picture.
class PicturePainter
{
public:
    explicit PicturePainter(const PicturePlanes &planes) : m_planes(planes) {}

    QSize size() const { return m_planes.size; }
    void fill(const QRect &area, Colour colour);

private:
    void fillPlane(int plane, const QRect &area, uint8_t value);

    PicturePlanes m_planes;
};

} // namespace recorder
