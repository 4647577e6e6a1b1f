#pragma once

#include <memory>

struct AVBufferPool;
struct AVBufferRef;
struct AVCodecContext;
struct AVFrame;
struct AVPacket;
struct SwsContext;

/// Owners of FFmpeg's objects. Each frees with the function that belongs to its type; nothing else does.
/// FFmpeg's own headers are not needed here, so that they stay in the few sources that use them.
namespace paravue
{

struct FfmpegFree {
    void operator()(AVBufferPool *pool) const;  ///< once all its buffers have come back
    void operator()(AVBufferRef *buffer) const; ///< gives up one reference
    void operator()(AVCodecContext *context) const;
    void operator()(AVFrame *frame) const;
    void operator()(AVPacket *packet) const;
    void operator()(SwsContext *scaler) const;
};

using BufferPoolHandle = std::unique_ptr<AVBufferPool, FfmpegFree>;
using BufferHandle = std::unique_ptr<AVBufferRef, FfmpegFree>;
using CodecContextHandle = std::unique_ptr<AVCodecContext, FfmpegFree>;
using FrameHandle = std::unique_ptr<AVFrame, FfmpegFree>;
using PacketHandle = std::unique_ptr<AVPacket, FfmpegFree>;
using ScalerHandle = std::unique_ptr<SwsContext, FfmpegFree>;

} // namespace paravue
