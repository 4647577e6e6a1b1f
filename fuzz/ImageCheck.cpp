#include "ImageCheck.h"

#include "Require.h"

#include "video/VideoLimits.h"

namespace paravue::fuzz
{

namespace
{

/// Of larger pictures only the edges are read, as a few bytes can be a picture of many MiB.
constexpr qint64 PixelsToReadWhole = 64 * 1024;

void checkRow(const QImage &image, int y, int step)
{
    const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    const int last = image.width() - 1;
    for (int x = 0; x < last; x += step)
        require(qAlpha(row[x]) == 255, "pixels are opaque");
    require(qAlpha(row[last]) == 255, "pixels at the end of a row are opaque");
}

} // namespace

void checkImage(const QImage &image)
{
    const qint64 pixels = qint64(image.width()) * image.height();
    require(!image.isNull() && image.width() > 0 && image.height() > 0, "a picture has a size");
    require(pixels <= MaxPicturePixels, "a picture has no more pixels than allowed");
    require(image.format() == QImage::Format_RGB32, "a picture has the format for display");
    require(image.bytesPerLine() >= qsizetype(image.width()) * 4, "a row holds its pixels");
    const bool whole = pixels <= PixelsToReadWhole;
    for (int y = 0; y < image.height(); ++y)
        checkRow(image, y, whole || y == 0 || y == image.height() - 1 ? 1 : image.width());
}

} // namespace paravue::fuzz
