// Requires that a receiver shows exactly the pictures of the stream behind the acknowledgement that are to be
// shown, whatever a recorder sends.
//
// Input: a byte that chooses the receiver and what the recorder does first, one that chooses how the bytes
// are cut, the bytes that the recorder sends.

#include "Events.h"
#include "FuzzInput.h"
#include "ImageCheck.h"
#include "LoopbackPeer.h"
#include "PictureCounters.h"
#include "Require.h"
#include "StreamLog.h"

#include "support/PictureCount.h"
#include "video/PtzVideoReceiver.h"
#include "video/VideoLimits.h"
#include "video/cFfmpegDecoder.h"
#include "video/cHvx3Parser.h"

#include <QDomDocument>
#include <QGuiApplication>
#include <QTcpSocket>

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <memory>

using namespace paravue::fuzz;

namespace
{

const QByteArray Login = QByteArrayLiteral("\x01LOGIN=user\r\nPASS=word\r\n");
const QByteArray Acknowledgement = QByteArrayLiteral("LENGTH=16\r\nVORN_ANSWER=OK\r\n");

enum Choice : quint8 {
    Turning = 0x01,
    Acknowledged = 0x02,
    TakenApart = 0x04,
    ClosedByPeer = 0x08,
    OnlyShown = 0x10
};

/// The number of pictures that all receivers have decoded, which decides which of them are shown.
unsigned int decodedPictures = 0;
constexpr unsigned int ShownBit = 4;

QDomElement taskFor(quint16 port)
{
    QDomDocument document;
    QDomElement task = document.createElement("timetask");
    QDomElement url = document.createElement("url");
    url.setAttribute("parsed", "127.0.0.1:" + QString::number(static_cast<qint16>(port)));
    url.setAttribute("login", "user");
    url.setAttribute("password", "word");
    task.appendChild(url);
    document.appendChild(task);
    return task;
}

/// Compares the pictures that a receiver shows with those that it decodes, or gets only those that are shown.
class Viewer : public QObject
{
public:
    Viewer(VideoHVX3Reciver &receiver, bool onlyShown);
    /// Requires that the last picture has not changed since it was shown.
    void checkKept() const { require(m_shown.toImage() == m_asShown, "a shown picture stays as it is"); }

private:
    void show(const QPixmap &pixmap);
    void decoded(const QImage &image);

    QPixmap m_shown;
    QImage m_asShown;
    int m_pictures = 0;
    bool m_isShown = false;
};

Viewer::Viewer(VideoHVX3Reciver &receiver, bool onlyShown)
{
    connect(&receiver, &VideoHVX3Reciver::pixmapReady, this, &Viewer::show);
    if (onlyShown)
        return;
    // Connected after the receiver and therefore called after it.
    connect(receiver.findChild<cFfmpegDecoder *>(), &cFfmpegDecoder::onFrame, this, &Viewer::decoded);
}

void Viewer::show(const QPixmap &pixmap)
{
    checkKept();
    m_shown = pixmap;
    m_asShown = pixmap.toImage().copy();
    m_isShown = true;
    checkImage(m_asShown);
}

void Viewer::decoded(const QImage &image)
{
    countPicture(image, m_pictures++);
    require(m_isShown == ((++decodedPictures & ShownBit) != 0), "a picture is shown in its turn");
    require(!m_isShown || m_asShown == image, "what is shown is what was decoded");
    m_isShown = false;
}

QList<QByteArray> recordsOf(const QByteArray &stream)
{
    cHvx3Parser parser;
    const StreamLog log(parser, paravue::MaxFrameBytes);
    parser.append(stream);
    return log.records();
}

/// The records that a receiver reads from the \a pieces: those behind an acknowledgement at the beginning,
/// once another piece has followed.
QList<QByteArray> expectedRecords(const QList<QByteArray> &pieces)
{
    const QByteArray all = pieces.join();
    const bool moreBehind = all.size() - pieces.last().size() >= Acknowledgement.size();
    if (!all.startsWith(Acknowledgement) || !moreBehind)
        return {};
    return recordsOf(all.sliced(Acknowledgement.size()));
}

/// The pieces in which the recorder sends the bytes.
QList<QByteArray> piecesOf(const QByteArray &bytes, quint8 choice, quint8 seed)
{
    const QByteArray all = choice & Acknowledged ? Acknowledgement + bytes : bytes;
    if (choice & TakenApart)
        return cutAtRandom(all, seed);
    const qsizetype border = std::min(Acknowledgement.size(), all.size());
    return {all.first(border), all.sliced(border)};
}

/// A receiver that is busy leaves bytes in its socket.
void waitUntilRead(const VideoHVX3Reciver &receiver)
{
    const auto *decoder = receiver.findChild<cFfmpegDecoder *>();
    const auto *socket = receiver.findChild<QTcpSocket *>();
    handleEventsUntil([&] { return !decoder->isBusy() && socket->bytesAvailable() == 0; });
}

/// Requires that a receiver keeps nothing of what a recorder sends instead of an acknowledgement.
void checkRefusedMemory(LoopbackPeer &peer)
{
    constexpr int Chunks = 8;
    constexpr qsizetype ChunkSize = 64 * 1024;
    const QByteArray chunk(ChunkSize, 'x');
    peer.send(chunk); // once, for what the sockets keep
    const auto before = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    for (int i = 0; i < Chunks; ++i)
        peer.send(chunk);
    const auto now = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    require(now - before < Chunks * ChunkSize / 2, "bytes that are no acknowledgement are not kept");
}

void run(const QList<QByteArray> &pieces, quint8 choice)
{
    static LoopbackPeer peer;
    const QDomElement task = taskFor(peer.port());
    std::unique_ptr<VideoHVX3Reciver> receiver(choice & Turning ? new paravue::PtzVideoReceiver(nullptr, task)
                                                                : new VideoHVX3Reciver(nullptr, task));
    const StreamLog log(*receiver->findChild<cHvx3Parser *>(), paravue::MaxFrameBytes);
    const Viewer viewer(*receiver, choice & OnlyShown);
    require(peer.accept() == Login, "a receiver logs in");
    for (const QByteArray &piece : pieces)
        peer.send(piece);
    waitUntilRead(*receiver);
    require(log.records() == expectedRecords(pieces), "all of the stream is read, and nothing else");
    const bool isRefused = !pieces.join().startsWith(Acknowledgement);
    if (isRefused)
        checkRefusedMemory(peer);
    if (choice & ClosedByPeer)
        peer.close();
    receiver.reset();
    peer.close();
    viewer.checkKept();
    if (choice & OnlyShown) { // pictures were decoded that nobody got
        paravue::test::startCountingPictures();
        decodedPictures = 0;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const quint8 choice = input.takeByte();
    const quint8 seed = input.takeByte();
    const QByteArray bytes = input.rest();
    if (!bytes.isEmpty())
        run(piecesOf(bytes, choice, seed), choice);
    return 0;
}
