#pragma once

#include "recorder/clients/Client.h"
#include "recorder/protocol/ConnectionTiming.h"
#include "recorder/protocol/InputBuffer.h"
#include "recorder/video/VideoService.h"

#include <QPointer>
#include <QTimer>

namespace recorder
{

class ConfigService;
struct Answer;

/// A client of the video service. It logs in with two lines, the first of which has a byte 0x01 in front, and
/// watches from then on; it may send lines that move the camera, if its account may.
///
/// One that does not take the stream misses pictures, and is dropped when it takes nothing for long.
class VideoClient : public Client
{
    Q_OBJECT

public:
    VideoClient(QTcpSocket *socket, const ConfigService &accounts, VideoService &video,
                const ConnectionTiming &timing, QObject *parent);

    void start() override { process(); }

private:
    enum class State { AwaitLogin, AwaitPassword, Answering, Watching, Drain };

    void process();
    bool readMore();
    bool step();
    void handleLine(const QByteArray &line);
    void handleCommand(const QByteArray &line);
    void finishLogin(const QByteArray &line);
    void answerLogin(const Answer &answer);
    void refuse(const Answer &answer);
    void enter(State state);
    void expired();

    const ConfigService &m_accounts;
    QPointer<VideoService> m_video;
    const ConnectionTiming &m_timing; // that of the server
    State m_state = State::AwaitLogin;
    QTimer m_patience;
    InputBuffer m_input;
    QByteArray m_loginName;
    bool m_mayTurnCameras = false;
    int m_ignored = 0; // lines
    std::shared_ptr<VideoSink> m_sink;
};

} // namespace recorder
