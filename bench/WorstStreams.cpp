#include "WorstStreams.h"

#include "EndlessSlices.h"

#include "support/EncodedClip.h"
#include "support/Hvx3Bytes.h"
#include "video/cFfmpegDecoder.h"

#include <QCoreApplication>
#include <QRandomGenerator>

namespace paravue::bench
{
namespace
{

using test::encodeClip;
using test::EncodedClip;

const QSize SquareSize(4096, 4096);
const QSize PhotoSize(5472, 3648);
constexpr int FragmentSize = 60'000;

QByteArray headerFor(const QByteArray &label)
{
    return test::hvx3Header({{.label1 = label}}) + test::hvx3Index(0);
}

QByteArray frame(const QByteArray &bytes)
{
    return test::hvx3Frame(0, bytes, FragmentSize);
}

QByteArray framesOf(const QList<QByteArray> &pictures)
{
    QByteArray bytes;
    for (const QByteArray &picture : pictures)
        bytes += frame(picture);
    return bytes;
}

/// Whether live pictures of this kind are decoded. The decoder may hold one back.
bool isDecoded(const EncodedClip &clip)
{
    cFfmpegDecoder decoder;
    decoder.workInTurns();
    int shown = 0;
    QObject::connect(&decoder, &cFfmpegDecoder::onFrame, &decoder, [&shown] { ++shown; });
    decoder.create(QString::fromLatin1(clip.decoder));
    for (const QByteArray &picture : clip.pictures)
        decoder.append(picture);
    while (decoder.isBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return shown > clip.pictures.size() / 2;
}

/// The clip in the best quality that is decoded.
EncodedClip densest(test::ClipFormat format)
{
    for (const int quality : {1, 2, 3, 4, 6, 8, 10, 15, 20, 30}) {
        format.quality = quality;
        const EncodedClip clip = encodeClip(format);
        if (isDecoded(clip))
            return clip;
    }
    qFatal("nothing is decoded");
}

} // namespace

WorstStream emptyPictures()
{
    const EncodedClip clip =
        encodeClip({.encoder = "libx264", .size = SquareSize, .pictures = 12, .still = true});
    // Also all in one frame, so that one read of the socket completes them.
    return {headerFor("H264"), framesOf(clip.pictures) + frame(clip.whole())};
}

WorstStream denseH264()
{
    const EncodedClip clip =
        densest({.encoder = "libx264", .size = {4000, 3000}, .pictures = 8, .reordered = 1, .noise = true});
    return {headerFor("H264"), framesOf(clip.pictures)};
}

WorstStream densePhotos()
{
    const EncodedClip clip = densest({.encoder = "mjpeg", .size = PhotoSize, .pictures = 2, .noise = true});
    return {headerFor("mjpeg"), framesOf(clip.pictures)};
}

WorstStream denseMpeg4()
{
    const EncodedClip clip = densest({.encoder = "mpeg4", .size = SquareSize, .pictures = 3, .noise = true});
    return {headerFor("mp4v"), framesOf(clip.pictures)};
}

WorstStream crowdedFrames()
{
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {16, 16}, .pictures = 1});
    const QByteArray &picture = clip.pictures.first();
    return {headerFor("mjpeg"), frame(picture.repeated(8'000'000 / picture.size()))};
}

WorstStream headers()
{
    const EncodedClip film = encodeClip({.encoder = "mpeg4", .size = {1024, 960}, .pictures = 1});
    const EncodedClip photo = encodeClip({.encoder = "mjpeg", .size = {64, 64}, .pictures = 1});
    const QByteArray flood = (headerFor("H264") + headerFor("mp4v")).repeated(500);
    // One header that opens thousands of codecs.
    const QByteArray wide = test::hvx3Header(QList<test::Hvx3Stream>(2500, {.label1 = "mp4v"}));
    return {{}, flood + frame(film.whole()) + headerFor("mjpeg") + frame(photo.whole()) + wide};
}

WorstStream alternatingSizes()
{
    const EncodedClip small = encodeClip({.encoder = "mjpeg", .size = {16, 16}, .pictures = 1});
    const EncodedClip large = encodeClip({.encoder = "mjpeg", .size = PhotoSize, .pictures = 1});
    return {headerFor("mjpeg"), frame((small.whole() + large.whole()).repeated(4))};
}

WorstStream damagedPictures()
{
    const EncodedClip clip =
        encodeClip({.encoder = "libx264", .size = {1024, 960}, .pictures = 20, .slices = 4, .noise = true});
    QRandomGenerator random(1);
    QByteArray bytes;
    for (QByteArray picture : clip.pictures) {
        for (int error = 0; error < 10; ++error)
            picture[random.bounded(100, int(picture.size()))] = char(random.generate());
        bytes += frame(picture);
    }
    return {headerFor("H264"), bytes};
}

WorstStream manySlices()
{
    const EncodedClip clip =
        encodeClip({.encoder = "libx264", .size = SquareSize, .pictures = 2, .still = true});
    QByteArray slices;
    for (quint32 block = 0; block < 3000; ++block)
        slices += emptySliceFrom(clip.pictures[1], block, SquareSize);
    return {headerFor("H264"), frame(clip.pictures[0] + slices)};
}

WorstStream emptyFrames()
{
    const QByteArray texts =
        test::hvx3Header({{.id = 0, .type = 4}, {.id = 1, .type = 4}}) + test::hvx3Index(0);
    QByteArray records;
    for (int i = 0; i < 100'000; ++i)
        records += test::hvx3Data(i % 2, test::WholeFrame, {});
    return {texts, records + QByteArray(500'000, '\xb5') + test::hvx3Index(0)};
}

} // namespace paravue::bench
