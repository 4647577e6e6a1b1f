#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDomElement>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPixmap>
#include <QTimer>

#include <chrono>

class QAuthenticator;

namespace paravue
{

/// Fetches one still picture (JPEG) over HTTP, with Basic or Digest authentication.
///
/// The request begins with the construction and ends with finished(), behind pixmapReady() when there is a
/// picture. A refused login is not tried again. At most three redirections are followed, to http and https
/// only, and the login is sent to the first host only. Answers of more than 8 MiB are refused.
class HttpPictureReceiver : public QObject
{
    Q_OBJECT

public:
    /// \a task has a child "url" with the attributes "parsed" (see PictureUrl.h), "login" and "password".
    HttpPictureReceiver(QObject *parent, const QDomElement &task);
    ~HttpPictureReceiver() override;

    /// The longest silence of the recorder (10 s) and the longest time of the whole request (30 s).
    void setTimeLimits(std::chrono::milliseconds silence, std::chrono::milliseconds whole);

    bool isFinished() const { return m_isFinished; }
    /// Why there is no picture, for the user; empty otherwise. Never contains login or password.
    QString problem() const { return m_problem; }
    /// True when the recorder has refused the login, or has closed the connection without a whole answer.
    bool isRefused() const { return m_isRefused; }
    /// When the picture was taken, as far as the recorder says: its exifTime(), or else the answer's
    /// Last-Modified. Not valid when it has neither.
    QDateTime pictureTime() const { return m_pictureTime; }

Q_SIGNALS:
    void pixmapReady(const QPixmap &pixmap);
    void finished();

private:
    void request(const QUrl &url);
    void receive();
    void answerLogin(QAuthenticator *authenticator);
    void follow(const QUrl &target);
    void end(const QString &problem);
    void finish();
    void releaseConnection();
    static bool isRefusal(QNetworkReply::NetworkError error);
    QString problemOf(QNetworkReply::NetworkError error) const;

    QNetworkAccessManager m_network;
    QNetworkReply *m_reply = nullptr; // a child of the manager
    QTimer m_silence;
    QTimer m_whole;
    QUrl m_source;
    QString m_login;
    QString m_password;
    QByteArray m_answer;
    QDateTime m_pictureTime;
    QString m_problem;
    int m_redirections = 0;
    bool m_hasLoggedIn = false;
    bool m_isFinished = false;
    bool m_isRefused = false;
};

} // namespace paravue
