#include "recorder/clients/HttpClient.h"

#include "recorder/clients/HttpAccess.h"
#include "recorder/device/ConfigService.h"
#include "recorder/protocol/LogText.h"
#include "recorder/video/VideoService.h"

#include <QDateTime>
#include <QLocale>

namespace recorder
{

namespace
{

constexpr int HeadTimeout = 10 * 1000;
/// The limit for a client that does not read the answer.
constexpr int StuckPageTimeout = 10 * 1000;

QByteArray presentTime()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    return QLocale::c().toString(now, QStringLiteral("ddd, dd MMM yyyy hh:mm:ss")).toLatin1() + " GMT";
}

} // namespace

HttpClient::HttpClient(QTcpSocket *socket, const ConfigService &accounts, HttpAccess &access,
                       VideoService &video, const ConnectionTiming &timing, QObject *parent)
    : Client(socket, parent), m_accounts(accounts), m_access(access), m_video(&video), m_timing(timing)
{
    m_timeout.start(HeadTimeout);
    connect(m_socket, &QTcpSocket::readyRead, this, &HttpClient::process);
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] {
        m_timeout.start(m_socket->bytesToWrite() > 0 ? StuckPageTimeout : m_timing.drainTimeout);
    });
}

void HttpClient::expired()
{
    if (m_isAnswered)
        close();
    else
        send(plain("408 Request Timeout"), true, true);
}

void HttpClient::process()
{
    QByteArray piece;
    while (!(piece = m_socket->read(ReadPiece)).isEmpty()) {
        if (m_isAnswered)
            continue;
        // The empty line may have come in two pieces.
        const qsizetype from = std::max<qsizetype>(0, m_head.size() - 3);
        m_head += piece;
        const qsizetype end = m_head.indexOf("\r\n\r\n", from);
        if (end > MaxHead || (end < 0 && m_head.size() > MaxHead)) {
            Q_EMIT logged(QStringLiteral("< a request that does not end"));
            send(plain("431 Request Header Fields Too Large"), true, false);
        } else if (end >= 0) {
            answer(m_head.left(end + 4));
        }
    }
}

void HttpClient::answer(const QByteArray &head)
{
    Q_EMIT logged(QStringLiteral("< ") + readableRequest(head.left(head.indexOf('\r'))));
    const bool isAll = head.size() == m_head.size();
    const std::optional<HttpRequest> request = parseHttpRequest(head);
    if (request)
        send(respond(*request), request->method != "HEAD", isAll && !request->hasBody());
    else
        send(plain("400 Bad Request"), true, isAll);
}

HttpClient::Response HttpClient::respond(const HttpRequest &request)
{
    if (request.method != "GET" && request.method != "HEAD")
        return plain("405 Method Not Allowed", {"Allow: GET, HEAD"});
    if (request.path() == "/snapshot.jpg")
        return picture(request, &VideoService::snapshot);
    if (request.path() == "/overview.jpg")
        return picture(request, &VideoService::overview);
    return plain("404 Not Found");
}

HttpClient::Response HttpClient::picture(const HttpRequest &request, Picture take)
{
    const HttpAccess::Verdict verdict = m_access.check(request, m_accounts.accounts());
    if (!verdict.account) {
        QList<QByteArray> fields;
        for (const QByteArray &challenge : m_access.challenges(verdict.isStale))
            fields.append("WWW-Authenticate: " + challenge);
        return plain("401 Unauthorized", fields);
    }
    m_account = verdict.account;
    const QByteArray bytes = m_video ? (*m_video.*take)() : QByteArray();
    if (bytes.isEmpty())
        return plain("503 Service Unavailable");
    return {"200 OK", {"Cache-Control: no-store", "Last-Modified: " + presentTime()}, "image/jpeg", bytes};
}

HttpClient::Response HttpClient::plain(const QByteArray &status, const QList<QByteArray> &fields)
{
    return {status, fields, "text/plain; charset=utf-8", status + "\n"};
}

/// Closing while there is unread input would reset the connection, and the answer might be lost.
void HttpClient::send(const Response &response, bool withBody, bool canClose)
{
    m_isAnswered = true;
    Q_EMIT logged(QStringLiteral("> ") + QString::fromLatin1(response.status) +
                  (m_account ? QStringLiteral(" for ") + readableBody(m_account->name) : QString()));
    QList<QByteArray> lines = {"HTTP/1.1 " + response.status, "Date: " + presentTime()};
    lines += response.fields;
    lines += {"Content-Type: " + response.type, "Content-Length: " + QByteArray::number(response.body.size()),
              "Connection: close"};
    const QByteArray bytes = lines.join("\r\n") + "\r\n\r\n" + (withBody ? response.body : QByteArray());
    m_timeout.stop();
    QTimer::singleShot(m_timing.replyDelay, this, [this, bytes, canClose] {
        m_timeout.start(StuckPageTimeout);
        m_socket->write(bytes);
        if (canClose)
            m_socket->disconnectFromHost();
    });
}

} // namespace recorder
