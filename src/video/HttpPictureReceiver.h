#pragma once

#include <QByteArray>
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
/// The request begins with the construction and ends with finished(), behind pixmapReady() when a picture has
/// come. A login that was refused is not tried again. Redirections are followed three times at most, to http
/// and https only, and the login goes to the host that was asked at first only. Answers of more than 8 MiB
/// are cut off.
class HttpPictureReceiver : public QObject
{
    Q_OBJECT

public:
    /// \a task has a child "url" with the attributes "parsed" (see PictureUrl.h), "login" and "password".
    HttpPictureReceiver(QObject *parent, const QDomElement &task);
    ~HttpPictureReceiver() override;

    /// How long the recorder may send nothing (10 s), and how long all may take (30 s).
    void setTimeLimits(std::chrono::milliseconds silence, std::chrono::milliseconds whole);

    bool isFinished() const { return m_isFinished; }
    /// Why no picture has come, in a few words for the user; empty until then. Never holds login or password.
    QString problem() const { return m_problem; }

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
    void letGo();
    QString problemOf(QNetworkReply::NetworkError error) const;

    QNetworkAccessManager m_network;
    QNetworkReply *m_reply = nullptr; // a child of the manager
    QTimer m_silence;
    QTimer m_whole;
    QUrl m_source;
    QString m_login;
    QString m_password;
    QByteArray m_answer;
    QString m_problem;
    int m_redirections = 0;
    bool m_hasLoggedIn = false;
    bool m_isFinished = false;
};

} // namespace paravue
