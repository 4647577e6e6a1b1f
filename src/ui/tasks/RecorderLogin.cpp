#include "ui/tasks/RecorderLogin.h"

#include "ui/tasks/PictureSource.h"
#include "ui/tasks/PictureStatus.h"
#include "video/PictureUrl.h"

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

constexpr quint32 FirstWait = 1'000; // milliseconds
constexpr quint32 LongestWait = 60'000;
constexpr int VideoPort = 5049;

int usualPort(PictureKind kind, const QUrl &url)
{
    if (kind == PictureKind::Live)
        return VideoPort;
    return url.scheme() == QLatin1String("https") ? 443 : 80;
}

} // namespace

RecorderAccount RecorderAccount::of(PictureKind kind, const QString &parsed, const QString &login,
                                    const QString &password)
{
    const QUrl url = pictureUrl(parsed);
    if (!url.isValid())
        return {parsed, login, password};
    const QString recorder = url.host() + u':' + QString::number(url.port(usualPort(kind, url)));
    if (kind == PictureKind::Still && login.isEmpty())
        return {recorder, url.userName(), url.password()};
    return {recorder, login, password};
}

quint32 RecorderLogin::remaining(quint32 now) const
{
    const quint32 elapsed = now - m_refusedAt;
    return m_isWaiting && elapsed < m_wait ? m_wait - elapsed : 0;
}

void RecorderLogin::refuse(const QString &problem, quint32 now)
{
    ++m_round;
    m_wait = std::clamp(2 * m_wait, FirstWait, LongestWait);
    m_refusedAt = now;
    m_isWaiting = true;
    m_problem = problem;
}

void RecorderLogin::startOver()
{
    m_wait = 0;
    m_isWaiting = false;
    m_problem.clear();
}

LoginAttempt::LoginAttempt(std::shared_ptr<RecorderLogin> login)
    : m_login(std::move(login)), m_round(m_login->m_round)
{
    m_login->m_isWaiting = false;
    if (!m_login->m_isAccepted)
        m_login->m_running = this;
}

LoginAttempt::~LoginAttempt()
{
    settle();
}

void LoginAttempt::settle()
{
    if (m_login->m_running == this)
        m_login->m_running = nullptr;
}

void LoginAttempt::poll(const PictureSource &source, const PictureStatus &status, quint32 now)
{
    notePictures(source);
    if (!m_isOver && (status.isDead() || !source.isActive()))
        noteEnd(source, status, now);
}

void LoginAttempt::notePictures(const PictureSource &source)
{
    if (!m_isAccepted && source.isAccepted()) {
        m_isAccepted = true;
        m_login->m_isAccepted = true;
        settle();
    }
    if (!m_hasPicture && source.pictures() > 0) {
        m_hasPicture = true;
        m_login->startOver();
    }
}

void LoginAttempt::noteEnd(const PictureSource &source, const PictureStatus &status, quint32 now)
{
    m_isOver = true;
    settle();
    // What was accepted so far may be refused after the recorder was away. Only a still picture is complete
    // when it ends.
    if (!m_hasPicture || source.hasConnected())
        m_login->m_isAccepted = false;
    // Of attempts that were under way together only the first refusal counts.
    if (!m_hasPicture && (status.isDead() || source.isRefused()) && m_round == m_login->m_round)
        m_login->refuse(status.text(), now);
}

std::shared_ptr<RecorderLogin> RecorderLogins::find(const RecorderAccount &account)
{
    std::erase_if(m_logins, [](const auto &entry) { return entry.second.expired(); });
    std::weak_ptr<RecorderLogin> &known = m_logins[account];
    std::shared_ptr<RecorderLogin> login = known.lock();
    if (!login)
        known = login = std::make_shared<RecorderLogin>();
    return login;
}

} // namespace paravue
