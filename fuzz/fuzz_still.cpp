// Requires that any bytes are decoded to a null image or to a picture that can be shown.
//
// Input: the answer.

#include "ImageCheck.h"
#include "PictureCounters.h"
#include "Require.h"

#include "video/ExifTime.h"
#include "video/StillPicture.h"
#include "video/VideoLimits.h"

#include <QCoreApplication>

using namespace paravue::fuzz;

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv); // Qt looks for the decoder in its plug-in folders
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray jpeg(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    paravue::exifTime(jpeg);
    const QImage image = paravue::decodeStillPicture(jpeg);
    if (image.isNull())
        return 0;
    require(qint64(image.width()) * image.height() <= paravue::LargestStill, "a large picture is reduced");
    checkImage(image.convertToFormat(QImage::Format_RGB32));
    countPicture(image, 0);
    return 0;
}
