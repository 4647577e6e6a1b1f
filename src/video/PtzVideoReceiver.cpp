#include "video/PtzVideoReceiver.h"

#include "video/cHvx3Demuxer.h"

#include <QTcpSocket>

#include <algorithm>
#include <functional>

namespace paravue
{

namespace
{

constexpr quint8 TextStream = 4;
constexpr qsizetype MaxPositionText = 128;
// Each position makes windows paint. A recorder may send thousands at once.
constexpr int PositionPause = 20; // milliseconds
// A user does not click that fast; a recorder that takes nothing is not sent more.
constexpr qint64 MaxUnsent = 16 * 1024;

QByteArray unterminated(const QByteArray &text)
{
    const qsizetype zero = text.indexOf('\0');
    return zero < 0 ? text : text.first(zero);
}

bool hasControlCharacter(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

} // namespace

/// The consumer of the stream of positions.
class PtzTextReader : public QObject
{
    Q_OBJECT

public:
    using Use = std::function<void(const QString &)>;

    PtzTextReader(Use use, QObject *parent) : QObject(parent), m_use(std::move(use)) {}

public Q_SLOTS:
    // Digits are the same in every charset of the stream.
    void create(const QString &) {}
    void append(const QByteArray &text)
    {
        const QByteArray position = unterminated(text);
        if (position.size() <= MaxPositionText)
            m_use(QString::fromLatin1(position));
    }

private:
    const Use m_use;
};

PtzVideoReceiver::PtzVideoReceiver(QObject *parent, const QDomElement &element)
    : VideoHVX3Reciver(parent, element),
      m_reader(new PtzTextReader([this](const QString &position) { received(position); }, this))
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(PositionPause);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        if (m_newest != m_position)
            received(m_newest);
    });
    connect(&demuxer(), &cHvx3Demuxer::onCreate, this, &PtzVideoReceiver::findPositions);
    connect(&socket(), &QTcpSocket::disconnected, this, &PtzVideoReceiver::forgetPosition);
}

PtzVideoReceiver::~PtzVideoReceiver() = default;

void PtzVideoReceiver::goTo(int point)
{
    if (point >= 1)
        send("PTZ GOTO " + QByteArray::number(point));
}

void PtzVideoReceiver::setPoint(int point, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (point >= 1 && bytes.size() <= MaxPointText && !hasControlCharacter(text))
        send("PTZ POINT " + QByteArray::number(point) + ' ' + bytes);
}

void PtzVideoReceiver::findPositions()
{
    if (m_streamId != 0)
        demuxer().consumers().remove(m_streamId);
    const QList<STREAM_T> streams = demuxer().header().streams;
    const auto found = std::find_if(streams.begin(), streams.end(), [](const STREAM_T &stream) {
        return stream.streamType == TextStream && stream.streamId != 0 &&
               unterminated(stream.label2) == "PTZ";
    });
    m_streamId = found == streams.end() ? 0 : found->streamId;
    if (m_streamId != 0)
        demuxer().consumers()[m_streamId] = m_reader;
    else
        forgetPosition();
}

void PtzVideoReceiver::received(const QString &position)
{
    m_newest = position;
    if (m_pause.isActive())
        return;
    m_pause.start();
    setPosition(position);
}

void PtzVideoReceiver::forgetPosition()
{
    m_pause.stop();
    setPosition(QString());
}

void PtzVideoReceiver::setPosition(const QString &position)
{
    if (position == m_position)
        return;
    m_position = position;
    Q_EMIT positionChanged(m_position);
}

void PtzVideoReceiver::send(const QByteArray &command)
{
    if (isStreaming() && socket().state() == QAbstractSocket::ConnectedState &&
        socket().bytesToWrite() <= MaxUnsent)
        socket().write(command + "\r\n");
}

} // namespace paravue

#include "PtzVideoReceiver.moc"
