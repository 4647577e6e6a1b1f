#pragma once

#include "recorder/video/PictureEncoder.h"

/// Pictures of video files, scaled and encoded.
namespace recorder
{

/// The size that pictures of this one are encoded in.
QSize encodableSize(QSize size);

/// Fills \a target, scaled; false when FFmpeg cannot convert such pictures. The scaler is kept for the next.
bool scaleInto(AVFrame &target, const AVFrame &source, Scaler &scaler);

/// The picture that a packet of its own holds; nothing when it cannot be decoded by itself.
Frame decodedPicture(const AVCodecParameters &parameters, const QByteArray &bytes);

/// A picture as a JPEG; empty when it cannot be encoded.
QByteArray jpegOf(const AVFrame &picture);

} // namespace recorder
