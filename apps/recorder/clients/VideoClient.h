#pragma once

#include "recorder/clients/LoginClient.h"
#include "recorder/protocol/ConnectionTiming.h"
#include "recorder/video/VideoService.h"

#include <QPointer>

namespace recorder
{

/// A client of the video service. It logs in with two lines, the first of which begins with a byte 0x01, and
/// then receives the stream. It may send commands for the camera, if its account may turn cameras.
///
/// A client that reads too slowly misses pictures; one that stops reading is disconnected.
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
    bool m_isAnswering = false; // the answer to the login waits for the reply delay
    bool m_mayTurnCameras = false;
    int m_ignored = 0; // lines
    std::shared_ptr<VideoSink> m_sink;
};

} // namespace recorder
