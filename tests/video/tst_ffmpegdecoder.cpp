#include "support/EncodedClip.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "video/cFfmpegDecoder.h"

#include <QBuffer>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>

extern "C" {
#include <libavutil/log.h>
}

using namespace paravue::test;

Q_DECLARE_METATYPE(paravue::test::ClipColours)
Q_DECLARE_METATYPE(paravue::test::ClipFormat)

namespace
{

/// A decoder, and the numbers that its pictures showed when they were emitted.
class Viewer
{
public:
    Viewer()
    {
        QObject::connect(&decoder, &cFfmpegDecoder::onFrame, &decoder, [this](const QImage &image) {
            numbers << shownNumber(image);
            last = image;
        });
    }

    cFfmpegDecoder decoder;
    QList<int> numbers;
    QImage last; ///< not copied, so later pictures overwrite it
};

QList<int> upTo(int count)
{
    QList<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

bool opaque(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (!std::all_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return false;
    }
    return true;
}

/// Of the values of the colours, 0 to 255.
double meanDifference(const QImage &left, const QImage &right)
{
    double sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QColor a = left.pixelColor(x, y);
            const QColor b = right.pixelColor(x, y);
            sum +=
                std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
        }
    }
    return sum / 3 / (double(left.width()) * left.height());
}

/// How often a codec has concealed damage, which it logs.
int concealments = 0;

void countConcealments(void *, int, const char *format, va_list)
{
    if (QByteArrayView(format).startsWith("concealing "))
        ++concealments;
}

} // namespace

class TestFfmpegDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEachPictureAtOnce_data();
    void showsEachPictureAtOnce();
    void waitsOnlyToKeepPicturesInOrder();
    void opensVideoDecodersByName();
    void reusesItsBufferUntilTheSizeChanges();
    void squaresPixels_data();
    void squaresPixels();
    void showsTheColoursOfTheStream_data();
    void showsTheColoursOfTheStream();
    void survivesColoursThatDoNotExist();
    void scalesPictures_data();
    void scalesPictures();
    void survivesDamage_data();
    void survivesDamage();
    void findsPicturesAmongOtherBytes_data();
    void findsPicturesAmongOtherBytes();
    void concealsNothingBetweenSlices_data();
    void concealsNothingBetweenSlices();
    void leavesOutSlowPictures_data();
    void leavesOutSlowPictures();
    void receiverMayCallDecoder();
    void showsTransparentPicturesOpaque();
    void decodesAtOnceWhileThereIsTime();
    void worksInTurns();
    void leavesOutLatePictures_data();
    void leavesOutLatePictures();
    void keepsParametersOfWhatIsNotDecoded_data();
    void keepsParametersOfWhatIsNotDecoded();
    void catchesUpWhenSomebodyLooks_data();
    void catchesUpWhenSomebodyLooks();
    void isNotLateForWhatNobodySaw();
    void receiverMayCallDecoderInTurns();
};

void TestFfmpegDecoder::showsEachPictureAtOnce_data()
{
    const TestTable<QByteArray, QSize> row("encoder", "size");
    // Widths that fill whole blocks of pixels, half ones, and odd ones; odd heights take another way in the
    // scaler.
    for (const QByteArray encoder : {"libx264", "mpeg4", "mjpeg"}) {
        row(encoder + " whole blocks", encoder, {352, 288});
        row(encoder + " half blocks", encoder, {360, 288});
        row(encoder + " small", encoder, {180, 144});
        row(encoder + " quarter blocks", encoder, {98, 50});
        if (encoder != "libx264") // its sizes are even
            row(encoder + " odd", encoder, {181, 99});
    }
}

void TestFfmpegDecoder::showsEachPictureAtOnce()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QSize, size);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");

    const EncodedClip clip = encodeClip({.encoder = encoder, .size = size});
    Viewer viewer;
    QVERIFY(viewer.decoder.create(clip.decoder));
    for (int number = 0; number < clip.pictures.size(); ++number) {
        viewer.decoder.append(clip.pictures[number]);
        viewer.decoder.append({});
        QCOMPARE(viewer.numbers, upTo(number + 1));
        QCOMPARE(viewer.last.size(), size);
        QCOMPARE(viewer.last.format(), QImage::Format_RGB32);
        QVERIFY(opaque(viewer.last));
    }

    viewer.numbers.clear();
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.whole());
    QCOMPARE(viewer.numbers, upTo(clip.pictures.size()));
}

void TestFfmpegDecoder::waitsOnlyToKeepPicturesInOrder()
{
    // The stream says that pictures may come before those that are shown earlier.
    const EncodedClip clip =
        encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 12, .reordered = 2});
    Viewer viewer;
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.pictures[0]);
    QCOMPARE(viewer.numbers, upTo(1));
    for (const QByteArray &picture : clip.pictures.sliced(1) + clip.pictures)
        viewer.decoder.append(picture);
    // From the second key picture on; one picture is still to come.
    QCOMPARE(viewer.numbers.last(11), upTo(11));
}

void TestFfmpegDecoder::opensVideoDecodersByName()
{
    Viewer viewer;
    for (const char *unknown : {"", "H264", "mp4v", "aac", "libx264", "h26\xb4"}) {
        QVERIFY2(!viewer.decoder.create(QString::fromLatin1(unknown)), unknown);
        viewer.decoder.append("bytes without a decoder");
    }
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 64}});
    QVERIFY(viewer.decoder.create(QStringLiteral("mjpeg")));
    viewer.decoder.append(clip.pictures.first());
    QVERIFY(!viewer.decoder.create(QStringLiteral("none")));
    viewer.decoder.append(clip.pictures.first());
    QCOMPARE(viewer.numbers, upTo(1));
}

void TestFfmpegDecoder::reusesItsBufferUntilTheSizeChanges()
{
    const EncodedClip small = encodeClip({.encoder = "mpeg4", .size = {180, 144}});
    const EncodedClip large = encodeClip({.encoder = "mpeg4", .size = {360, 288}});
    Viewer viewer;
    QVERIFY(viewer.decoder.create(small.decoder));
    viewer.decoder.append(small.pictures[0]);
    const QImage kept = viewer.last;
    viewer.decoder.append(small.pictures[1]);
    QCOMPARE(viewer.last.constBits(), kept.constBits());
    QCOMPARE(shownNumber(kept), 1);

    viewer.decoder.append(large.pictures[0] + large.pictures[1]);
    QCOMPARE(viewer.last.size(), QSize(360, 288));
    viewer.decoder.append(small.pictures[0]);
    QCOMPARE(viewer.last.size(), QSize(180, 144));
    QCOMPARE(viewer.numbers, QList<int>({0, 1, 0, 1, 0}));
    // The same size in another pixel format needs another scaler.
    const EncodedClip photos = encodeClip({.encoder = "mjpeg", .size = {180, 144}});
    const EncodedClip finePhotos = encodeClip({.encoder = "mjpeg", .size = {180, 144}, .fineColours = true});
    QVERIFY(viewer.decoder.create(photos.decoder));
    viewer.numbers.clear();
    viewer.decoder.append(photos.pictures[2] + finePhotos.pictures[3] + photos.pictures[4]);
    QCOMPARE(viewer.numbers, QList<int>({2, 3, 4}));
    // Images that a receiver has kept stay valid, even without the decoder.
    QCOMPARE(shownNumber(kept), 1);
    QVERIFY(!viewer.decoder.create({}));
    QCOMPARE(shownNumber(viewer.last), 4);
}

void TestFfmpegDecoder::squaresPixels_data()
{
    const TestTable<QByteArray, int, int, int> row("encoder", "width", "height", "shown");
    for (const QByteArray encoder : {"libx264", "mpeg4"}) {
        row(encoder + " high pixels", encoder, 1, 2, 288);
        row(encoder + " wide pixels", encoder, 12, 11, 132);
        row(encoder + " as high as allowed", encoder, 1, 4, 576);
        row(encoder + " too high", encoder, 1, 5, 144);
        row(encoder + " square", encoder, 7, 7, 144);
    }
}

void TestFfmpegDecoder::squaresPixels()
{
    QFETCH(QByteArray, encoder);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, shown);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");

    const EncodedClip clip = encodeClip(
        {.encoder = encoder, .size = {180, 144}, .pictures = 2, .pixelWidth = width, .pixelHeight = height});
    Viewer viewer;
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.whole());
    QCOMPARE(viewer.numbers, upTo(2));
    QCOMPARE(viewer.last.size(), QSize(180, shown));
    QVERIFY(opaque(viewer.last));
}

void TestFfmpegDecoder::showsTheColoursOfTheStream_data()
{
    const TestTable<ClipColours, bool, bool> row("colours", "fullRange", "tenBits");
    for (const bool tenBits : {false, true}) {
        for (const bool fullRange : {false, true}) {
            const QByteArray name =
                QByteArray(tenBits ? "10 bits" : "8 bits") + (fullRange ? ", full range" : ", limited range");
            row(name, ClipColours::Unsaid, fullRange, tenBits);
            row(name + ", BT.601", ClipColours::Bt601, fullRange, tenBits);
            row(name + ", BT.709", ClipColours::Bt709, fullRange, tenBits);
            row(name + ", BT.2020", ClipColours::Bt2020, fullRange, tenBits);
        }
    }
}

void TestFfmpegDecoder::showsTheColoursOfTheStream()
{
    QFETCH(ClipColours, colours);
    QFETCH(bool, fullRange);
    QFETCH(bool, tenBits);
    if (!canEncode("libx264"))
        QSKIP("this FFmpeg has no such encoder");
    const ClipFormat usual{.encoder = "libx264", .size = {352, 288}, .pictures = 1};
    ClipFormat format = usual;
    format.colours = colours;
    format.fullRange = fullRange;
    format.tenBits = tenBits;
    // Behind other colours in a picture of the same size.
    Viewer viewer;
    QVERIFY(viewer.decoder.create("h264"));
    viewer.decoder.append(encodeClip(usual).whole());
    viewer.decoder.append(encodeClip(format).whole());
    QCOMPARE(viewer.numbers, QList<int>({0, 0}));
}

/// The sanitizers report when the number is read as one of the known colour spaces.
void TestFfmpegDecoder::survivesColoursThatDoNotExist()
{
    if (!canEncode("mpeg4"))
        QSKIP("this FFmpeg has no such encoder");
    const QByteArray visualObject("\0\0\1\xb5\x15\x3a\x5b\x50\x74", 9);
    Viewer viewer;
    QVERIFY(viewer.decoder.create("mpeg4"));
    viewer.decoder.append(visualObject +
                          encodeClip({.encoder = "mpeg4", .size = {352, 288}, .pictures = 1}).whole());
    QCOMPARE(viewer.numbers, QList<int>({0}));
}

void TestFfmpegDecoder::scalesPictures_data()
{
    const TestTable<ClipFormat, QSize> row("format", "size");
    const ClipFormat usual{.encoder = "libx264", .size = {352, 288}};
    row("half", usual, {176, 144});
    row("half with a frame", usual, {175, 143});
    row("quarter", usual, {88, 72});
    row("between", usual, {100, 81});
    row("less in one direction", usual, {88, 288});
    row("larger", usual, {400, 300});
    row("large to tiny", usual, {9, 7});
    row("MPEG-4", {.encoder = "mpeg4", .size = {352, 288}}, {176, 144});
    row("motion JPEG", {.encoder = "mjpeg", .size = {352, 288}}, {176, 144});
    row("a colour for each pixel", {.encoder = "mjpeg", .size = {362, 298}, .fineColours = true}, {90, 74});
    row("odd", {.encoder = "mjpeg", .size = {181, 99}}, {60, 33});
    row("no multiple of four", {.encoder = "libx264", .size = {354, 286}}, {59, 47});
    row("ten bits", {.encoder = "libx264", .size = {352, 288}, .fullRange = true, .tenBits = true}, {88, 72});
    row("wide pixels", {.encoder = "libx264", .size = {176, 288}, .pixelWidth = 2}, {88, 72});
}

/// The scaled picture looks as the whole one would after scaling.
void TestFfmpegDecoder::scalesPictures()
{
    QFETCH(ClipFormat, format);
    QFETCH(QSize, size);
    if (!canEncode(format.encoder))
        QSKIP("this FFmpeg has no such encoder");
    const EncodedClip clip = encodeClip(format);
    Viewer viewer;
    viewer.decoder.setChoice([&] { return size; });
    QList<QImage> scaled;
    connect(&viewer.decoder, &cFfmpegDecoder::onScaledFrame, this, [&](const QImage &image) {
        QVERIFY(opaque(image));
        scaled << image;
        QVERIFY(viewer.decoder.release(image));
    });
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.pictures.first());
    QCOMPARE(viewer.numbers, QList<int>({0})); // in its own size, which is new
    QVERIFY(viewer.decoder.wholePicture().isNull());
    viewer.decoder.append(clip.pictures.sliced(1).join());
    QCOMPARE(viewer.numbers.size(), 1);
    QCOMPARE(scaled.size(), clip.pictures.size() - 1);
    const QImage whole = viewer.decoder.wholePicture();
    QCOMPARE(shownNumber(whole), clip.shown.last());
    QVERIFY(viewer.decoder.wholePicture().isNull());
    const QImage expected = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QCOMPARE(scaled.last().size(), size);
    QVERIFY2(meanDifference(scaled.last(), expected) < 5,
             qPrintable(QString::number(meanDifference(scaled.last(), expected))));
}

void TestFfmpegDecoder::survivesDamage_data()
{
    const TestTable<QByteArray> row("encoder");
    for (const char *encoder : {"libx264", "mpeg4", "mjpeg"})
        row(encoder, encoder);
}

void TestFfmpegDecoder::survivesDamage()
{
    QFETCH(QByteArray, encoder);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");

    const EncodedClip clip = encodeClip({.encoder = encoder, .size = {180, 144}});
    Viewer viewer;
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.whole());
    QRandomGenerator random(1);
    for (int round = 0; round < 60; ++round) {
        QByteArray damaged = clip.whole();
        for (int errors = round * 3; errors > 0; --errors)
            damaged[random.bounded(damaged.size())] = char(random.generate());
        viewer.decoder.append(damaged.mid(random.bounded(100)).chopped(random.bounded(100)));
    }
    viewer.decoder.append(QByteArray(100'000, '\0'));
    viewer.decoder.append(QByteArray(100'000, '\xff'));
    // The first picture is a key picture, from which on all are decoded again.
    viewer.numbers.clear();
    for (const QByteArray &picture : clip.pictures)
        viewer.decoder.append(picture);
    QCOMPARE(viewer.numbers, upTo(clip.pictures.size()));
}

void TestFfmpegDecoder::findsPicturesAmongOtherBytes_data()
{
    const TestTable<EncodedClip, QByteArray, QList<int>> row("clip", "bytes", "numbers");
    const EncodedClip photos = encodeClip({.encoder = "mjpeg", .size = {64, 64}, .pictures = 3});
    const QByteArray preview = QByteArray("\xff\xd8\xff\xe1\x10\x00", 6) +
                               photos.pictures[1].leftJustified(0x0ffe, '\0') + photos.pictures[0].sliced(2);
    row("a JPEG with a preview in it", photos, preview + photos.pictures[2], {0, 2});
    row("JPEGs with bytes between them", photos, "x" + photos.pictures[0] + "\xffyz" + photos.pictures[1],
        {0, 1});
    row("20 MB of JPEGs", photos, photos.pictures[2].leftJustified(500'000, '\0').repeated(40),
        QList<int>(40, 2));
    const EncodedClip film = encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 3});
    row("MPEG-4 with user data between", film,
        film.pictures[0] + QByteArray("\0\0\1\xb2words", 9) + film.pictures[1] + film.pictures[2], upTo(3));
    const EncodedClip packets =
        encodeClip({.encoder = "mpeg4", .size = {1280, 720}, .pictures = 4, .packet = 1000, .noise = true});
    QVERIFY(packets.pictures[0].size() > 150'000);
    row("MPEG-4 in packets", packets, packets.whole(), upTo(4));
    if (!canEncode("libx264"))
        return;
    const EncodedClip slices = encodeClip({.encoder = "libx264", .size = {64, 96}, .slices = 6});
    row("H.264 in slices", slices, slices.whole(), upTo(6));
    // As a whole these might take too long, so they are decoded part by part.
    const EncodedClip manySlices =
        encodeClip({.encoder = "libx264", .size = {1024, 960}, .pictures = 2, .slices = 60});
    row("H.264 in many slices", manySlices, manySlices.whole(), upTo(2));
    const QByteArray &first = slices.pictures[0];
    const qsizetype at = first.indexOf(QByteArray("\0\0\1\x68", 4));
    const QByteArray parameters = first.sliced(at, first.indexOf(QByteArray("\0\0\1", 3), at + 3) - at);
    row("H.264 with long parameter sets", slices,
        first.first(at) + parameters.leftJustified(60'000, '\0').repeated(25) + first.sliced(at) +
            slices.pictures[1],
        upTo(2));
}

void TestFfmpegDecoder::findsPicturesAmongOtherBytes()
{
    QFETCH(EncodedClip, clip);
    QFETCH(QByteArray, bytes);
    for (const bool inTurns : {false, true}) {
        Viewer viewer;
        if (inTurns)
            viewer.decoder.workInTurns();
        QVERIFY(viewer.decoder.create(clip.decoder));
        viewer.decoder.append(bytes);
        AWAIT_VERIFY_WITHIN(!viewer.decoder.isBusy(), 60'000);
        QTEST(viewer.numbers, "numbers");
    }
}

void TestFfmpegDecoder::concealsNothingBetweenSlices_data()
{
    const TestTable<int, QByteArray> row("slices", "damage");
    row("of few slices", 4, QByteArray());
    row("of many slices", 60, QByteArray());
    row("of many slices, damaged", 60, QByteArray(100, '\1'));
}

void TestFfmpegDecoder::concealsNothingBetweenSlices()
{
    QFETCH(int, slices);
    QFETCH(QByteArray, damage);
    if (!canEncode("libx264"))
        QSKIP("this FFmpeg has no such encoder");
    // Pictures of many slices might take too long as a whole, so they are decoded slice by slice.
    const EncodedClip clip = encodeClip(
        {.encoder = "libx264", .size = {1024, 960}, .pictures = 3, .slices = slices, .noise = true});
    QByteArray second = clip.pictures[1];
    second.replace(second.size() / 2, damage.size(), damage);
    Viewer viewer;
    viewer.decoder.workInTurns();
    QVERIFY(viewer.decoder.create(clip.decoder));
    concealments = 0;
    av_log_set_callback(countConcealments);
    viewer.decoder.append(clip.pictures[0]);
    viewer.decoder.append(second);
    viewer.decoder.append(clip.pictures[2]);
    const bool isDone = waitUntil([&] { return !viewer.decoder.isBusy(); }, 60'000);
    av_log_set_callback(av_log_default_callback);
    QVERIFY(isDone);
    QCOMPARE(concealments, 0);
    QCOMPARE(viewer.numbers.size(), 3);
    QCOMPARE(viewer.numbers[0], 0);
}

void TestFfmpegDecoder::leavesOutSlowPictures_data()
{
    const TestTable<EncodedClip, QByteArray> row("clip", "bytes");
    const EncodedClip photos = encodeClip({.encoder = "mjpeg", .size = {1024, 1024}, .pictures = 2});
    const QByteArray &photo = photos.pictures[1];
    row("more bytes than a picture has", photos, photo.leftJustified(8 * 1024 * 1024 + 1, '\0'));
    const QByteArray table = QByteArray("\xff\xdb\x00\x43\x00", 5) + QByteArray(64, '\1');
    row("thousands of tables", photos, photo.first(2) + table.repeated(20'000) + photo.sliced(2));
    // Each packet begins at the second block and leaves 4,000 as they are.
    const EncodedClip still =
        encodeClip({.encoder = "mpeg4", .size = {1024, 1024}, .pictures = 2, .still = true});
    const QByteArray packet = QByteArray("\0\0\x80\x08\x2f", 5) + QByteArray(500, '\xff') + "\x7f";
    row("packets that go back", still, still.pictures[1].first(100) + packet.repeated(200));
    const qsizetype scan = photo.indexOf("\xff\xda");
    row("many scans", photos, photo.first(scan) + photo.sliced(scan, 20).repeated(200) + photo.sliced(scan));
}

void TestFfmpegDecoder::leavesOutSlowPictures()
{
    QFETCH(EncodedClip, clip);
    QFETCH(QByteArray, bytes);
    Viewer viewer;
    viewer.decoder.workInTurns();
    QVERIFY(viewer.decoder.create(clip.decoder));
    viewer.decoder.append(clip.pictures[0]);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("left out"));
    viewer.decoder.append(bytes);
    viewer.decoder.append(clip.pictures[0]);
    AWAIT_VERIFY_WITHIN(!viewer.decoder.isBusy(), 60'000);
    QCOMPARE(viewer.numbers, QList<int>({0, 0}));
}

void TestFfmpegDecoder::receiverMayCallDecoder()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 3});
    auto viewer = std::make_unique<Viewer>();
    std::function<void()> interfere = [&] { viewer->decoder.append(clip.whole()); };
    QObject::connect(&viewer->decoder, &cFfmpegDecoder::onFrame, &viewer->decoder, [&interfere] {
        if (const auto once = std::exchange(interfere, {}))
            once();
    });
    QVERIFY(viewer->decoder.create(clip.decoder));
    viewer->decoder.append(clip.whole());
    QCOMPARE(viewer->numbers, upTo(3) + upTo(3));

    // Another stream: nothing of the old one follows.
    viewer->numbers.clear();
    interfere = [&] {
        viewer->decoder.create(clip.decoder);
        viewer->decoder.append(clip.pictures.first());
    };
    viewer->decoder.append(clip.whole());
    QCOMPARE(viewer->numbers, QList<int>({0, 0}));

    interfere = [&] { viewer.reset(); };
    viewer->decoder.append(clip.whole());
    QVERIFY(!viewer);
}

void TestFfmpegDecoder::showsTransparentPicturesOpaque()
{
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(QColor(200, 100, 50, 30));
    QBuffer png;
    QVERIFY(image.save(&png, "PNG"));
    Viewer viewer;
    QVERIFY(viewer.decoder.create("png"));
    viewer.decoder.append(png.data());
    QCOMPARE(viewer.last.size(), image.size());
    QVERIFY(opaque(viewer.last));
}

void TestFfmpegDecoder::decodesAtOnceWhileThereIsTime()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 3});
    // A busy machine may use up the time of a turn.
    bool atOnce = false;
    for (int attempt = 0; attempt < 20 && !atOnce; ++attempt) {
        Viewer viewer;
        viewer.decoder.workInTurns();
        viewer.decoder.create(clip.decoder);
        viewer.decoder.append(clip.whole());
        atOnce = viewer.numbers == upTo(3) && !viewer.decoder.isBusy();
    }
    QVERIFY(atOnce);
}

void TestFfmpegDecoder::worksInTurns()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {704, 576}, .pictures = 50});
    // Both share the time of a turn, and each decodes in its own order.
    Viewer viewers[2];
    int turns = 0;
    QTimer turn;
    connect(&turn, &QTimer::timeout, this, [&] { ++turns; });
    for (Viewer &viewer : viewers) {
        viewer.decoder.workInTurns();
        QVERIFY(!viewer.decoder.create("none"));
        QVERIFY(viewer.decoder.create(clip.decoder));
        viewer.decoder.append(clip.whole());
        viewer.decoder.append(clip.whole());
        viewer.decoder.create("mjpeg");
        viewer.decoder.append(clip.pictures[0]);
        viewer.decoder.create(clip.decoder);
        viewer.decoder.append(clip.pictures[0]);
        QVERIFY(viewer.decoder.isBusy());
    }
    QSignalSpy idle(&viewers[0].decoder, &cFfmpegDecoder::idle);
    turn.start(0);
    AWAIT_VERIFY_WITHIN(!viewers[0].decoder.isBusy() && !viewers[1].decoder.isBusy(), 60'000);
    QCOMPARE(idle.size(), 1);
    for (const Viewer &viewer : viewers)
        QCOMPARE(viewer.numbers, upTo(50) + upTo(50) + upTo(1));
    QVERIFY2(turns > 3, qPrintable(QString::number(turns)));
}

void TestFfmpegDecoder::leavesOutLatePictures_data()
{
    const TestTable<QByteArray, QList<int>, int> row("encoder", "shown", "leftOut");
    row("H.264", "libx264", {0, 1}, 5);
    row("MPEG-4", "mpeg4", {0, 1}, 5);
    row("motion JPEG, whose pictures are all key pictures", "mjpeg", {1, 2, 0, 1}, 3);
}

void TestFfmpegDecoder::leavesOutLatePictures()
{
    QFETCH(QByteArray, encoder);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");
    const EncodedClip clip = encodeClip({.encoder = encoder, .size = {64, 64}, .pictures = 3});
    Viewer viewer;
    viewer.decoder.workInTurns();
    QVERIFY(viewer.decoder.create(clip.decoder));
    const auto append = [&](const QList<QByteArray> &pictures) {
        for (const QByteArray &picture : pictures)
            viewer.decoder.append(picture);
        return waitUntil([&] { return !viewer.decoder.isBusy(); });
    };
    viewer.decoder.setMaxWait(std::chrono::milliseconds(-1)); // everything is late
    QVERIFY(append(clip.pictures));
    QCOMPARE(viewer.numbers, QList<int>());
    viewer.decoder.setMaxWait(std::chrono::hours(1));
    QVERIFY(append({clip.pictures[1], clip.pictures[2], clip.pictures[0], clip.pictures[1]}));
    QTEST(viewer.numbers, "shown");
    QTEST(int(viewer.decoder.leftOut()), "leftOut");
    QCOMPARE(viewer.decoder.waitingBytes(), 0);
}

void TestFfmpegDecoder::keepsParametersOfWhatIsNotDecoded_data()
{
    const TestTable<QByteArray, QByteArray, bool> row("encoder", "picture", "isLate");
    for (const bool isLate : {false, true}) {
        const QByteArray why = isLate ? " as it is late" : " while nobody looks";
        row("H.264" + why, "libx264", "\x65", isLate);
        row("MPEG-4" + why, "mpeg4", "\xb6", isLate);
    }
}

/// A recorder may send them with the first picture only.
void TestFfmpegDecoder::keepsParametersOfWhatIsNotDecoded()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QByteArray, picture);
    QFETCH(bool, isLate);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");
    const EncodedClip clip = encodeClip({.encoder = encoder, .size = {128, 96}});
    const QByteArray &first = clip.pictures[0];
    Viewer viewer;
    bool isWatched = true;
    viewer.decoder.workInTurns();
    viewer.decoder.setWatch([&] { return isWatched; });
    QVERIFY(viewer.decoder.create(clip.decoder));
    const auto append = [&](const QList<QByteArray> &pictures) {
        for (const QByteArray &each : pictures)
            viewer.decoder.append(each);
        return waitUntil([&] { return !viewer.decoder.isBusy(); });
    };
    QVERIFY(append(encodeClip({.encoder = encoder, .size = {64, 64}}).pictures));
    viewer.numbers.clear();
    isWatched = isLate;
    viewer.decoder.setMaxWait(isLate ? std::chrono::milliseconds(-1) : std::chrono::hours(1));
    QVERIFY(append(clip.pictures));
    viewer.decoder.setMaxWait(std::chrono::hours(1));
    QVERIFY(append({first.sliced(first.indexOf(QByteArray("\0\0\1", 3) + picture))}));
    isWatched = true;
    QVERIFY(append({clip.pictures[1]}));
    QCOMPARE(viewer.numbers, isLate ? upTo(2) : QList<int>({1}));
    QCOMPARE(viewer.last.size(), QSize(128, 96));
}

void TestFfmpegDecoder::catchesUpWhenSomebodyLooks_data()
{
    const TestTable<QByteArray> row("encoder");
    for (const char *encoder : {"libx264", "mpeg4", "mjpeg"})
        row(encoder, encoder);
}

void TestFfmpegDecoder::catchesUpWhenSomebodyLooks()
{
    QFETCH(QByteArray, encoder);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");
    const EncodedClip clip = encodeClip({.encoder = encoder, .size = {64, 64}});
    Viewer viewer;
    bool isWatched = true;
    viewer.decoder.workInTurns();
    viewer.decoder.setWatch([&] { return isWatched; });
    QVERIFY(viewer.decoder.create(clip.decoder));
    const auto append = [&](bool watched, const QList<QByteArray> &pictures) {
        isWatched = watched;
        for (const QByteArray &picture : pictures)
            viewer.decoder.append(picture);
        return waitUntil([&] { return !viewer.decoder.isBusy(); });
    };
    QVERIFY(append(true, clip.pictures.first(1)));
    QVERIFY(append(false, clip.pictures.mid(1, 3)));
    QCOMPARE(viewer.numbers, QList<int>({0}));
    QVERIFY(append(true, clip.pictures.mid(4, 1)));
    QCOMPARE(viewer.numbers, QList<int>({0, 4}));
    // Behind many key pictures, and where more come than are kept.
    for (int round = 0; round < 3; ++round)
        QVERIFY(append(false, clip.pictures));
    for (int round = 0; round < 300; ++round)
        QVERIFY(append(false, clip.pictures.sliced(1)));
    QCOMPARE(viewer.numbers.size(), 2);
    QVERIFY(append(false, clip.pictures.first(3)));
    QVERIFY(append(true, clip.pictures.mid(3, 1)));
    QCOMPARE(viewer.numbers, QList<int>({0, 4, 3}));
    // Another stream.
    QVERIFY(append(false, clip.pictures.first(2)));
    viewer.decoder.create(clip.decoder);
    QVERIFY(append(true, clip.pictures.first(1)));
    QCOMPARE(viewer.numbers, QList<int>({0, 4, 3, 0}));
}

void TestFfmpegDecoder::isNotLateForWhatNobodySaw()
{
    if (!canEncode("libx264"))
        QSKIP("this FFmpeg has no such encoder");
    // Key pictures ten seconds apart.
    const EncodedClip clip = encodeClip({.encoder = "libx264", .size = {352, 288}, .pictures = 250});
    Viewer viewer;
    bool isWatched = true;
    viewer.decoder.workInTurns();
    viewer.decoder.setWatch([&] { return isWatched; });
    QVERIFY(viewer.decoder.create(clip.decoder));
    const auto append = [&](bool watched, const QList<QByteArray> &pictures) {
        isWatched = watched;
        for (const QByteArray &picture : pictures)
            viewer.decoder.append(picture);
        return waitUntil([&] { return !viewer.decoder.isBusy(); }, 20'000);
    };
    QVERIFY(append(true, clip.pictures.first(1)));
    QVERIFY(append(false, clip.pictures.first(248)));
    // Less than the others take together.
    viewer.decoder.setMaxWait(std::chrono::milliseconds(20));
    QVERIFY(append(true, clip.pictures.mid(248, 1)));
    QCOMPARE(viewer.numbers, QList<int>({0, 248 % 64})); // 64 numbers in turn
}

void TestFfmpegDecoder::receiverMayCallDecoderInTurns()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 3});
    auto viewer = std::make_unique<Viewer>();
    Viewer other;
    other.decoder.workInTurns();
    // An event loop within the signal, in which the decoder is destroyed and others go on.
    connect(&viewer->decoder, &cFfmpegDecoder::onFrame, this, [&] {
        QEventLoop loop;
        connect(&other.decoder, &cFfmpegDecoder::idle, &loop, &QEventLoop::quit);
        other.decoder.create(clip.decoder);
        other.decoder.append(clip.whole());
        loop.exec();
        viewer.reset();
    });
    viewer->decoder.workInTurns();
    viewer->decoder.create(clip.decoder);
    viewer->decoder.append(clip.whole());
    AWAIT_VERIFY(!viewer);
    QCOMPARE(other.numbers, upTo(3));
    other.decoder.append(clip.whole());
    AWAIT_COMPARE(other.numbers, upTo(3) + upTo(3));
}

QTEST_GUILESS_MAIN(TestFfmpegDecoder)
#include "tst_ffmpegdecoder.moc"
