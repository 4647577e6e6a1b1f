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

/// The decoder fills up what is missing with grey.
bool isWhole(const QByteArray &jpeg)
{
    return jpeg.lastIndexOf(JpegEndOfImage) > jpeg.lastIndexOf(JpegStartOfScan);
}

/// Each scan of a progressive picture goes over all of its pixels again, and takes a few bytes.
bool isAffordable(const QByteArray &jpeg, const QSize &size)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    if (pixels <= 0 || pixels > MaxStillPixels)
        return false;
    return pixels * jpeg.count(JpegStartOfScan) <= MaxStillWork;
}

/// Halved as often as is needed; the decoder does that while it decodes.
QSize reduced(QSize size)
{
    while (qint64(size.width()) * size.height() > LargestStill)
        size = QSize((size.width() + 1) / 2, (size.height() + 1) / 2);
    return size;
}

} // namespace

QImage decodedStill(const QByteArray &jpeg)
{
    QBuffer buffer;
    buffer.setData(jpeg);
    buffer.open(QIODevice::ReadOnly);
    // Other formats of the toolkit's plug-ins can do more than show a picture.
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
