#include "video/PtzVideoReceiver.h"

#include "video/cHvx3Demuxer.h"

#include <QTcpSocket>

#include <algorithm>
#include <functional>

namespace paravue
{

namespace
{

constexpr qsizetype MaxPositionText = 128;
// Each position repaints windows, and a recorder may send thousands at once.
constexpr int PositionPause = 20; // milliseconds
// More than a user can click: a recorder that reads nothing is sent nothing more.
constexpr qint64 MaxUnsent = 16 * 1024;

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
    using Handler = std::function<void(const QString &)>;

    PtzTextReader(Handler handler, QObject *parent) : QObject(parent), m_handler(std::move(handler)) {}

public Q_SLOTS:
    // Positions are digits, which are the same in every charset of the stream.
    void create(const QString &) {}
    void append(const QByteArray &text)
    {
        const QByteArray position = unterminated(text);
        if (position.size() <= MaxPositionText)
            m_handler(QString::fromLatin1(position));
    }

private:
    const Handler m_handler;
};

PtzVideoReceiver::PtzVideoReceiver(QObject *parent, const QDomElement &element)
    : VideoHVX3Reciver(parent, element),
      m_reader(new PtzTextReader([this](const QString &position) { receivePosition(position); }, this))
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(PositionPause);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        if (m_newest != m_position)
            receivePosition(m_newest);
    });
    connect(&demuxer(), &cHvx3Demuxer::onCreate, this, &PtzVideoReceiver::findPositions);
    connect(&socket(), &QTcpSocket::disconnected, this, &PtzVideoReceiver::clearPosition);
}

PtzVideoReceiver::~PtzVideoReceiver() = default;

void PtzVideoReceiver::turnTo(const QString &position)
{
    const QByteArray bytes = position.toUtf8();
    if (!bytes.isEmpty() && bytes.size() <= MaxPositionText && !hasControlCharacter(position))
        send("PTZ MOVE " + bytes);
}

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
        clearPosition();
}

void PtzVideoReceiver::receivePosition(const QString &position)
{
    m_newest = position;
    if (m_pause.isActive())
        return;
    m_pause.start();
    setPosition(position);
}

void PtzVideoReceiver::clearPosition()
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
