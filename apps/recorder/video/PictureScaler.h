#pragma once

#include "recorder/video/FfmpegObjects.h"

namespace recorder
{

/// Scales pictures and converts their pixel formats. The conversion is prepared once for pictures of the same
/// size and format.
class PictureScaler
{
public:
    /// Fills \a target; false when FFmpeg cannot convert such pictures.
    bool scale(const AVFrame &source, AVFrame &target);

private:
    Scaler m_scaler;
};

} // namespace recorder
