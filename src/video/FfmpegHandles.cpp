#include "video/FfmpegHandles.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

static_assert(LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(59, 37, 100), "FFmpeg 5.1 or later is needed");

namespace paravue
{

void FfmpegFree::operator()(AVBufferPool *pool) const
{
    av_buffer_pool_uninit(&pool);
}

void FfmpegFree::operator()(AVBufferRef *buffer) const
{
    av_buffer_unref(&buffer);
}

void FfmpegFree::operator()(AVCodecContext *context) const
{
    avcodec_free_context(&context);
}

void FfmpegFree::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

void FfmpegFree::operator()(AVPacket *packet) const
{
    av_packet_free(&packet);
}

void FfmpegFree::operator()(SwsContext *scaler) const
{
    sws_freeContext(scaler);
}

} // namespace paravue
