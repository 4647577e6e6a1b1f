#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

#include <QString>

/// Smart pointers for objects of FFmpeg.
namespace recorder
{

struct FfmpegDeleter {
    void operator()(AVBSFContext *filter) const { av_bsf_free(&filter); }
    void operator()(AVFormatContext *input) const { avformat_close_input(&input); }
    void operator()(SwsContext *scaler) const { sws_freeContext(scaler); }
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};

using BitstreamFilter = std::unique_ptr<AVBSFContext, FfmpegDeleter>;
using Input = std::unique_ptr<AVFormatContext, FfmpegDeleter>;
using Scaler = std::unique_ptr<SwsContext, FfmpegDeleter>;
using CodecContext = std::unique_ptr<AVCodecContext, FfmpegDeleter>;
using Frame = std::unique_ptr<AVFrame, FfmpegDeleter>;
using Packet = std::unique_ptr<AVPacket, FfmpegDeleter>;

inline QString ffmpegError(int code)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return QString::fromLocal8Bit(text);
}

} // namespace recorder
