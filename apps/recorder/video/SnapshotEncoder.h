#pragma once

#include "recorder/video/PictureEncoder.h"

/// Snapshots are single pictures as JPEG. They are empty when they cannot be encoded.
namespace recorder
{

/// A picture of that size, which \a paint fills.
QByteArray encodeSnapshot(QSize size, const std::function<void(PicturePainter &)> &paint);

/// A decoded picture, in the encodableSize() of its size.
QByteArray encodeSnapshot(const AVFrame &picture);

/// A coded key picture; \a parameters are those of its stream.
QByteArray encodeSnapshot(const AVCodecParameters &parameters, const QByteArray &keyPicture);

} // namespace recorder
