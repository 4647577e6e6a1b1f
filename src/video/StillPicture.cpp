#include "video/StillPicture.h"

#include "video/VideoLimits.h"

#include <QBuffer>
#include <QImageReader>

namespace paravue
{
namespace
{

const QByteArray JpegStartOfScan = QByteArrayLiteral("\xFF\xDA");
const QByteArray JpegEndOfImage = QByteArrayLiteral("\xFF\xD9");

/// The decoder would show missing parts in grey.
bool isWhole(const QByteArray &jpeg)
{
    return jpeg.lastIndexOf(JpegEndOfImage) > jpeg.lastIndexOf(JpegStartOfScan);
}

/// Each scan of a progressive picture takes a few bytes and may decode all pixels again.
bool isAffordable(const QByteArray &jpeg, const QSize &size)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    if (pixels <= 0 || pixels > MaxStillPixels)
        return false;
    return pixels * jpeg.count(JpegStartOfScan) <= MaxStillWork;
}

/// Halved as often as needed, which the decoder does while it decodes.
QSize reduced(QSize size)
{
    while (qint64(size.width()) * size.height() > LargestStill)
        size = QSize((size.width() + 1) / 2, (size.height() + 1) / 2);
    return size;
}

} // namespace

QImage decodeStillPicture(const QByteArray &jpeg)
{
    QBuffer buffer;
    buffer.setData(jpeg);
    buffer.open(QIODevice::ReadOnly);
    // Qt's plug-ins for other formats can do more than show a picture.
    QImageReader reader(&buffer, "jpeg");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!isWhole(jpeg) || !isAffordable(jpeg, size))
        return {};
    if (const QSize smaller = reduced(size); smaller != size)
        reader.setScaledSize(smaller);
    reader.setAutoTransform(true);
    return reader.read();
}

} // namespace paravue
