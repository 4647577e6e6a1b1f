#pragma once

#include <QPixmap>

namespace paravue
{

/// A picture in the size in which it is painted. Scaling takes longer than all else that a live picture needs
/// behind its decoding, so it is done once for each picture, whatever is painted over it.
class ScaledPicture
{
public:
    /// \a picture in \a size, in device-independent pixels of a screen with so many pixels to each.
    const QPixmap &of(const QPixmap &picture, const QSize &size, qreal pixelRatio);
    /// Replaces what of() returns for \a picture as long as the size stays that of \a scaled.
    void set(const QPixmap &picture, const QPixmap &scaled);
    /// The same for the last one that was set or scaled.
    void setPicture(const QPixmap &picture) { m_key = picture.cacheKey(); }

private:
    QPixmap scaledTo(const QSize &size, const QImage &picture);

    QPixmap m_scaled;
    qint64 m_key = 0; ///< of the picture
};

} // namespace paravue
