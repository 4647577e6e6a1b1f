#pragma once

#include "recorder/clients/Client.h"
#include "recorder/clients/HttpRequest.h"
#include "recorder/protocol/ConnectionTiming.h"

#include <QPointer>

namespace recorder
{

class ConfigService;
class HttpAccess;
class VideoService;

/// An HTTP/1.1 client. It gets one answer and is disconnected. /snapshot.jpg is the present picture,
/// /overview.jpg one of everything that the camera can turn to; both need a login.
class HttpClient : public Client
{
    Q_OBJECT

public:
    /// The limit for the head of a request, in bytes.
    static constexpr qsizetype MaxHead = 8 * 1024;

    HttpClient(QTcpSocket *socket, const ConfigService &accounts, HttpAccess &access, VideoService &video,
               const ConnectionTiming &timing, QObject *parent);

    void start() override { process(); }

private:
    struct Response {
        QByteArray status; ///< such as "200 OK"
        QList<QByteArray> fields;
        QByteArray type = "text/plain; charset=utf-8";
        QByteArray body;
    };

    using Picture = QByteArray (VideoService::*)() const;

    void process();
    void expired() override;
    void answer(const QByteArray &head);
    Response respond(const HttpRequest &request);
    Response picture(const HttpRequest &request, Picture take);
    void send(const Response &response, bool withBody, bool canClose);
    static Response plain(const QByteArray &status, const QList<QByteArray> &fields = {});

    const ConfigService &m_accounts;
    HttpAccess &m_access;
    QPointer<VideoService> m_video;
    const ConnectionTiming &m_timing; // that of the server
    QByteArray m_head;
    bool m_isAnswered = false;
};

} // namespace recorder
