#include "recorder/video/PictureScaler.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <utility>

namespace recorder
{

namespace
{

/// The same format without its range: the YUVJ names are deprecated, and the scaler takes the range as an
/// option of its own.
AVPixelFormat plainFormat(AVPixelFormat format)
{
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    default:
        return format;
    }
}

bool isFullRange(const AVFrame &picture)
{
    const auto format = AVPixelFormat(picture.format);
    return picture.color_range == AVCOL_RANGE_JPEG || plainFormat(format) != format;
}

using Options = std::array<std::pair<const char *, int64_t>, 8>;

Options optionsFor(const AVFrame &source, const AVFrame &target)
{
    return {{
        {"srcw", source.width},
        {"srch", source.height},
        {"src_format", plainFormat(AVPixelFormat(source.format))},
        {"src_range", isFullRange(source)},
        {"dstw", target.width},
        {"dsth", target.height},
        {"dst_format", plainFormat(AVPixelFormat(target.format))},
        {"dst_range", isFullRange(target)},
    }};
}

bool hasOptions(SwsContext *scaler, const Options &options)
{
    return std::all_of(options.begin(), options.end(), [scaler](const auto &option) {
        int64_t value = 0;
        return av_opt_get_int(scaler, option.first, 0, &value) == 0 && value == option.second;
    });
}

Scaler makeScaler(const Options &options)
{
    Scaler scaler(sws_alloc_context());
    if (!scaler)
        return nullptr;
    // Set before sws_init_context(): ranges set later are ignored while the size stays the same.
    av_opt_set_int(scaler.get(), "sws_flags", SWS_BILINEAR, 0);
    for (const auto &[name, value] : options)
        av_opt_set_int(scaler.get(), name, value, 0);
    return sws_init_context(scaler.get(), nullptr, nullptr) < 0 ? nullptr : std::move(scaler);
}

} // namespace

bool PictureScaler::scale(const AVFrame &source, AVFrame &target)
{
    const Options options = optionsFor(source, target);
    if (!m_scaler || !hasOptions(m_scaler.get(), options))
        m_scaler = makeScaler(options);
    if (!m_scaler)
        return false;
    sws_scale(m_scaler.get(), source.data, source.linesize, 0, source.height, target.data, target.linesize);
    return true;
}

} // namespace recorder
