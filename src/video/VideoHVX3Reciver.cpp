#include "video/VideoHVX3Reciver.h"

#include "video/CodecStream.h"
#include "video/EventLoopBudget.h"
#include "video/PictureViewer.h"
#include "video/StreamFigures.h"
#include "video/VideoLimits.h"
#include "video/cFfmpegDecoder.h"
#include "video/cHvx3Demuxer.h"
#include "video/cHvx3Parser.h"

#include <QLoggingCategory>
#include <QMetaMethod>
#include <QPointer>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace
{

Q_LOGGING_CATEGORY(receiverLog, "paravue.video")

constexpr quint16 UsualPort = 5049;
constexpr int PictureStream = 0;
/// Bytes that the socket buffers and that are parsed at a time.
constexpr int MaxUnreadBytes = 64 * 1024;
/// Bytes that the system buffers. By itself it would let some megabytes of old pictures wait.
constexpr int SystemBuffer = 256 * 1024;
const QByteArray Acknowledgement = QByteArrayLiteral("LENGTH=16\r\nVORN_ANSWER=OK\r\n");

/// Ports above 32767 are stored as negative numbers. Returns 0 for a text that is no 16-bit number.
quint16 portOf(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    const bool fits = isNumber && number >= -0x8000 && number <= 0xFFFF;
    return fits ? static_cast<quint16>(number) : 0;
}

bool isDecodable(const QByteArray &label)
{
    return paravue::CodecStream::isDecoder(cHvx3Demuxer::decoderOf(label).toLatin1());
}

/// A name of the stream in characters that can be shown.
QString shownName(const QByteArray &label)
{
    constexpr qsizetype LongestName = 20;
    QString name = QString::fromLatin1(paravue::unterminated(label).left(LongestName));
    for (QChar &character : name) {
        if (!character.isPrint())
            character = QLatin1Char('?');
    }
    return name;
}

/// The number of pictures that all receivers together have decoded. Deliberate: a picture is shown when its
/// number has this bit, which is four in a row of every eight.
unsigned int pictureCount = 0;

bool isInTurn(unsigned int number)
{
    constexpr unsigned int ShownBit = 4;
    return number & ShownBit;
}

} // namespace

VideoHVX3Reciver::VideoHVX3Reciver(QObject *parent, const QDomElement &element)
    : QObject(parent), m_element(element), m_budget(paravue::EventLoopBudget::shared()),
      m_socket(new QTcpSocket(this)), m_parser(new cHvx3Parser(this)), m_demuxer(new cHvx3Demuxer(this)),
      m_decoder(new cFfmpegDecoder(this))
{
    m_parser->setMaxFrameSize(paravue::MaxFrameBytes);
    m_demuxer->consumers()[PictureStream] = m_decoder;
    m_decoder->workInTurns();
    m_decoder->setMaxWait(paravue::MaxLiveWait);
    m_decoder->setChoice([this] { return chooseSize(); });
    m_socket->setReadBufferSize(MaxUnreadBytes);

    connect(m_parser, &cHvx3Parser::onHDR, m_demuxer, &cHvx3Demuxer::hdr_slot);
    connect(m_parser, &cHvx3Parser::onIDX, m_demuxer, &cHvx3Demuxer::idx_slot);
    connect(m_parser, &cHvx3Parser::onDATA, m_demuxer, &cHvx3Demuxer::data_slot);
    connect(m_parser, &cHvx3Parser::onDATA, this,
            [this](const DATA_T &frame) { m_frames += frame.streamId == PictureStream ? 1 : 0; });
    connect(m_demuxer, &cHvx3Demuxer::onCreate, this, &VideoHVX3Reciver::checkCodec);
    connect(m_decoder, &cFfmpegDecoder::onFrame, this, &VideoHVX3Reciver::imageReady);
    connect(m_decoder, &cFfmpegDecoder::onScaledFrame, this, &VideoHVX3Reciver::scaledImageReady);
    connect(m_decoder, &cFfmpegDecoder::idle, this, &VideoHVX3Reciver::parseDeferred);
    connect(m_socket, &QTcpSocket::connected, this, &VideoHVX3Reciver::connected);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &VideoHVX3Reciver::error);
    connect(m_socket, &QTcpSocket::readyRead, this, &VideoHVX3Reciver::readyRead);
    connect(m_socket, &QTcpSocket::disconnected, this, &VideoHVX3Reciver::disconnected);
    connectToRecorder();
}

VideoHVX3Reciver::~VideoHVX3Reciver()
{
    // A receiver of a picture may destroy this object, but the socket is still emitting readyRead().
    if (m_reading) {
        m_socket->disconnect(this);
        m_socket->setParent(nullptr);
        m_socket->abort();
        m_socket->deleteLater();
    }
}

void VideoHVX3Reciver::connected()
{
    const QString login =
        QStringLiteral("\x01LOGIN=%1\r\nPASS=%2\r\n")
            .arg(urlAttribute(QStringLiteral("login")), urlAttribute(QStringLiteral("password")));
    m_socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, SystemBuffer);
    m_socket->write(login.toUtf8());
    m_state = LoggingIn;
}

void VideoHVX3Reciver::error(QAbstractSocket::SocketError error)
{
    if (error != QAbstractSocket::RemoteHostClosedError)
        m_received.clear();
}

void VideoHVX3Reciver::readyRead()
{
    const QPointer<VideoHVX3Reciver> self(this);
    const bool wasReading = std::exchange(m_reading, true);
    read();
    if (self)
        m_reading = wasReading;
}

void VideoHVX3Reciver::read()
{
    if (m_state == Streaming) {
        parse();
        return;
    }
    m_received += m_socket->readAll();
    // Deliberate: bytes behind the acknowledgement are parsed when the next ones come.
    if (m_state == LoggingIn)
        checkAcknowledgement();
}

paravue::StreamFigures VideoHVX3Reciver::figures() const
{
    return {.codec = m_codec,
            .size = m_decoder->pictureSize(),
            .bytes = m_parsedBytes,
            .frames = m_frames,
            .leftOut = leftOut(),
            .wait = m_decoder->lastWait(),
            .losses = m_parser->losses()};
}

quint64 VideoHVX3Reciver::leftOut() const
{
    return m_decoder->leftOut();
}

void VideoHVX3Reciver::disconnected() {}

void VideoHVX3Reciver::imageReady(const QImage &image)
{
    ++pictureCount;
    const bool isToEmit = isEmitted(pictureCount);
    if (!isToEmit && !m_viewer)
        return;
    const QPixmap pixmap = pixmapOf(image);
    // A receiver of the picture may destroy this object.
    const QPointer<VideoHVX3Reciver> self(this);
    if (isToEmit)
        Q_EMIT pixmapReady(pixmap);
    if (self && m_viewer)
        m_viewer->showPicture(pixmap);
}

/// Whether the picture of this number is emitted, and somebody receives it.
bool VideoHVX3Reciver::isEmitted(unsigned int number) const
{
    return isInTurn(number) && isSignalConnected(QMetaMethod::fromSignal(&VideoHVX3Reciver::pixmapReady));
}

void VideoHVX3Reciver::scaledImageReady(const QImage &image)
{
    ++pictureCount;
    m_viewer->showScaled(pixmapOf(image));
}

QPixmap VideoHVX3Reciver::wholePicture()
{
    const QImage image = m_decoder->wholePicture();
    return image.isNull() ? QPixmap() : pixmapOf(image);
}

/// A pixmap may share the memory of its image, which the next picture must not overwrite.
QPixmap VideoHVX3Reciver::pixmapOf(const QImage &image)
{
    return QPixmap::fromImage(m_decoder->release(image) ? image : image.copy());
}

void VideoHVX3Reciver::setViewer(paravue::PictureViewer *viewer)
{
    m_viewer = viewer;
    m_decoder->setWatch([viewer] { return viewer->isWatching(); });
}

/// Asked before imageReady(). A picture that is not wanted counts all the same.
std::optional<QSize> VideoHVX3Reciver::chooseSize()
{
    const unsigned int number = pictureCount + 1;
    if (!isWanted(number)) {
        ++pictureCount;
        return {};
    }
    return !m_viewer || isEmitted(number) ? QSize() : m_viewer->scaledSize();
}

/// Without a viewer, whether anybody gets the picture of this number: a host may receive all of the decoder.
bool VideoHVX3Reciver::isWanted(unsigned int number) const
{
    if (m_viewer)
        return m_viewer->wantsPicture(isInTurn(number));
    return isEmitted(number) || m_decoder->frameReceivers() > 1;
}

void VideoHVX3Reciver::checkCodec()
{
    const QList<STREAM_T> streams = m_demuxer->header().streams;
    const auto pictures = std::find_if(streams.begin(), streams.end(), [](const STREAM_T &stream) {
        return stream.streamId == PictureStream && stream.streamType == paravue::VideoStream;
    });
    m_unknownCodec.reset();
    m_codec = pictures == streams.end() ? QString() : shownName(pictures->label1);
    if (pictures != streams.end() && !isDecodable(pictures->label1))
        m_unknownCodec = m_codec;
    if (m_unknownCodec && !std::exchange(m_hasWarned, true))
        qCWarning(receiverLog) << "Live video has a codec that is not known:" << *m_unknownCodec;
}

void VideoHVX3Reciver::connectToRecorder()
{
    const QStringList parts = urlAttribute(QStringLiteral("parsed")).split(QLatin1Char(':'));
    m_socket->connectToHost(parts.first(), parts.size() < 2 ? UsualPort : portOf(parts.at(1)));
}

QString VideoHVX3Reciver::urlAttribute(const QString &name) const
{
    return m_element.firstChildElement(QStringLiteral("url")).attribute(name);
}

void VideoHVX3Reciver::checkAcknowledgement()
{
    if (m_received.startsWith(Acknowledgement)) {
        m_received.remove(0, Acknowledgement.size());
        m_state = Streaming;
    } else {
        // Enough to tell that they are no acknowledgement, whatever follows.
        m_received.truncate(Acknowledgement.size());
    }
}

/// Parses what was received, so that it waits in the decoder, which knows for how long. What would be too
/// much to keep stays in the socket, which slows the recorder down.
void VideoHVX3Reciver::parse()
{
    m_isDeferred = m_decoder->waitingBytes() > paravue::MaxWaitingBytes;
    if (m_isDeferred)
        return;
    if (m_budget->hasTime()) {
        // Unlike readAll(), this hands over the memory of the socket: usually all is in one piece.
        m_received += m_socket->read(m_socket->bytesAvailable());
        m_parsedBytes += m_received.size();
        m_budget->run([this] { m_parser->append(std::exchange(m_received, {})); });
    } else if (!std::exchange(m_isQueued, true)) {
        // Before decoding goes on: bytes in the socket become old unnoticed.
        m_budget->deferUrgent(this, [this] {
            m_isQueued = false;
            parse();
            return false;
        });
    }
}

void VideoHVX3Reciver::parseDeferred()
{
    if (m_isDeferred)
        parse();
}
