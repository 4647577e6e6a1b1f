#include "support/EncodedClip.h"
#include "support/FakeRecorder.h"
#include "support/Hvx3Bytes.h"
#include "support/PictureCount.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "video/StreamFigures.h"
#include "video/VideoHVX3Reciver.h"
#include "video/VideoLimits.h"
#include "video/cFfmpegDecoder.h"
#include "video/cHvx3Parser.h"

#include <QNetworkProxy>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>

using namespace paravue::test;

namespace
{

const QByteArray Login = "\x01LOGIN=guest\r\nPASS=secret\r\n";
const QByteArray Acknowledgement = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";

QDomElement describedTask(const QString &parsed, const QString &login = "guest",
                          const QString &password = "secret")
{
    QDomDocument document;
    QDomElement task = document.createElement("timetask");
    QDomElement url = document.createElement("url");
    url.setAttribute("parsed", parsed);
    url.setAttribute("login", login);
    url.setAttribute("password", password);
    task.appendChild(url);
    return task;
}

/// A receiver that is connected to a recorder, and the numbers of the pictures that it has shown.
class Viewer
{
public:
    explicit Viewer(const FakeRecorder &recorder)
        : receiver(std::make_unique<VideoHVX3Reciver>(
              nullptr, describedTask("127.0.0.1:" + QString::number(recorder.port())))),
          headers(receiver->findChild<cHvx3Parser *>(), &cHvx3Parser::onHDR),
          reads(receiver->findChild<QTcpSocket *>(), &QTcpSocket::readyRead)
    {
        QObject::connect(receiver.get(), &VideoHVX3Reciver::pixmapReady, receiver.get(),
                         [this](const QPixmap &pixmap) {
                             shown << shownNumber(pixmap.toImage());
                             kept << pixmap;
                         });
    }

    bool isClosed() const
    {
        return receiver->findChild<QTcpSocket *>()->state() == QAbstractSocket::UnconnectedState;
    }

    std::unique_ptr<VideoHVX3Reciver> receiver;
    QSignalSpy headers;
    QSignalSpy reads;
    QList<int> shown;
    QList<QPixmap> kept;
};

QByteArray streamOf(const EncodedClip &clip, const QByteArray &label)
{
    QByteArray bytes = hvx3Header({{.label1 = label}}) + hvx3Index(1000);
    for (const QByteArray &picture : clip.pictures)
        bytes += hvx3Frame(0, picture, 1000);
    return bytes;
}

} // namespace

class TestVideoHVX3Reciver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startCountingPictures(); }
    void showsHalfOfThePictures_data();
    void showsHalfOfThePictures();
    void convertsWhatSomebodyGets_data();
    void convertsWhatSomebodyGets();
    void readsTheAddress_data();
    void readsTheAddress();
    void logsInWithUtf8();
    void waitsForTheAcknowledgement_data();
    void waitsForTheAcknowledgement();
    void keepsReceivedBytesWhenTheRecorderCloses_data();
    void keepsReceivedBytesWhenTheRecorderCloses();
    void leavesOutWhatIsLate();
    void limitsWhatWaits();
    void receiverOfPicturesMayDestroyIt();
    void countsThePicturesOfAllReceivers();
    void showsCopies();
};

void TestVideoHVX3Reciver::showsHalfOfThePictures_data()
{
    const TestTable<QByteArray, QByteArray> row("encoder", "label");
    row("H.264", "libx264", "H264");
    row("MPEG-4", "mpeg4", "mp4v");
    row("motion JPEG", "mjpeg", "mjpeg");
}

void TestVideoHVX3Reciver::showsHalfOfThePictures()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QByteArray, label);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no such encoder");
    const EncodedClip clip = encodeClip({.encoder = encoder, .size = {180, 144}, .pictures = 17});
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).send(streamOf(clip, label)).close();
    Viewer viewer(recorder);
    AWAIT_COMPARE(viewer.shown, QList<int>({3, 4, 5, 6, 11, 12, 13, 14}));
    // Each has memory of its own.
    for (qsizetype i = 0; i < viewer.shown.size(); ++i)
        QCOMPARE(shownNumber(viewer.kept[i].toImage()), viewer.shown[i]);
    // The connection is not made again.
    AWAIT_VERIFY(viewer.isClosed());
    QCOMPARE(recorder.connectionCount(), 1);
    QCOMPARE(recorder.problem(), QString());

    const paravue::StreamFigures figures = viewer.receiver->figures();
    QCOMPARE(figures.codec, QString::fromLatin1(label));
    QCOMPARE(figures.size, QSize(180, 144));
    QCOMPARE(figures.frames, 17U);
    QCOMPARE(figures.bytes, quint64(streamOf(clip, label).size()));
    QCOMPARE(figures.leftOut, 0U);
    QCOMPARE(figures.losses.bytes, 0);
    QVERIFY(figures.wait < std::chrono::seconds(1));
}

void TestVideoHVX3Reciver::convertsWhatSomebodyGets_data()
{
    const TestTable<int, int> row("connections", "converted");
    row("nobody but the receiver", 1, 0);
    row("a host, too", 2, 17);
}

void TestVideoHVX3Reciver::convertsWhatSomebodyGets()
{
    QFETCH(int, connections);
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {180, 144}, .pictures = 17});
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).send(streamOf(clip, "mp4v"));
    VideoHVX3Reciver receiver(nullptr, describedTask("127.0.0.1:" + QString::number(recorder.port())));
    auto *decoder = receiver.findChild<cFfmpegDecoder *>();
    // The first of these stands for the receiver's own, so that it can count.
    disconnect(decoder, &cFfmpegDecoder::onFrame, &receiver, nullptr);
    QList<int> converted(connections);
    for (int &count : converted)
        connect(decoder, &cFfmpegDecoder::onFrame, this, [&count] { ++count; });
    AWAIT_VERIFY(receiver.figures().frames == 17 && !decoder->isBusy());
    QTEST(converted.first(), "converted");
    QTEST(converted.last(), "converted");
}

void TestVideoHVX3Reciver::readsTheAddress_data()
{
    const TestTable<QString, QByteArray> row("parsed", "asked");
    row("no port", "10.0.0.5", "10.0.0.5:5049");
    row("no number", "10.0.0.5:x", "10.0.0.5:0");
    row("empty port", "10.0.0.5:", "10.0.0.5:0");
    row("negative port", "10.0.0.5:-25536", "10.0.0.5:40000");
    row("largest port", "10.0.0.5:65535", "10.0.0.5:65535");
    row("smallest port", "10.0.0.5:-32768", "10.0.0.5:32768");
    row("too large", "10.0.0.5:65536", "10.0.0.5:0");
    row("too small", "10.0.0.5:-32769", "10.0.0.5:0");
    row("two colons", "recorder:80:81", "recorder:80");
}

void TestVideoHVX3Reciver::readsTheAddress()
{
    QFETCH(QString, parsed);
    QFETCH(QByteArray, asked);
    // The request to a proxy contains the address.
    const FakeRecorder proxy;
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", proxy.port()));
    const auto restore = qScopeGuard([] { QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); });
    const VideoHVX3Reciver receiver(nullptr, describedTask(parsed));
    AWAIT_VERIFY(proxy.received().contains('\n'));
    QCOMPARE(proxy.received().split(' ').value(1), asked);
}

void TestVideoHVX3Reciver::logsInWithUtf8()
{
    const QString login = QStringLiteral("\u0413\u043e\u0441\u0442\u044c %2");
    FakeRecorder recorder;
    recorder.expect("\x01LOGIN=" + login.toUtf8() + "\r\nPASS=\r\n").expectClosed();
    auto receiver = std::make_unique<VideoHVX3Reciver>(
        nullptr, describedTask("127.0.0.1:" + QString::number(recorder.port()), login, ""));
    AWAIT_VERIFY(recorder.received().endsWith("PASS=\r\n"));
    receiver.reset();
    AWAIT_COMPARE(recorder.problem(), QString());
}

void TestVideoHVX3Reciver::waitsForTheAcknowledgement_data()
{
    const TestTable<QByteArrayList, QList<int>> row("answers", "headersAfterReads");
    const QByteArray header = hvx3Header({{}});
    row("split", {Acknowledgement.first(11), Acknowledgement.sliced(11), header}, {0, 0, 1});
    row("waits behind it", {Acknowledgement + header.first(20), header.sliced(20) + header}, {0, 2});
    row("waits for any byte", {Acknowledgement + header, "x"}, {0, 1});
    row("refused", {FakeRecorder::frame({}, "VORN_ANSWER=ERROR:1\r\n"), Acknowledgement, header}, {0, 0, 0});
    row("one wrong byte", {"l" + Acknowledgement.sliced(1), Acknowledgement, header}, {0, 0, 0});
    row("late", {"\n", Acknowledgement, header}, {0, 0, 0});
}

void TestVideoHVX3Reciver::waitsForTheAcknowledgement()
{
    QFETCH(QByteArrayList, answers);
    QFETCH(QList<int>, headersAfterReads);
    FakeRecorder recorder;
    recorder.expect(Login);
    for (const QByteArray &answer : answers)
        recorder.send(answer);
    Viewer viewer(recorder);
    QList<int> headers;
    QObject::connect(viewer.receiver->findChild<QTcpSocket *>(), &QTcpSocket::readyRead,
                     viewer.receiver.get(), [&] { headers << int(viewer.headers.size()); });
    AWAIT_COMPARE(headers.size(), answers.size());
    QCOMPARE(headers, headersAfterReads);
}

void TestVideoHVX3Reciver::keepsReceivedBytesWhenTheRecorderCloses_data()
{
    const TestTable<QByteArray, QAbstractSocket::SocketError, QByteArray, int> row("first", "error", "second",
                                                                                   "headers");
    const QByteArray header = hvx3Header({{}});
    row("closed", Acknowledgement + header, QAbstractSocket::RemoteHostClosedError, header, 3);
    row("failed", Acknowledgement + header, QAbstractSocket::NetworkError, header, 2);
    row("closed after rubbish", "rubbish", QAbstractSocket::RemoteHostClosedError, Acknowledgement, 0);
    row("failed after rubbish", "rubbish", QAbstractSocket::NetworkError, Acknowledgement, 1);
}

void TestVideoHVX3Reciver::keepsReceivedBytesWhenTheRecorderCloses()
{
    QFETCH(QByteArray, first);
    QFETCH(QAbstractSocket::SocketError, error);
    QFETCH(QByteArray, second);
    FakeRecorder recorder;
    recorder.expect(Login).send(first).send(second).send(hvx3Header({{}}));
    Viewer viewer(recorder);
    QVERIFY(viewer.reads.wait());
    viewer.receiver->error(error);
    AWAIT_COMPARE(viewer.reads.size(), 3);
    QTEST(int(viewer.headers.size()), "headers");
}

void TestVideoHVX3Reciver::leavesOutWhatIsLate()
{
    // A second holds 10 of these pictures on a computer this slow, of 8 frames of 8.
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 64}, .pictures = 8});
    const QByteArray frame = hvx3Frame(0, clip.whole(), 60'000);
    FakeRecorder recorder;
    recorder.expect(Login)
        .send(Acknowledgement)
        .send(hvx3Header({{.label1 = "mp4v"}}) + hvx3Index(1000) + frame.repeated(8));
    Viewer viewer(recorder);
    auto *decoder = viewer.receiver->findChild<cFfmpegDecoder *>();
    int decoded = 0;
    connect(decoder, &cFfmpegDecoder::onFrame, this, [&] {
        ++decoded;
        QThread::msleep(100);
    });
    AWAIT_VERIFY_WITHIN(decoded > 0 && !decoder->isBusy(), 20'000);
    QVERIFY2(decoded >= 8 && decoded <= 16, qPrintable(QString::number(decoded)));
    QVERIFY2(viewer.receiver->leftOut() >= 6, qPrintable(QString::number(viewer.receiver->leftOut())));
    QVERIFY(viewer.receiver->figures().wait > paravue::MaxLiveWait); // of the last frame, which was left out
}

void TestVideoHVX3Reciver::limitsWhatWaits()
{
    // More than may wait arrives while the first frame is decoded, which takes seconds.
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 64}, .pictures = 1});
    constexpr qsizetype FrameSize = 500'000;
    const QByteArray frame = hvx3Frame(0, clip.whole() + QByteArray(FrameSize, '\0'), 60'000);
    FakeRecorder recorder;
    recorder.expect(Login)
        .send(Acknowledgement)
        .send(hvx3Header({{.label1 = "mjpeg"}}) + hvx3Index(1000) +
              hvx3Frame(0, clip.whole().repeated(300), 60'000) + frame.repeated(40))
        .close();
    Viewer viewer(recorder);
    auto *decoder = viewer.receiver->findChild<cFfmpegDecoder *>();
    const auto *socket = viewer.receiver->findChild<QTcpSocket *>();
    decoder->setMaxWait(std::chrono::hours(1));
    qint64 unread = 0;
    qsizetype waiting = 0;
    int decoded = 0;
    connect(decoder, &cFfmpegDecoder::onFrame, this, [&] {
        waiting = std::max(waiting, decoder->waitingBytes());
        unread = std::max(unread, socket->bytesAvailable());
        if (++decoded < 300)
            QThread::msleep(10);
    });
    // The recorder has closed the connection long before.
    AWAIT_COMPARE_WITHIN(decoded, 340, 60'000);
    QVERIFY2(unread > 0 && unread <= 100'000, qPrintable(QString::number(unread)));
    QVERIFY2(waiting > paravue::MaxWaitingBytes && waiting <= paravue::MaxWaitingBytes + 2 * FrameSize,
             qPrintable(QString::number(waiting)));
}

void TestVideoHVX3Reciver::receiverOfPicturesMayDestroyIt()
{
    const EncodedClip clip = encodeClip({.encoder = "mpeg4", .size = {64, 64}});
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).send(streamOf(clip, "mp4v").repeated(20)).expectClosed();
    Viewer viewer(recorder);
    connect(viewer.receiver.get(), &VideoHVX3Reciver::pixmapReady, this, [&] { viewer.receiver.reset(); });
    AWAIT_VERIFY(!viewer.receiver);
    AWAIT_COMPARE(recorder.problem(), QString());
}

void TestVideoHVX3Reciver::countsThePicturesOfAllReceivers()
{
    VideoHVX3Reciver receivers[2] = {VideoHVX3Reciver(nullptr, {}), VideoHVX3Reciver(nullptr, {})};
    QList<int> shown;
    for (int number = 1; number <= 24; ++number) {
        VideoHVX3Reciver &receiver = receivers[number % 3 == 0];
        QSignalSpy pixmaps(&receiver, &VideoHVX3Reciver::pixmapReady);
        receiver.imageReady(QImage(8, 8, QImage::Format_RGB32));
        if (!pixmaps.isEmpty())
            shown << number;
    }
    QCOMPARE(shown, QList<int>({4, 5, 6, 7, 12, 13, 14, 15, 20, 21, 22, 23}));
}

void TestVideoHVX3Reciver::showsCopies()
{
    VideoHVX3Reciver receiver(nullptr, {});
    QList<QPixmap> shown;
    connect(&receiver, &VideoHVX3Reciver::pixmapReady, this, [&](const QPixmap &pixmap) { shown << pixmap; });
    // All pictures in the same memory, as those of the decoder.
    QList<QRgb> memory(8 * 8);
    for (QRgb colour = 0xff000001; colour <= 0xff000005; ++colour) {
        memory.fill(colour);
        receiver.imageReady(QImage(reinterpret_cast<uchar *>(memory.data()), 8, 8, QImage::Format_RGB32));
    }
    QCOMPARE(shown.size(), 2);
    QCOMPARE(shown[0].toImage().pixel(7, 7), 0xff000004);
    QCOMPARE(shown[1].toImage().pixel(7, 7), 0xff000005);
}

QTEST_MAIN(TestVideoHVX3Reciver)
#include "tst_videohvx3reciver.moc"
