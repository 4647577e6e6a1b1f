#include "controls/ScaledPicture.h"

#include <QImage>
#include <QPainter>

namespace paravue
{
namespace
{

/// More rows at a time are given to the threads of Qt's pool, and the window would wait for them: on a busy
/// computer longer than for the work.
constexpr int RowsAtOnce = 64;

/// Each pixel is made of the four nearest ones.
QImage interpolated(const QImage &image, const QSize &size)
{
    QImage scaled(size, image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : image.format());
    QPainter painter(&scaled);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int row = 0; row < size.height(); row += RowsAtOnce) {
        painter.setClipRect(0, row, size.width(), RowsAtOnce);
        painter.drawImage(QRect(QPoint(), size), image);
    }
    return scaled;
}

/// In steps of no less than a half, so that no pixel is left out. That is twice as fast as QImage::scaled().
QImage scaled(const QImage &picture, const QSize &size)
{
    QImage image = picture;
    while (image.width() > 2 * size.width() || image.height() > 2 * size.height())
        image =
            interpolated(image, QSize((image.width() + 1) / 2, (image.height() + 1) / 2).expandedTo(size));
    return image.size() == size ? image : interpolated(image, size);
}

} // namespace

const QPixmap &ScaledPicture::of(const QPixmap &picture, const QSize &size, qreal pixelRatio)
{
    const QSize pixels = (QSizeF(size) * pixelRatio).toSize();
    if (m_scaled.size() != pixels || m_key != picture.cacheKey()) {
        m_scaled = picture.isNull() || pixels.isEmpty()
                       ? QPixmap()
                       : QPixmap::fromImage(scaled(picture.toImage(), pixels));
        m_key = picture.cacheKey();
    }
    m_scaled.setDevicePixelRatio(pixelRatio);
    return m_scaled;
}

} // namespace paravue
