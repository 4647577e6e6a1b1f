#pragma once

#include "recorder/clients/LoginClient.h"
#include "recorder/protocol/ConnectionTiming.h"
#include "recorder/video/VideoService.h"

#include <QPointer>

namespace recorder
{

/// A client of the video service. It logs in with two lines, the first of which has a byte 0x01 in front, and
/// watches from then on; it may send lines that move the camera, if its account may.
///
/// One that does not take the stream misses pictures, and is dropped when it takes nothing for long.
class VideoClient : public LoginClient
{
    Q_OBJECT

public:
    VideoClient(QTcpSocket *socket, const ConfigService &accounts, VideoService &video,
                const ConnectionTiming &timing, QObject *parent);

private:
    bool canRead() const override { return !m_isAnswering; }
    void handleLine(const QByteArray &line) override;
    void handleCommand(const QByteArray &line);
    void answerLogin() override;
    void answer(const Answer &answer) override;
    void beginService() override;
    void expired() override;

    QPointer<VideoService> m_video;
    const ConnectionTiming &m_timing; // that of the server
    bool m_isAnswering = false;       // the answer to the login is held back
    bool m_mayTurnCameras = false;
    int m_ignored = 0; // lines
    std::shared_ptr<VideoSink> m_sink;
};

} // namespace recorder
