#pragma once

#include "video/FfmpegHandles.h"

#include <QImage>
#include <QSize>

namespace paravue
{

/// Turns decoded pictures into images of QImage::Format_RGB32.
///
/// All images of one size share one pixel buffer, so the next picture overwrites the image before it; a
/// receiver that keeps an image has to copy it. The buffer lives as long as any of its images.
class PictureConverter
{
public:
    /// A null image when the picture's pixel format cannot be converted or memory is short. The image is
    /// scaled in height when the pixels of the picture are not square.
    QImage convert(const AVFrame &picture);
    /// Releases buffer and scaler.
    void reset();

private:
    /// What the scaler was made for.
    struct Source {
        int width = -1;
        int height = -1;
        int format = -1;
        bool operator==(const Source &) const = default;
    };

    bool prepare(const Source &source, QSize target);

    Source m_source;
    QSize m_target;
    ScalerHandle m_scaler;
    BufferHandle m_pixels;
};

} // namespace paravue
