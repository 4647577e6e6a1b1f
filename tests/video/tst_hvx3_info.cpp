#include "recorder/RecorderServer.h"
#include "support/EncodedClip.h"
#include "support/FullDisk.h"
#include "support/Hvx3Bytes.h"
#include "support/ProgramText.h"
#include "support/TestTable.h"
#include "support/UserLanguage.h"
#include "support/Waiting.h"
#include "video/FfmpegHandles.h"
#include "video/PictureConverter.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

using namespace paravue;
using namespace paravue::test;

namespace
{

constexpr quint8 Video = 0;
constexpr quint8 Text = 1;
constexpr quint8 Second = 5;

const QByteArray Acknowledgement = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
    QJsonObject json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
};

Run runProgram(const QStringList &arguments, const QByteArray &input = QByteArray())
{
    QProcess process;
    process.start(INFO_PROGRAM, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished())
        return {};
    return {process.exitCode(), programText(process.readAllStandardOutput()),
            programText(process.readAllStandardError())};
}

/// As runProgram(), while servers of this process answer.
Run runBeside(const QStringList &arguments)
{
    QProcess process;
    process.start(INFO_PROGRAM, arguments);
    if (!waitUntil([&] { return process.state() == QProcess::NotRunning; }, 30'000))
        return {};
    return {process.exitCode(), programText(process.readAllStandardOutput()),
            programText(process.readAllStandardError())};
}

QByteArray headerOf(const QByteArray &label)
{
    return hvx3Header(
        {{Video, 1, label, "Camera", ""}, {Text, 4, "", "Events", "-utf8"}, {Second, 1, label, "Yard", ""}},
        "Warehouse");
}

/// A frame of a video stream behind an index record for its second.
QByteArray frameAt(qint64 time, quint8 streamId, const QByteArray &picture)
{
    return hvx3Index(quint32(time / 1000)) +
           hvx3Frame(streamId, picture, 500, {.word16 = quint16(time % 1000)});
}

/// The units of a picture, which are separated by start codes in a recording and by lengths of four bytes in
/// a file.
QList<QByteArray> partsOf(const QByteArray &picture, const QByteArray &codec, bool inFile)
{
    QList<QByteArray> parts;
    if (codec != "h264")
        return {picture};
    for (qsizetype at = 0; inFile && at + 4 <= picture.size();) {
        const qsizetype size = qFromBigEndian<qint32>(picture.constData() + at);
        parts.append(picture.mid(at + 4, size));
        at += 4 + size;
    }
    for (qsizetype at = picture.indexOf(QByteArray("\0\0\1", 3)); !inFile && at >= 0;) {
        const qsizetype next = picture.indexOf(QByteArray("\0\0\1", 3), at + 3);
        QByteArray part = picture.mid(at + 3, next < 0 ? -1 : next - at - 3);
        while (part.endsWith('\0'))
            part.chop(1);
        parts.append(part);
        at = next;
    }
    return parts;
}

/// A picture of a media file.
struct Packet {
    qint64 time; ///< in milliseconds
    qint64 decodingTime;
    bool isKey;
    QByteArray bytes;
    int number; ///< which picture of a clip it shows; -1 when it cannot be decoded
};

struct Track {
    QByteArray codec;
    QSize size;
    QList<Packet> packets;
    QList<qint64> times() const
    {
        QList<qint64> list;
        for (const Packet &packet : packets)
            list.append(packet.time);
        return list;
    }
    QList<int> numbers() const
    {
        QList<int> list;
        for (const Packet &packet : packets)
            list.append(packet.number);
        return list;
    }
};

int decodedNumber(AVCodecContext &decoder, const AVPacket &packet)
{
    const FrameHandle frame(av_frame_alloc());
    PictureConverter converter;
    const bool isDecoded =
        avcodec_send_packet(&decoder, &packet) == 0 && avcodec_receive_frame(&decoder, frame.get()) == 0;
    return isDecoded ? shownNumber(converter.convert(*frame)) : -1;
}

/// The tracks of a file as any player sees them; none when it is no media file.
QList<Track> tracksOf(const QString &file)
{
    AVFormatContext *input = nullptr;
    if (avformat_open_input(&input, QFile::encodeName(file), nullptr, nullptr) != 0)
        return {};
    avformat_find_stream_info(input, nullptr);
    QList<Track> tracks;
    std::vector<CodecContextHandle> decoders;
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        const AVCodecParameters &parameters = *input->streams[i]->codecpar;
        tracks.append({avcodec_get_name(parameters.codec_id), {parameters.width, parameters.height}, {}});
        const AVCodec *codec = avcodec_find_decoder(parameters.codec_id);
        decoders.emplace_back(avcodec_alloc_context3(codec));
        avcodec_parameters_to_context(decoders.back().get(), &parameters);
        decoders.back()->thread_count = 1;
        decoders.back()->flags |= AV_CODEC_FLAG_LOW_DELAY;
        avcodec_open2(decoders.back().get(), codec, nullptr);
    }
    const PacketHandle packet(av_packet_alloc());
    while (av_read_frame(input, packet.get()) == 0) {
        const int at = packet->stream_index;
        const AVRational base = input->streams[at]->time_base;
        tracks[at].packets.append({av_rescale_q(packet->pts, base, {1, 1000}),
                                   av_rescale_q(packet->dts, base, {1, 1000}),
                                   (packet->flags & AV_PKT_FLAG_KEY) != 0,
                                   QByteArray(reinterpret_cast<char *>(packet->data), packet->size),
                                   decodedNumber(*decoders[size_t(at)], *packet)});
        av_packet_unref(packet.get());
    }
    avformat_close_input(&input);
    return tracks;
}

} // namespace

class TestHvx3Info : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { av_log_set_level(AV_LOG_QUIET); }
    void init();
    void countsWhatIsThere();
    void replacesControlCharacters();
    void speaksTheLanguageOfTheDesktop();
    void exportsPicturesAsTheyAre_data();
    void exportsPicturesAsTheyAre();
    void makesTimesAscend();
    void keepsTheOrderOfBPictures_data();
    void keepsTheOrderOfBPictures();
    void readsBehindTheHeader_data();
    void readsBehindTheHeader();
    void beginsAFileWhereTheSizeChanges();
    void leavesNothingBehindWhenItFails();
    void leavesTheOldFileWhenItIsKilled();
    void listsTheVideoOfARecorder();
    void tellsWhyARecordingIsShort_data();
    void tellsWhyARecordingIsShort();
    void tellsWhyThereIsNoVideo_data();
    void tellsWhyThereIsNoVideo();
    void keepsTheOldExportOnAFullDisk();
    void handlesCommandLines_data();
    void handlesCommandLines();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    /// Writes a recording and returns its path.
    QString record(const QByteArray &bytes, const QString &name = "recording") const;
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestHvx3Info::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString TestHvx3Info::record(const QByteArray &bytes, const QString &name) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a recording");
    return file.fileName();
}

void TestHvx3Info::countsWhatIsThere()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 48}, .pictures = 3});
    const QByteArray lost = hvx3Data(Video, MiddleFragment, "lost") + hvx3Data(Video, LastFragment, "lost") +
                            hvx3Data(Text, FirstFragment, "unfinished");
    const QByteArray garbage = hvx3Data(99, WholeFrame, "unknown stream");
    const QByteArray cut = hvx3Data(Text, WholeFrame, "never whole").chopped(2);
    const QByteArray stream =
        Acknowledgement + headerOf("mp4v") + frameAt(100'500, Video, clip.pictures[0]) +
        hvx3Data(Text, WholeFrame, "hello") + frameAt(100'540, Video, clip.pictures[1]) + lost + garbage +
        frameAt(101'000, Video, clip.pictures[2]) + hvx3Data(Text, WholeFrame, "you") + cut;

    const QJsonObject report = runProgram({"--json", record(stream)}).json();
    const auto number = [&](const char *name) { return report.value(QLatin1String(name)).toDouble(-1); };
    QCOMPARE(report.value("name").toString(), "Warehouse");
    QCOMPARE(number("bytes"), stream.size());
    QCOMPARE(number("headers"), 1);
    QCOMPARE(number("indexRecords"), 3);
    QCOMPARE(number("lostBytes"), garbage.size());
    QCOMPARE(number("gaps"), 1);
    QVERIFY(report.value("answerToLogin").toBool());
    QCOMPARE(number("lostFragments"), 2);
    QCOMPARE(number("unfinishedFrames"), 1);
    QCOMPARE(number("unreadBytes"), cut.size());
    QCOMPARE(number("duration"), 0.5);
    QCOMPARE(number("bitRate"), stream.size() * 16);

    const QJsonArray streams = report.value("streams").toArray();
    QCOMPARE(streams.size(), 3);
    const QByteArray whole = clip.whole();
    const auto [smallest, largest] =
        std::minmax({clip.pictures[0].size(), clip.pictures[1].size(), clip.pictures[2].size()});
    int records = 2; // the two that were lost
    for (const QByteArray &picture : clip.pictures)
        records += int((picture.size() + 499) / 500);
    const QJsonObject video{{"id", 0},
                            {"type", 1},
                            {"kind", "video"},
                            {"codecs", QJsonArray{"mp4v"}},
                            {"charset", ""},
                            {"title", "Camera"},
                            {"records", records},
                            {"frames", 3},
                            {"bytes", whole.size()},
                            {"lostFragments", 2},
                            {"unfinishedFrames", 0},
                            {"smallestFrame", smallest},
                            {"largestFrame", largest},
                            {"meanFrame", double(whole.size()) / 3},
                            {"bitRate", whole.size() * 16},
                            {"sizes", QJsonArray{QJsonObject{{"width", 64}, {"height", 48}}}},
                            {"keyFrames", 1},
                            {"duration", 0.5},
                            {"largestGap", 0.46},
                            {"frameRate", 4}};
    QCOMPARE(streams[0].toObject(), video);
    const QJsonObject text{{"id", 1},
                           {"type", 4},
                           {"kind", "text"},
                           {"codecs", QJsonArray{""}},
                           {"charset", "-utf8"},
                           {"title", "Events"},
                           {"records", 3},
                           {"frames", 2},
                           {"bytes", 8},
                           {"lostFragments", 0},
                           {"unfinishedFrames", 1},
                           {"smallestFrame", 3},
                           {"largestFrame", 5},
                           {"meanFrame", 4},
                           {"bitRate", 128}};
    QCOMPARE(streams[1].toObject(), text);
    QCOMPARE(streams[2].toObject().value("frames"), QJsonValue(0));

    QJsonObject piped = runProgram({"-", "--json"}, stream).json();
    QCOMPARE(piped.take("recording").toString(), "-");
    QJsonObject rest = report;
    rest.remove("recording");
    QCOMPARE(piped, rest);
}

void TestHvx3Info::replacesControlCharacters()
{
    const QByteArray koi = QByteArray::fromHex("f3cbcc c1c4"); // "Склад"
    const QByteArray stream = hvx3Header({{Video, 1, "x\x1b[2J", koi, ""}}, koi + "\x1b]0;x\x07",
                                         QByteArray("\x01-koi8\0\x05texts\0", 14)) +
                              hvx3Index(1);
    const Run run = runProgram({record(stream)});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(!run.out.contains('\x1b') && !run.out.contains('\a'), qPrintable(run.out));
    const QStringList lines = run.out.split('\n');
    QVERIFY2(lines.contains("name            Склад?]0;x?"), qPrintable(run.out));
    QVERIFY2(lines.contains("text 5          texts"), qPrintable(run.out));
    QVERIFY2(lines.contains("stream 0: video, x?[2J (codec not known), \"Склад\""), qPrintable(run.out));
    const QJsonObject video = runProgram({"--json", path("recording")}).json()["streams"][0].toObject();
    QCOMPARE(video["unknownCodecs"], QJsonArray{"x?[2J"});
}

void TestHvx3Info::speaksTheLanguageOfTheDesktop()
{
#ifdef Q_OS_WIN
    QSKIP("the language is that of the system, whatever the environment says");
#endif
    const UserLanguage russian("ru_RU.UTF-8");
    const QByteArray title("\x01-utf8\0\x05texts\0", 14);
    const Run run =
        runProgram({record(hvx3Header({{Video, 1, "H264", "Yard", ""}}, "Gate", title) + hvx3Index(1))});
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = run.out.split('\n');
    for (const char *line :
         {"название         Gate", "скорость потока  неизвестно", "поток 0: видео, H264, \"Yard\"",
          "потеряно         0 байтов (0 разрывов), фрагментов: 0, неполных кадров: 0"})
        QVERIFY2(lines.contains(line), qPrintable(run.out));
}

void TestHvx3Info::exportsPicturesAsTheyAre_data()
{
    const TestTable<QByteArray, QByteArray, QString> row("encoder", "label", "ending");
    for (const char *ending : {"mkv", "mp4"}) {
        for (const auto &[encoder, label] :
             {std::pair("libx264", "H264"), std::pair("mpeg4", "mp4v"), std::pair("mjpeg", "mjpeg")})
            row(QByteArray(label) + " " + ending, encoder, label, ending);
    }
}

void TestHvx3Info::exportsPicturesAsTheyAre()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QByteArray, label);
    QFETCH(QString, ending);
    if (!canEncode(encoder))
        QSKIP("This FFmpeg has no such encoder.");
    const EncodedClip camera = encodeClip({.encoder = encoder, .size = {176, 144}, .pictures = 5});
    const EncodedClip yard = encodeClip({.encoder = encoder, .size = {128, 96}, .pictures = 5});
    const QList<qint64> times{1'700'000'000'990, 1'700'000'001'030, 1'700'000'001'100, 1'700'000'002'000,
                              1'700'000'002'001};
    // The recording begins within the streams: these pictures need earlier ones.
    QByteArray stream = headerOf(label) + hvx3Index(1'700'000'000);
    const bool isIntra = label == "mjpeg";
    if (!isIntra)
        stream +=
            hvx3Frame(Video, camera.pictures[3], 500, {}) + hvx3Frame(Second, yard.pictures[4], 500, {});
    for (qsizetype i = 0; i < times.size(); ++i)
        stream +=
            frameAt(times[i], Video, camera.pictures[i]) + frameAt(times[i] + 5, Second, yard.pictures[i]);

    const QString name = path("out." + ending);
    const Run run = runProgram({record(stream), "--export", name, "--json"});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(run.json().value("notExported"), QJsonValue(isIntra ? 0 : 2));
    QCOMPARE(run.json().value("streams")[0].toObject().value("keyFrames"), QJsonValue(isIntra ? 5 : 1));
    QCOMPARE(files(), QStringList({"out." + ending, "recording"}));

    const QList<Track> tracks = tracksOf(name);
    QCOMPARE(tracks.size(), 2);
    for (const auto &[track, clip, shift] :
         {std::tuple(tracks[0], camera, 0), std::tuple(tracks[1], yard, 5)}) {
        QCOMPARE(track.codec, clip.decoder);
        QCOMPARE(track.size, shift == 0 ? QSize(176, 144) : QSize(128, 96));
        QCOMPARE(track.numbers(), QList<int>({0, 1, 2, 3, 4}));
        for (qsizetype i = 0; i < times.size(); ++i) {
            const Packet &packet = track.packets[i];
            QCOMPARE(packet.time, times[i] - times[0] + shift);
            QCOMPARE(packet.isKey, i == 0 || isIntra);
            QCOMPARE(partsOf(packet.bytes, track.codec, true), partsOf(clip.pictures[i], track.codec, false));
        }
    }
}

void TestHvx3Info::makesTimesAscend()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 48}, .pictures = 8});
    // Equal, a little back, and set back by a day.
    const QList<qint64> times{90'000'000, 90'000'040, 90'000'040, 90'000'010,
                              90'000'080, 3'600'000,  3'600'040};
    QByteArray stream = headerOf("mp4v");
    for (qsizetype i = 0; i < times.size(); ++i)
        stream += frameAt(times[i], Video, clip.pictures[i]);
    for (const QString ending : {"mkv", "mp4"}) {
        const Run run = runProgram({record(stream), "--export", path("out." + ending), "--json"});
        const QJsonObject exported = run.json().value("exported")[0].toObject();
        QCOMPARE(exported.value("movedTimes"), QJsonValue(3));
        QCOMPARE(exported.value("timesSetBack"), QJsonValue(1));
        QCOMPARE(tracksOf(path("out." + ending)).value(0).times(),
                 QList<qint64>({0, 40, 41, 42, 80, 81, 120}));
    }
}

void TestHvx3Info::keepsTheOrderOfBPictures_data()
{
    const TestTable<QByteArray, QByteArray, QString> row("encoder", "label", "ending");
    for (const char *ending : {"mkv", "mp4"}) {
        row(QByteArray("H.264 ") + ending, "libx264", "H264", ending);
        row(QByteArray("MPEG-4 ") + ending, "mpeg4", "mp4v", ending);
    }
}

void TestHvx3Info::keepsTheOrderOfBPictures()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QByteArray, label);
    QFETCH(QString, ending);
    if (!canEncode(encoder))
        QSKIP("This FFmpeg has no such encoder.");
    constexpr int Step = 40; // milliseconds
    const EncodedClip clip =
        encodeClip({.encoder = encoder, .size = {64, 48}, .pictures = 20, .reordered = 2});
    QByteArray stream = headerOf(label);
    for (qsizetype i = 0; i < clip.pictures.size(); ++i)
        stream += frameAt(90'000'900 + clip.shown[i] * Step, Video, clip.pictures[i]);
    const QString name = path("out." + ending);
    const Run run = runProgram({record(stream), "--export", name, "--json"});
    QCOMPARE(run.json().value("exported")[0].toObject().value("movedTimes"), QJsonValue(0));

    const Track track = tracksOf(name).value(0);
    QList<qint64> shown;
    for (const int place : clip.shown)
        shown << place * Step;
    QVERIFY(!std::is_sorted(shown.begin(), shown.end()));
    QCOMPARE(track.times(), shown);
    // A demuxer makes up those of a Matroska file.
    for (qsizetype i = 1; i < track.packets.size() && ending == "mp4"; ++i)
        QCOMPARE(track.packets[i].decodingTime - track.packets[i - 1].decodingTime, Step);
    for (const Packet &packet : track.packets)
        QVERIFY(ending == "mkv" || packet.decodingTime <= packet.time);
}

void TestHvx3Info::readsBehindTheHeader_data()
{
    // %1: another recording
    const TestTable<QStringList, int> row("given", "tracks");
    row("codec", {"--codec", "mp4v"}, 1);
    row("header", {"--header", "%1"}, 2);
}

void TestHvx3Info::readsBehindTheHeader()
{
    QFETCH(QStringList, given);
    QFETCH(int, tracks);
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {128, 96}, .pictures = 3});
    QByteArray stream = "the rest of a record";
    for (int i = 0; i < 3; ++i) {
        stream += frameAt(1000 + i * 40, Video, clip.pictures[i]) + hvx3Data(Text, WholeFrame, "text") +
                  frameAt(1000 + i * 40, Second, clip.pictures[i]);
    }
    given.replaceInStrings("%1", record(headerOf("mp4v") + hvx3Index(1), "other"));
    const QString recording = record(stream);
    QCOMPARE(runProgram({recording}).exitCode, 7);
    const QString name = path("out.mkv");
    const Run run = runProgram(QStringList{recording, "--json", "--export", name} + given);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(run.json().value("givenHeader").toBool());
    QCOMPARE(run.json().value("headers"), QJsonValue(0));
    const QList<Track> exported = tracksOf(name);
    QCOMPARE(exported.size(), tracks);
    for (const Track &track : exported)
        QCOMPARE(track.numbers(), QList<int>({0, 1, 2}));
    const QJsonArray streams = run.json().value("streams").toArray();
    QCOMPARE(streams[0].toObject().value("title"), QJsonValue(tracks > 1 ? "Camera" : ""));
    QCOMPARE(streams.size(), tracks > 1 ? 3 : 1);
}

void TestHvx3Info::beginsAFileWhereTheSizeChanges()
{
    const auto encode = [](QSize size, int pictures) {
        return encodeClip({.encoder = "mpeg4", .size = size, .pictures = pictures}).pictures;
    };
    const QList<QByteArray> small = encode({64, 48}, 2);
    const QList<QByteArray> large = encode({96, 64}, 2);
    const QList<QByteArray> yard = encode({128, 96}, 3);
    // A repeated header changes nothing. The second stream goes on in the first file until its next key
    // picture.
    const QByteArray stream =
        headerOf("mp4v") + frameAt(1000, Video, small[0]) + frameAt(1010, Second, yard[0]) +
        headerOf("mp4v") + frameAt(1040, Video, small[1]) + frameAt(1080, Video, large[0]) +
        frameAt(1090, Second, yard[1]) + frameAt(1120, Video, large[1]) + frameAt(1130, Second, yard[0]) +
        frameAt(1170, Second, yard[1]) + frameAt(1210, Second, yard[2]);
    const Run run = runProgram({record(stream), "--export", path("out.mkv")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains("64 x 48, then 96 x 64"), qPrintable(run.out));
    QCOMPARE(files(), QStringList({"out-2.mkv", "out.mkv", "recording"}));

    const QList<Track> first = tracksOf(path("out.mkv"));
    const QList<Track> second = tracksOf(path("out-2.mkv"));
    QCOMPARE(first.size(), 2);
    QCOMPARE(second.size(), 2);
    QCOMPARE(first[0].size, QSize(64, 48));
    QCOMPARE(first[0].times(), QList<qint64>({0, 40}));
    QCOMPARE(first[1].times(), QList<qint64>({10, 90}));
    QCOMPARE(second[0].size, QSize(96, 64));
    QCOMPARE(second[0].times(), QList<qint64>({0, 40}));
    QCOMPARE(second[1].times(), QList<qint64>({50, 90, 130}));
    QCOMPARE(second[1].numbers(), QList<int>({0, 1, 2}));
}

void TestHvx3Info::leavesNothingBehindWhenItFails()
{
    QList<QByteArray> sizes;
    for (const QSize size : {QSize(128, 96), QSize(176, 144)})
        sizes += encodeClip({.encoder = "mjpeg", .size = size, .pictures = 1}).pictures;
    QByteArray stream = headerOf("mjpeg");
    for (int i = 0; i < 3; ++i)
        stream += frameAt(1000 + i, Video, sizes[i % 2]);
    const QString recording = record(stream);
    QFile old(path("out-3.mkv"));
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();

    const Run refused = runProgram({recording, "--export", path("out.mkv")});
    QCOMPARE(refused.exitCode, 6);
    QVERIFY2(refused.err.contains("out-3.mkv exists; --force"), qPrintable(refused.err));
    QVERIFY2(refused.out.contains("stream 0: video"), qPrintable(refused.out));
    QCOMPARE(files(), QStringList({"out-3.mkv", "recording"}));
    QCOMPARE(QFileInfo(old).size(), 3);
    QCOMPARE(runProgram({recording, "--force", "--export", path("out.mkv")}).exitCode, 0);
    QCOMPARE(tracksOf(path("out-3.mkv")).value(0).numbers(), QList<int>({0}));

    for (int i = 3; i < 101; ++i)
        stream += frameAt(1000 + i, Video, sizes[i % 2]);
    const QStringList before = files();
    const Run tooMany = runProgram({record(stream), "--export", path("many.mkv")});
    QCOMPARE(tooMany.exitCode, 7);
    QVERIFY2(tooMany.err.contains("at most 100 files"), qPrintable(tooMany.err));
    QCOMPARE(files(), before);
}

void TestHvx3Info::leavesTheOldFileWhenItIsKilled()
{
#ifdef Q_OS_WIN
    QSKIP("needs a limit for files");
#else
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {640, 480}, .pictures = 1});
    QByteArray stream = headerOf("mjpeg");
    for (int i = 0; i < 200; ++i)
        stream += frameAt(1000 + i, Video, clip.whole());
    const QString recording = record(stream);
    QFile old(path("out.mkv"));
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    // The system ends the program in the middle of the export.
    QProcess program;
    program.start("sh", {"-c", "ulimit -c 0; ulimit -f 200; exec \"$0\" \"$@\"", INFO_PROGRAM, recording,
                         "--force", "--export", path("out.mkv")});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
#endif
}

void TestHvx3Info::listsTheVideoOfARecorder()
{
    const QTemporaryDir data;
    recorder::RecorderServer recorder(data.path());
    QVERIFY2(recorder.listen(), qPrintable(recorder.errorString()));
    const QString address = QStringLiteral("admin:admin@127.0.0.1:%1").arg(recorder.port());
    const Run run = runBeside(
        {address, "--seconds", "2", "--json", "--export", path("live.mkv"), "--record", path("live.hvx3")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY2(run.json()["streams"].toArray()[0].toObject()["frames"].toInt() > 5, qPrintable(run.out));
    QVERIFY(tracksOf(path("live.mkv")).value(0).numbers().size() > 5);
    // The recording is one like any other.
    const Run again = runProgram({path("live.hvx3")});
    QVERIFY2(again.out.contains("answer to the login"), qPrintable(again.out));
    const QStringList before = files();
    QCOMPARE(runBeside({address, "--seconds", "1"}).exitCode, 0);
    QCOMPARE(files(), before);
}

void TestHvx3Info::tellsWhyARecordingIsShort_data()
{
    const TestTable<bool, QString> row("closes", "says");
    row("closed", true, "s of 60 s: the connection to 127.0.0.1 has ended");
    row("frozen", false, "s of 60 s: nothing has come from 127.0.0.1 for 2 s");
}

void TestHvx3Info::tellsWhyARecordingIsShort()
{
    QFETCH(bool, closes);
    QFETCH(QString, says);
    const QByteArray stream = "LENGTH=16\r\nVORN_ANSWER=OK\r\n" + headerOf("mjpeg") + frameAt(1, Video, "x");
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *client = server.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, client, [client, stream, closes] {
            client->readAll();
            client->write(stream);
            if (closes)
                client->disconnectFromHost();
        });
    });
    const Run run = runBeside({QStringLiteral("admin:admin@127.0.0.1:%1").arg(server.serverPort()),
                               "--seconds", "60", "--timeout", "2", "--export", path("short.mkv")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains(says), qPrintable(run.err));
    QVERIFY2(run.err.contains("no video stream with a key picture"), qPrintable(run.err));
    QVERIFY2(run.out.contains("stream 0: video"), qPrintable(run.out)); // listed all the same
}

void TestHvx3Info::tellsWhyThereIsNoVideo_data()
{
    const TestTable<QByteArray, int, QString> row("answer", "exitCode", "says");
    row("login refused", "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n", 4, "has refused the login");
    row("no recorder", "HTTP/1.1 400 Bad Request\r\n\r\n", 7, "is not a recorder");
    row("closed", "", 3, "no video from 127.0.0.1: The remote host closed the connection");
}

void TestHvx3Info::tellsWhyThereIsNoVideo()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, says);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *client = server.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, client, [client, answer] {
            client->readAll();
            answer.isEmpty() ? client->close() : void(client->write(answer));
        });
    });
    const QString address = QStringLiteral("admin:s3cret@127.0.0.1:%1").arg(server.serverPort());
    const QString old = record("old", "old.hvx3");
    const Run run = runBeside({address, "--force", "--record", old});
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.err.contains(says) && !run.err.contains("s3cret"), qPrintable(run.err));
    QCOMPARE(QFileInfo(old).size(), 3);
}

void TestHvx3Info::keepsTheOldExportOnAFullDisk()
{
    SKIP_WITHOUT_FULL_DISK();
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 48}, .pictures = 1});
    const QString recording = record(headerOf("mjpeg") + frameAt(1, Video, clip.whole()));
    QCOMPARE(runProgram({recording, "--export", path("whole.mkv")}).exitCode, 0);
    const qint64 size = QFileInfo(path("whole.mkv")).size();
    QFile old(path("old.mkv"));
    QVERIFY(old.open(QIODevice::ReadWrite) && old.write("old") == 3 && old.flush());
    for (const qint64 room : {qint64(0), size / 2, size - 1}) {
        const FullDisk full(room); // programs started now have it, too
        const Run run = runProgram({recording, "--force", "--export", old.fileName()});
        QCOMPARE(run.exitCode, 6);
        QVERIFY2(run.err.contains("cannot write " + old.fileName()), qPrintable(run.err));
        QFile now(old.fileName());
        QVERIFY(now.open(QIODevice::ReadOnly));
        QCOMPARE(now.readAll(), "old");
    }
}

void TestHvx3Info::handlesCommandLines_data()
{
    // %1: a recording without pictures, %2: one with a picture, %3: another file
    const TestTable<QStringList, int, QString> row("arguments", "exitCode", "says");
    row("help", {"--help"}, 0, "Exit code");
    row("no path in the usage", {"--help"}, 0, "Usage: hvx3-info [options] RECORDING|ADDRESS");
    row("record a file", {"%1", "--record", "x"}, 2, "--record needs an ADDRESS");
    row("no time", {"a:b@host", "--seconds", "0"}, 2, "--seconds takes a number from 1");
    row("no time of silence", {"a:b@host", "--timeout", "x"}, 2, "--timeout takes a number from 1");
    row("a time of silence of a file", {"%1", "--timeout", "5"}, 2, "--timeout needs an ADDRESS");
    row("no such port", {"a:b@host:65536"}, 2, "an address has the form");
    row("record over a file", {"a:b@host", "--record", "%1"}, 6, "exists; --force");
    row("nobody listens", {"a:b@127.0.0.1:1"}, 3, "no video from 127.0.0.1: Connection refused");
    row("version", {"--version"}, 0, "hvx3-info " PARAVUE_VERSION);
    row("nothing", {}, 2, "no file was given");
    row("two files", {"%1", "%1"}, 2, "more than one file");
    row("unknown option", {"%1", "--nonsense"}, 2, "nonsense");
    row("export nowhere", {"%1", "--export="}, 2, "--export needs a value");
    row("another format", {"%1", "--export", "x.avi"}, 2, ".mkv or .mp4");
    row("force without export", {"%1", "--force"}, 2, "--force needs --export");
    row("unknown codec", {"%1", "--codec", "H265"}, 2, "unknown codec \"H265\"");
    row("two headers", {"%1", "--codec", "H264", "--header", "%1"}, 2, "--codec or by --header");
    row("no header in the other file", {"%1", "--header", "%3"}, 7, "there is no usable header in");
    row("nothing behind the header", {"%3", "--codec", "H264"}, 7, "no index record begins in its 5 bytes");
    row("export standard input", {"-", "--export", "x.mkv"}, 2, "twice");
    row("no such file", {"nosuch", "--export", "x.mkv"}, 6, "there is no file nosuch");
    row("folder", {"."}, 6, ". is a folder");
    row("empty", {"-"}, 7, "- is empty");
    row("no stream", {"%3"}, 7, "no header begins in its 5 bytes");
    row("another answer", {"%5"}, 7, "no header begins in its 28 bytes");
    row("cut in the header", {"%6"}, 7, "a header begins in it but does not end");
    row("no pictures", {"%1"}, 0, "duration 0:00:03.000 bit rate");
    row("one record", {"%2"}, 0, "frames 1 in 1 record pictures");
    row("nothing lost", {"%2"}, 0, "in front answer to the login, 27 bytes name");
    row("no pictures to export", {"%1", "--export", "x.mkv"}, 7, "no video stream with a key picture");
    row("onto itself", {"%4", "--force", "--export", "%4"}, 6, "is the recording itself");
    row("no such folder", {"%2", "--export", "nosuch/x.mkv"}, 6, "cannot write nosuch/x.mkv");
}

void TestHvx3Info::handlesCommandLines()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, says);
    const QByteArray start = headerOf("mjpeg") + hvx3Index(1) + hvx3Index(4);
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 48}, .pictures = 1});
    arguments.replaceInStrings("%1", record(start));
    arguments.replaceInStrings(
        "%2", record(Acknowledgement + start + hvx3Frame(Video, clip.whole(), 50'000), "picture"));
    arguments.replaceInStrings("%4", record(start + hvx3Frame(Video, clip.whole(), 500), "same.mkv"));
    arguments.replaceInStrings("%5", record("x" + Acknowledgement, "refusal"));
    arguments.replaceInStrings("%6", record(Acknowledgement + start.first(20), "cut"));
    arguments.replaceInStrings("%3", record("abcde", "junk"));
    const Run run = runProgram(arguments);
    QCOMPARE(run.exitCode, exitCode);
    const QString said = (run.exitCode == 0 ? run.out : run.err).simplified();
    QVERIFY2(said.contains(says), qPrintable(said));
}

QTEST_GUILESS_MAIN(TestHvx3Info)
#include "tst_hvx3_info.moc"
