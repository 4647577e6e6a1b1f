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

/// The three planes of a picture whose colours (Cb, Cr) have half the width and height of its brightness.
struct PicturePlanes {
    uint8_t *data[3] = {};
    int strides[3] = {};
    QSize size;
    /// Whether brightness and colours use all values (motion JPEG) or those from 16 to 235 and 240 (video).
    bool fullRange = false;
};

/// Fills rectangles; what lies outside the picture is left out.
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
