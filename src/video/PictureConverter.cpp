#include "video/PictureConverter.h"

#include "video/VideoLimits.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <utility>

extern "C" {
#include <libavutil/buffer.h>
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace
{

using paravue::BufferHandle;

constexpr int BytesPerPixel = 4;
/// The scaler writes blocks of pixels. In rows of exactly the picture's width it would write beyond the
/// buffer for some widths and leave out the last columns for others.
constexpr int RowAlignment = 64;

qsizetype rowBytes(int width)
{
    const qsizetype bytes = qsizetype(width) * BytesPerPixel;
    return (bytes + RowAlignment - 1) / RowAlignment * RowAlignment;
}

/// The size of \a picture with square pixels.
QSize shownSize(const AVFrame &picture)
{
    const QSize coded(picture.width, picture.height);
    const AVRational pixel = picture.sample_aspect_ratio; // width over height
    if (pixel.num <= 0 || pixel.den <= 0 || pixel.num == pixel.den)
        return coded;
    const qint64 height = av_rescale(coded.height(), pixel.den, pixel.num);
    const bool sensible = height > 0 && height <= qint64(coded.height()) * paravue::MaxHeightFactor &&
                          height * coded.width() <= paravue::MaxPicturePixels;
    return sensible ? QSize(coded.width(), static_cast<int>(height)) : coded;
}

/// \a format under its present name, and whether its brightness has the full range 0 to 255. The scaler
/// complains about the old names, which motion JPEG uses.
std::pair<AVPixelFormat, bool> presentFormat(int format)
{
    switch (format) {
    case AV_PIX_FMT_YUVJ411P:
        return {AV_PIX_FMT_YUV411P, true};
    case AV_PIX_FMT_YUVJ420P:
        return {AV_PIX_FMT_YUV420P, true};
    case AV_PIX_FMT_YUVJ422P:
        return {AV_PIX_FMT_YUV422P, true};
    case AV_PIX_FMT_YUVJ440P:
        return {AV_PIX_FMT_YUV440P, true};
    case AV_PIX_FMT_YUVJ444P:
        return {AV_PIX_FMT_YUV444P, true};
    default:
        return {static_cast<AVPixelFormat>(format), false};
    }
}

/// FFmpeg writes numbers of the stream into enumerations. One that has no such value must not be read as
/// such.
template <typename Enumeration>
int numberOf(const Enumeration &value)
{
    static_assert(sizeof(Enumeration) == sizeof(int));
    int number = 0;
    std::memcpy(&number, &value, sizeof(number));
    return number;
}

/// The scaler's number of a colour space that a stream names.
int matrixOf(int colourSpace)
{
    switch (colourSpace) {
    case AVCOL_SPC_BT709:
        return SWS_CS_ITU709;
    case AVCOL_SPC_FCC:
        return SWS_CS_FCC;
    case AVCOL_SPC_SMPTE240M:
        return SWS_CS_SMPTE240M;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return SWS_CS_BT2020;
    default:
        return SWS_CS_DEFAULT; // BT.601
    }
}

void setColours(SwsContext *scaler, int matrix, bool isFullRange)
{
    const int *coefficients = sws_getCoefficients(matrix);
    constexpr int Unchanged = 1 << 16;
    sws_setColorspaceDetails(scaler, coefficients, isFullRange ? 1 : 0, coefficients, 0, 0, Unchanged,
                             Unchanged);
}

/// The fast way leaves out pixels of a picture that is much larger than \a target.
int scalingFlags(QSize source, QSize target)
{
    const bool isMuchLarger = source.width() > 2 * target.width() || source.height() > 2 * target.height();
    return isMuchLarger ? SWS_AREA : SWS_FAST_BILINEAR;
}

bool hasAlpha(int format)
{
    const AVPixFmtDescriptor *known = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    return known && known->flags & AV_PIX_FMT_FLAG_ALPHA;
}

/// The scaler copies the transparency, which an image of this format must not have.
void makeOpaque(const AVBufferRef &pixels)
{
    auto *pixel = reinterpret_cast<QRgb *>(pixels.data);
    std::for_each(pixel, pixel + pixels.size / BytesPerPixel, [](QRgb &one) { one |= 0xff000000; });
}

/// The buffers of \a size bytes, of which all converters together keep one more than is in use.
std::shared_ptr<AVBufferPool> poolOf(std::size_t size)
{
    static std::mutex guard;
    static std::map<std::size_t, std::weak_ptr<AVBufferPool>> pools;
    const std::lock_guard lock(guard);
    std::erase_if(pools, [](const auto &pool) { return pool.second.expired(); });
    std::weak_ptr<AVBufferPool> &known = pools[size];
    auto pool = known.lock();
    if (!pool)
        known = pool = paravue::BufferPoolHandle(av_buffer_pool_init(size, nullptr));
    return pool;
}

/// An image over \a pixels that keeps them alive.
QImage imageOver(const AVBufferRef &pixels, QSize size)
{
    BufferHandle reference(av_buffer_ref(&pixels));
    if (!reference)
        return {};
    uchar *data = reference->data;
    return QImage(
        data, size.width(), size.height(), rowBytes(size.width()), QImage::Format_RGB32,
        [](void *held) { BufferHandle(static_cast<AVBufferRef *>(held)).reset(); }, reference.release());
}

} // namespace

namespace paravue
{

QImage PictureConverter::convert(const AVFrame &picture)
{
    return convert(picture, planesOf(picture), shownSize(picture));
}

QImage PictureConverter::convertTo(const AVFrame &picture, QSize size)
{
    return convert(picture, halvedTo(picture, size), size);
}

/// \a planes are those of \a picture, or of a smaller one.
QImage PictureConverter::convert(const AVFrame &picture, const PicturePlanes &planes, QSize target)
{
    const Source source{planes.size.width(), planes.size.height(), picture.format,
                        numberOf(picture.colorspace), numberOf(picture.color_range) == AVCOL_RANGE_JPEG};
    const bool isSame = source == m_source && target == m_target;
    if (!(isSame || prepare(source, target)) || !provideBuffer()) {
        reset();
        return {};
    }
    uint8_t *const pixels[] = {m_pixels->data, nullptr, nullptr, nullptr};
    const int strides[] = {static_cast<int>(rowBytes(target.width())), 0, 0, 0};
    sws_scale(m_scaler.get(), planes.data.data(), planes.strides.data(), 0, planes.size.height(), pixels,
              strides);
    if (hasAlpha(picture.format))
        makeOpaque(*m_pixels);
    return imageOver(*m_pixels, target);
}

bool PictureConverter::provideBuffer()
{
    if (!m_pixels && m_pool)
        m_pixels.reset(av_buffer_pool_get(m_pool.get()));
    return m_pixels != nullptr;
}

bool PictureConverter::release(const QImage &image)
{
    if (!m_pixels || image.constBits() != m_pixels->data)
        return false;
    m_pixels.reset();
    return true;
}

void PictureConverter::reset()
{
    *this = PictureConverter();
}

bool PictureConverter::prepare(const Source &source, QSize target)
{
    const auto [format, isFullRange] = presentFormat(source.format);
    if (!sws_isSupportedInput(format))
        return false;
    // The native-endian match of QImage::Format_RGB32.
    m_scaler.reset(sws_getContext(source.width, source.height, format, target.width(), target.height(),
                                  AV_PIX_FMT_RGB32, scalingFlags({source.width, source.height}, target),
                                  nullptr, nullptr, nullptr));
    if (m_scaler)
        setColours(m_scaler.get(), matrixOf(source.colourSpace), isFullRange || source.isFullRange);
    if (!m_pool || target != m_target) {
        m_pixels.reset();
        const qsizetype size = rowBytes(target.width()) * target.height() + RowAlignment;
        m_pool = poolOf(std::size_t(size));
    }
    m_source = source;
    m_target = target;
    return m_scaler && m_pool;
}

} // namespace paravue
