#include "LiveRecording.h"

#include "InfoText.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace paravue
{

namespace
{

constexpr QByteArrayView Accepted("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
constexpr QByteArrayView Refused("LENGTH=19\r\nVORN_ANSWER=ERROR\r\n");

MediaError writeError(const QFile &file)
{
    return MediaError(InfoText::tr("cannot write %1: %2").arg(file.fileName(), file.errorString()));
}

/// One connection, from its beginning to its end.
class LiveRecording
{
public:
    LiveRecording(const VideoAddress &address, const RecordingTimes &times, QFile &file)
        : m_address(address), m_times(times), m_file(file)
    {
        for (QTimer *timer : {&m_silence, &m_whole})
            timer->setSingleShot(true);
        QObject::connect(&m_silence, &QTimer::timeout, &m_loop, [this] { noteSilence(); });
        QObject::connect(&m_whole, &QTimer::timeout, &m_loop, [this] { end({}); });
        QObject::connect(&m_socket, &QTcpSocket::connected, &m_loop, [this] { logIn(); });
        QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_loop, [this] { receive(); });
        QObject::connect(&m_socket, &QTcpSocket::errorOccurred, &m_loop, [this] { fail(); });
    }

    std::optional<MediaError> run()
    {
        m_silence.start(m_times.silence);
        m_socket.connectToHost(m_address.host, m_address.port);
        m_loop.exec();
        if (m_error)
            throw *m_error;
        return m_earlyEnd;
    }

private:
    void logIn()
    {
        m_silence.start(m_times.silence);
        m_socket.write(
            QStringLiteral("\x01LOGIN=%1\r\nPASS=%2\r\n").arg(m_address.login, m_address.password).toUtf8());
    }

    void receive()
    {
        const QByteArray bytes = m_socket.readAll();
        if (m_isAccepted)
            return keep(bytes);
        m_answer += bytes;
        if (m_answer.startsWith(Accepted)) {
            m_isAccepted = true;
            m_whole.start(m_times.duration);
            m_clock.start();
            // Not before, so that a refused login costs no recording that is to be overwritten.
            if (!m_file.open(QIODevice::WriteOnly))
                return end(writeError(m_file));
            keep(m_answer);
        } else if (m_answer.startsWith(Refused)) {
            end(MediaError(InfoText::tr("the recorder has refused the login"), ExitCode::Login));
        } else if (!Accepted.startsWith(m_answer) && !Refused.startsWith(m_answer)) {
            end(MediaError(InfoText::tr("what answers at %1 is not a recorder").arg(m_address.host),
                           ExitCode::BadData));
        }
    }

    void keep(const QByteArray &bytes)
    {
        m_silence.start(m_times.silence);
        if (m_file.write(bytes) != bytes.size())
            end(writeError(m_file));
    }

    void noteSilence()
    {
        const QString limit = QString::number(m_times.silence.count());
        if (m_isAccepted)
            endEarly(InfoText::tr("nothing has come from %1 for %2 s").arg(m_address.host, limit));
        else
            end(MediaError(InfoText::tr("no answer from %1 for %2 s").arg(m_address.host, limit),
                           ExitCode::Network));
    }

    void fail()
    {
        if (m_isAccepted)
            endEarly(InfoText::tr("the connection to %1 has ended").arg(m_address.host));
        else
            end(MediaError(InfoText::tr("no video from %1: %2").arg(m_address.host, m_socket.errorString()),
                           ExitCode::Network));
    }

    void endEarly(const QString &reason)
    {
        m_earlyEnd = MediaError(InfoText::tr("recorded %1 s of %2 s: %3")
                                    .arg(QString::number(m_clock.elapsed() / 1000),
                                         QString::number(m_times.duration.count()), reason),
                                ExitCode::Network);
        m_loop.quit();
    }

    void end(const std::optional<MediaError> &error)
    {
        m_error = error;
        m_loop.quit();
    }

    const VideoAddress m_address;
    const RecordingTimes m_times;
    QFile &m_file;
    QEventLoop m_loop; // outlives what it is the context of
    QTcpSocket m_socket;
    QTimer m_silence;
    QTimer m_whole;
    QElapsedTimer m_clock; ///< of the recording
    QByteArray m_answer;
    bool m_isAccepted = false;
    std::optional<MediaError> m_error;
    std::optional<MediaError> m_earlyEnd;
};

} // namespace

std::optional<VideoAddress> VideoAddress::fromText(const QString &text)
{
    // As in all addresses of recorders, the last "@" and the last ":" before it separate.
    static const QRegularExpression form(QStringLiteral("^(.*):([^:]*)@([^:@/]+)(?::(\\d{1,5}))?$"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return {};
    VideoAddress address{match.captured(3), 5049, match.captured(1), match.captured(2)};
    if (match.hasCaptured(4)) {
        const int port = match.captured(4).toInt();
        if (port < 1 || port > 65535)
            return {};
        address.port = quint16(port);
    }
    return address;
}

std::optional<MediaError> recordLive(const VideoAddress &address, const RecordingTimes &times,
                                     const QString &file)
{
    QFile output(file);
    const auto earlyEnd = LiveRecording(address, times, output).run();
    if (!output.flush())
        throw writeError(output);
    return earlyEnd;
}

} // namespace paravue
