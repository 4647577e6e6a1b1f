#pragma once

#include <QImage>

#include <optional>

namespace paravue::test
{

/// Reads the clock in a test picture of the recorder simulator: tenths of a second since midnight (UTC), as
/// 20 black and white blocks in a strip along the lower edge, a twelfth of the height. Nothing when the image
/// shows no such strip. It may be scaled.
inline std::optional<int> shownTenths(const QImage &image)
{
    constexpr int Blocks = 20;
    constexpr int Parts = 12;
    constexpr int Dark = 60;
    constexpr int Bright = 195;
    int tenths = 0;
    for (int block = 0; block < Blocks; ++block) {
        const QPoint middle((2 * block + 1) * image.width() / (2 * Blocks),
                            image.height() - 1 - image.height() / (2 * Parts));
        if (!image.valid(middle))
            return std::nullopt;
        const int grey = qGray(image.pixel(middle));
        if (grey > Dark && grey < Bright)
            return std::nullopt;
        tenths = tenths * 2 + (grey >= Bright ? 1 : 0);
    }
    constexpr int Day = 24 * 60 * 60 * 10;
    return tenths < Day ? std::optional(tenths) : std::nullopt; // an empty white area is no clock
}

} // namespace paravue::test
