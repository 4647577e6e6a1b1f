#include "video/HttpPictureReceiver.h"

#include "video/ExifTime.h"
#include "video/PictureUrl.h"
#include "video/StillPicture.h"
#include "video/VideoLimits.h"

#include <QAuthenticator>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkRequest>

#include <utility>

using namespace std::chrono_literals;

namespace paravue
{
namespace
{

constexpr int MostRedirections = 3;

bool isThisComputer(const QUrl &url)
{
    return url.host() == QLatin1String("localhost") || QHostAddress(url.host()).isLoopback();
}

bool isSameHost(const QUrl &a, const QUrl &b)
{
    return a.host() == b.host() && a.port(-1) == b.port(-1) && a.scheme() == b.scheme();
}

/// Date is no such time: it says when the answer was sent, perhaps with a picture that was kept.
QDateTime timeOf(const QNetworkReply &reply, const QByteArray &jpeg)
{
    const QDateTime taken = exifTime(jpeg);
    return taken.isValid() ? taken : reply.header(QNetworkRequest::LastModifiedHeader).toDateTime();
}

QNetworkRequest pictureRequest(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setRawHeader("Accept", "image/jpeg");
    // Not compressed: a few compressed bytes can become gigabytes.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // Followed by this class: Qt follows those that it asks about without a limit.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

} // namespace

HttpPictureReceiver::HttpPictureReceiver(QObject *parent, const QDomElement &task) : QObject(parent)
{
    const QDomElement source = task.firstChildElement(QStringLiteral("url"));
    m_login = source.attribute(QStringLiteral("login"));
    m_password = source.attribute(QStringLiteral("password"));
    for (QTimer *timer : {&m_silence, &m_whole}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] { end(tr("No answer in time")); });
    }
    setTimeLimits(10s, 30s);
    m_source = pictureUrl(source.attribute(QStringLiteral("parsed")));
    if (!m_source.isValid()) {
        end(tr("Wrong address of the picture"));
        return;
    }
    if (m_login.isEmpty()) {
        m_login = m_source.userName();
        m_password = m_source.password();
    }
    m_source.setUserInfo({});
    connect(&m_network, &QNetworkAccessManager::authenticationRequired, this,
            [this](QNetworkReply *, QAuthenticator *authenticator) { answerLogin(authenticator); });
    request(m_source);
}

HttpPictureReceiver::~HttpPictureReceiver()
{
    if (m_reply)
        m_reply->disconnect(this);
}

void HttpPictureReceiver::setTimeLimits(std::chrono::milliseconds silence, std::chrono::milliseconds whole)
{
    m_silence.start(silence);
    m_whole.start(whole);
}

void HttpPictureReceiver::request(const QUrl &url)
{
    // A proxy may be on another computer, where this address means something else.
    m_network.setProxy(isThisComputer(url) ? QNetworkProxy::NoProxy : QNetworkProxy::DefaultProxy);
    m_reply = m_network.get(pictureRequest(url));
    m_reply->setReadBufferSize(MaxStillBytes + 1);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpPictureReceiver::receive);
    connect(m_reply, &QNetworkReply::finished, this, &HttpPictureReceiver::finish);
}

void HttpPictureReceiver::answerLogin(QAuthenticator *authenticator)
{
    // An authenticator without a login ends the request as refused. With an empty one some methods would send
    // the login of the desktop.
    if (m_hasLoggedIn || m_login.isEmpty() || !isSameHost(m_reply->url(), m_source))
        return;
    m_hasLoggedIn = true;
    authenticator->setUser(m_login);
    authenticator->setPassword(m_password);
}

void HttpPictureReceiver::follow(const QUrl &target)
{
    const bool isSecure = target.scheme() == QLatin1String("https");
    const bool wasSecure = m_reply->url().scheme() == QLatin1String("https");
    const bool isAllowed = isSecure || (!wasSecure && target.scheme() == QLatin1String("http"));
    if (!isAllowed || ++m_redirections > MostRedirections)
        return end(tr("Picture not at this address"));
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_answer.clear();
    request(target.adjusted(QUrl::RemoveUserInfo));
}

void HttpPictureReceiver::receive()
{
    if (m_reply->bytesAvailable() + m_answer.size() > MaxStillBytes)
        return end(tr("Picture too large"));
    m_answer += m_reply->readAll();
    m_silence.start();
}

void HttpPictureReceiver::end(const QString &problem)
{
    if (m_isFinished)
        return;
    m_isFinished = true;
    m_problem = problem;
    m_silence.stop();
    m_whole.stop();
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    m_answer.clear();
    // Queued: in the constructor nobody is connected yet, and the reply may be emitting a signal.
    QMetaObject::invokeMethod(this, &HttpPictureReceiver::releaseConnection, Qt::QueuedConnection);
}

/// The next picture may be wanted in an hour, so neither the connection nor the network thread is kept.
void HttpPictureReceiver::releaseConnection()
{
    if (m_reply)
        std::exchange(m_reply, nullptr)->deleteLater();
    m_network.clearConnectionCache();
    Q_EMIT finished();
}

void HttpPictureReceiver::finish()
{
    if (m_reply->error() != QNetworkReply::NoError) {
        m_isRefused = isRefusal(m_reply->error());
        return end(problemOf(m_reply->error()));
    }
    receive();
    if (m_isFinished)
        return;
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!target.isEmpty())
        return follow(m_reply->url().resolved(target));
    const QImage picture = decodeStillPicture(m_answer);
    if (picture.isNull())
        return end(tr("Not a picture"));
    m_pictureTime = timeOf(*m_reply, m_answer);
    end({});
    Q_EMIT pixmapReady(QPixmap::fromImage(picture));
}

bool HttpPictureReceiver::isRefusal(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::AuthenticationRequiredError ||
           error == QNetworkReply::ContentAccessDenied || error == QNetworkReply::RemoteHostClosedError;
}

QString HttpPictureReceiver::problemOf(QNetworkReply::NetworkError error) const
{
    switch (error) {
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentAccessDenied:
        return tr("Login refused");
    case QNetworkReply::RemoteHostClosedError:
        return tr("Connection lost");
    case QNetworkReply::SslHandshakeFailedError:
        return tr("Certificate not trusted");
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::ContentGoneError:
        return tr("Picture not at this address");
    default:
        break;
    }
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status >= 400 ? tr("Recorder reports error %1").arg(status) : tr("No connection");
}

} // namespace paravue
