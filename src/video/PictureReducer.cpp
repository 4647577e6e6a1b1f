#include "video/PictureReducer.h"

#include <algorithm>
#include <vector>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

namespace paravue
{
namespace
{

/// Another step of scaling would blur a picture that is larger by no more than this share.
constexpr double CutShare = 0.01;
/// The scaler may read blocks of bytes.
constexpr int RowAlignment = 64;

/// How many pixels share a value, as a power of two.
struct Sharing {
    int across = 0;
    int down = 0;
};

/// Of the planes with the colours.
Sharing sharingOf(const AVPixFmtDescriptor &format, int plane)
{
    const bool isColour = plane == 1 || plane == 2;
    return isColour ? Sharing{format.log2_chroma_w, format.log2_chroma_h} : Sharing{};
}

/// Whether each plane holds one byte for each of its values.
bool hasBytePlanes(const AVPixFmtDescriptor &format)
{
    constexpr auto Others = AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_PAL;
    if (format.flags & Others)
        return false;
    for (int i = 0; i < format.nb_components; ++i) {
        const AVComponentDescriptor &values = format.comp[i];
        if (values.plane != i || values.step != 1 || values.depth != 8)
            return false;
    }
    return true;
}

/// Whether the half of \a size has whole values in all planes.
bool isHalvable(QSize size, const AVPixFmtDescriptor &format)
{
    return size.width() % (2 << format.log2_chroma_w) == 0 &&
           size.height() % (2 << format.log2_chroma_h) == 0;
}

/// Each value of the half is the mean of four.
void halvePlane(const std::uint8_t *from, int fromStride, std::uint8_t *to, int toStride, QSize half)
{
    for (int y = 0; y < half.height(); ++y) {
        const std::uint8_t *upper = from + std::ptrdiff_t(2) * y * fromStride;
        const std::uint8_t *lower = upper + fromStride;
        std::uint8_t *row = to + std::ptrdiff_t(y) * toStride;
        for (int x = 0; x < half.width(); ++x)
            row[x] =
                std::uint8_t((upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1] + 2) / 4);
    }
}

PicturePlanes halve(const PicturePlanes &picture, const AVPixFmtDescriptor &format,
                    std::vector<std::uint8_t> &memory)
{
    PicturePlanes half{.size = picture.size / 2};
    std::array<std::ptrdiff_t, 4> begins{};
    std::ptrdiff_t end = 0;
    for (int plane = 0; plane < format.nb_components; ++plane) {
        const Sharing sharing = sharingOf(format, plane);
        const int width = half.size.width() >> sharing.across;
        half.strides[plane] = (width + RowAlignment - 1) / RowAlignment * RowAlignment;
        begins[plane] = end;
        end += std::ptrdiff_t(half.strides[plane]) * (half.size.height() >> sharing.down);
    }
    memory.resize(std::max(memory.size(), std::size_t(end + RowAlignment)));
    for (int plane = 0; plane < format.nb_components; ++plane) {
        const Sharing sharing = sharingOf(format, plane);
        std::uint8_t *to = memory.data() + begins[plane];
        halvePlane(picture.data[plane], picture.strides[plane], to, half.strides[plane],
                   {half.size.width() >> sharing.across, half.size.height() >> sharing.down});
        half.data[plane] = to;
    }
    return half;
}

/// The middle of \a picture when it is hardly larger than \a target, else all of it.
PicturePlanes withoutEdges(PicturePlanes picture, QSize target, const AVPixFmtDescriptor &format)
{
    const QSize cut = picture.size - target;
    if (cut.width() < 0 || cut.height() < 0 || cut.width() > target.width() * CutShare ||
        cut.height() > target.height() * CutShare)
        return picture;
    for (int plane = 0; plane < format.nb_components; ++plane) {
        const Sharing sharing = sharingOf(format, plane);
        // The first pixel is one whose colours begin there.
        const int left = cut.width() / 2 >> format.log2_chroma_w << format.log2_chroma_w >> sharing.across;
        const int top = cut.height() / 2 >> format.log2_chroma_h << format.log2_chroma_h >> sharing.down;
        picture.data[plane] += std::ptrdiff_t(top) * picture.strides[plane] + left;
    }
    picture.size = target;
    return picture;
}

} // namespace

PicturePlanes planesOf(const AVFrame &picture)
{
    PicturePlanes planes{.size = {picture.width, picture.height}};
    for (std::size_t plane = 0; plane < planes.data.size(); ++plane) {
        planes.data[plane] = picture.data[plane];
        planes.strides[plane] = picture.linesize[plane];
    }
    return planes;
}

PicturePlanes halvedTo(const AVFrame &picture, QSize target)
{
    PicturePlanes planes = planesOf(picture);
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    if (!format || !hasBytePlanes(*format) || target.isEmpty())
        return planes;
    // Each half is made from the other one.
    static thread_local std::array<std::vector<std::uint8_t>, 2> memory;
    std::size_t next = 0;
    while (isHalvable(planes.size, *format) && planes.size.width() / 2 >= target.width() &&
           planes.size.height() / 2 >= target.height()) {
        planes = halve(planes, *format, memory[next]);
        next = 1 - next;
    }
    return planes.size == target ? planes : withoutEdges(planes, target, *format);
}

} // namespace paravue
