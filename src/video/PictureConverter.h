#pragma once

#include "video/FfmpegHandles.h"
#include "video/PictureReducer.h"

#include <QImage>
#include <QSize>

#include <memory>

namespace paravue
{

/// Turns decoded pictures into images of QImage::Format_RGB32.
///
/// The next picture overwrites the image before it, so a receiver that keeps an image has to copy it or to
/// release() it first. Buffers are used again once their images are gone. They live as long as any of these.
class PictureConverter
{
public:
    /// A null image when the picture's pixel format cannot be converted or memory is short. The image is
    /// scaled in height when the pixels of the picture are not square.
    QImage convert(const AVFrame &picture);
    /// The same in \a size, which is not empty.
    QImage convertTo(const AVFrame &picture, QSize size);
    /// Leaves the buffer to \a image. False when that is not the last image of this converter.
    bool release(const QImage &image);
    /// Releases buffers and scaler.
    void reset();

private:
    /// What the scaler was made for.
    struct Source {
        int width = -1;
        int height = -1;
        int format = -1;
        int colourSpace = -1;
        bool isFullRange = false;
        bool operator==(const Source &) const = default;
    };

    QImage convert(const AVFrame &picture, const PicturePlanes &planes, QSize target);
    bool prepare(const Source &source, QSize target);
    bool provideBuffer();

    Source m_source;
    QSize m_target;
    ScalerHandle m_scaler;
    std::shared_ptr<AVBufferPool> m_pool; ///< shared by all pictures of this size
    BufferHandle m_pixels;                ///< null behind release()
};

} // namespace paravue
