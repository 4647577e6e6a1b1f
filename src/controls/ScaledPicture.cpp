#include "controls/ScaledPicture.h"

#include <QImage>
#include <QPainter>

#include <utility>

namespace paravue
{
namespace
{

/// More rows at a time are given to the threads of Qt's pool, and the window would wait for them: on a busy
/// computer longer than for the work.
constexpr int RowsAtOnce = 64;

/// Gives \a image this size and format, in the memory that it has when it is of these already. New memory for
/// each picture takes as long as a third of its scaling.
void provide(QImage &image, const QSize &size, QImage::Format format)
{
    if (image.size() != size || image.format() != format)
        image = QImage(size, format);
    image.setDevicePixelRatio(1);
}

/// When the half of a picture is larger by no more than this share, its edges are cut off. Another step would
/// blur it and take as long again.
constexpr double CutShare = 0.01;

/// Where \a half is painted to fill \a size; empty when it is too large for that.
QRect placeOfHalf(const QSize &half, const QSize &size)
{
    const QSize cut = half - size;
    const bool isNear = cut.width() <= size.width() * CutShare && cut.height() <= size.height() * CutShare;
    return isNear ? QRect({-cut.width() / 2, -cut.height() / 2}, half) : QRect();
}

/// Paints \a image in \a place of \a scaled. Each pixel is made of the four nearest ones.
void interpolate(const QImage &image, QImage &scaled, const QRect &place)
{
    const QSize size = scaled.size();
    QPainter painter(&scaled);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int row = 0; row < size.height(); row += RowsAtOnce) {
        painter.setClipRect(0, row, size.width(), RowsAtOnce);
        painter.drawImage(place, image);
    }
}

/// In steps of no less than a half, so that no pixel is left out. That is twice as fast as QImage::scaled().
/// \a step is the memory of the first step.
void scale(const QImage &picture, QImage &scaled, QImage &step)
{
    const QSize half = QSize((picture.width() + 1) / 2, (picture.height() + 1) / 2).expandedTo(scaled.size());
    if (const QRect place = placeOfHalf(half, scaled.size()); !place.isEmpty())
        return interpolate(picture, scaled, place);
    provide(step, half, scaled.format());
    interpolate(picture, step, step.rect());
    QImage further;
    scale(step, scaled, further);
}

} // namespace

const QPixmap &ScaledPicture::of(const QPixmap &picture, const QSize &size, qreal pixelRatio)
{
    const QSize pixels = (QSizeF(size) * pixelRatio).toSize();
    if (m_scaled.size() != pixels || m_key != picture.cacheKey()) {
        m_scaled = picture.isNull() || pixels.isEmpty() ? QPixmap() : scaledTo(pixels, picture.toImage());
        m_key = picture.cacheKey();
    }
    m_scaled.setDevicePixelRatio(pixelRatio);
    return m_scaled;
}

void ScaledPicture::set(const QPixmap &picture, const QPixmap &scaled)
{
    m_scaled = scaled;
    m_key = picture.cacheKey();
}

QPixmap ScaledPicture::scaledTo(const QSize &size, const QImage &picture)
{
    static QImage step; // all controls use it in turn
    QImage image = m_scaled.toImage();
    m_scaled = QPixmap(); // so that the image is not copied when it is written
    provide(image, size,
            picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    scale(picture, image, step);
    return QPixmap::fromImage(std::move(image));
}

} // namespace paravue
