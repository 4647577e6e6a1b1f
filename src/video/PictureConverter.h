#pragma once

#include "video/FfmpegHandles.h"

#include <QImage>
#include <QSize>

namespace paravue
{

/// Turns decoded pictures into images of QImage::Format_RGB32.
///
/// All images of one size share one pixel buffer, so the next picture changes the image of the one before:
/// who keeps an image copies it. The buffer lives as long as any of its images.
class PictureConverter
{
public:
    /// A null image when the picture's pixel format cannot be converted or memory is short. Pixels that are
    /// not square make the image higher than the picture.
    QImage convert(const AVFrame &picture);
    /// Forgets buffer and scaler.
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
