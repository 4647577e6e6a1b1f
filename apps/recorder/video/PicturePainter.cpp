#include "recorder/video/PicturePainter.h"

#include <cmath>
#include <cstring>

namespace recorder
{

namespace
{

struct Components {
    uint8_t values[3];
};

/// ITU-R BT.601.
Components componentsOf(Colour colour, bool fullRange)
{
    const double red = colour.red / 255.0;
    const double green = colour.green / 255.0;
    const double blue = colour.blue / 255.0;
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    const double lumaRange = fullRange ? 255 : 219;
    const double chromaRange = fullRange ? 255 : 224;
    const auto rounded = [](double value) { return uint8_t(std::lround(std::fmin(value, 255))); };
    return {{rounded((fullRange ? 0 : 16) + lumaRange * luma),
             rounded(128 + chromaRange * (blue - luma) / 1.772),
             rounded(128 + chromaRange * (red - luma) / 1.402)}};
}

} // namespace

void PicturePainter::fill(const QRect &area, Colour colour)
{
    const QRect inside = area.intersected(QRect(QPoint(0, 0), m_planes.size));
    if (inside.isEmpty())
        return;
    const Components components = componentsOf(colour, m_planes.fullRange);
    const QRect half(QPoint(inside.left() / 2, inside.top() / 2),
                     QPoint(inside.right() / 2, inside.bottom() / 2));
    fillPlane(0, inside, components.values[0]);
    fillPlane(1, half, components.values[1]);
    fillPlane(2, half, components.values[2]);
}

void PicturePainter::fillPlane(int plane, const QRect &area, uint8_t value)
{
    uint8_t *row = m_planes.data[plane] + std::ptrdiff_t(area.top()) * m_planes.strides[plane] + area.left();
    for (int y = area.top(); y <= area.bottom(); ++y, row += m_planes.strides[plane])
        std::memset(row, value, size_t(area.width()));
}

} // namespace recorder
