#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
}

/// Owners of libavformat's objects, filters and parsers; for the others see video/FfmpegHandles.h.
namespace paravue
{

struct InputFree {
    void operator()(AVFormatContext *input) const { avformat_close_input(&input); }
};

struct FormatFree {
    void operator()(AVBSFContext *filter) const { av_bsf_free(&filter); }
    void operator()(AVCodecParserContext *parser) const { av_parser_close(parser); }
    void operator()(AVFormatContext *context) const { avformat_free_context(context); }
    void operator()(AVIOContext *io) const
    {
        // The context may have replaced the buffer that it was given.
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

using FilterHandle = std::unique_ptr<AVBSFContext, FormatFree>;
using InputHandle = std::unique_ptr<AVFormatContext, InputFree>;
using FormatHandle = std::unique_ptr<AVFormatContext, FormatFree>;
using ParserHandle = std::unique_ptr<AVCodecParserContext, FormatFree>;
using IoHandle = std::unique_ptr<AVIOContext, FormatFree>;

} // namespace paravue
