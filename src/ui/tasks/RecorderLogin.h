#pragma once

#include <QString>
#include <QtGlobal>

#include <map>
#include <memory>
#include <tuple>

namespace paravue
{

class LoginAttempt;
class PictureSource;
class PictureStatus;
enum class PictureKind;

/// Whom a picture task logs in to, and as whom.
struct RecorderAccount {
    QString recorder; ///< host and port
    QString login;
    QString password;

    /// \a parsed, \a login and \a password are the attributes of a picture task (see PictureSourceFactory).
    static RecorderAccount of(PictureKind kind, const QString &parsed, const QString &login,
                              const QString &password);
    bool operator<(const RecorderAccount &other) const
    {
        return std::tie(recorder, login, password) < std::tie(other.recorder, other.login, other.password);
    }
};

/// When the picture tasks of a window may log in with one account. Recorders lock an account after a few
/// refused logins, so each refusal doubles the wait for the next attempt (1 to 60 seconds), and until a login
/// was accepted only one task at a time makes an attempt. A picture ends all that. Times are in milliseconds
/// and wrap around.
class RecorderLogin
{
public:
    bool mayBegin(quint32 now) const { return remaining(now) == 0 && (m_isAccepted || !m_running); }
    /// True from a refusal to the next attempt.
    bool isWaiting() const { return m_isWaiting; }
    quint32 remaining(quint32 now) const;
    /// What was wrong at the last refusal, for the user; empty after a picture.
    QString problem() const { return m_problem; }
    /// The user asks for an attempt at once. The next wait is not shorter for that.
    void endWait() { m_isWaiting = false; }

private:
    friend class LoginAttempt;

    void refuse(const QString &problem, quint32 now);
    void startOver();

    quint32 m_wait = 0; ///< the last one; 0: none since the last picture
    quint32 m_refusedAt = 0;
    QString m_problem;
    unsigned m_round = 0; ///< of attempts; a refusal begins another
    bool m_isWaiting = false;
    bool m_isAccepted = false;
    const LoginAttempt *m_running = nullptr; ///< without an outcome so far
};

/// One source's use of a login, from its construction to the end of the source.
class LoginAttempt
{
public:
    explicit LoginAttempt(std::shared_ptr<RecorderLogin> login);
    ~LoginAttempt();
    Q_DISABLE_COPY_MOVE(LoginAttempt)

    /// Notices the outcome. \a status is that of the source.
    void poll(const PictureSource &source, const PictureStatus &status, quint32 now);

private:
    void settle();
    void notePictures(const PictureSource &source);
    void noteEnd(const PictureSource &source, const PictureStatus &status, quint32 now);

    const std::shared_ptr<RecorderLogin> m_login;
    const unsigned m_round;
    bool m_isAccepted = false;
    bool m_hasPicture = false;
    bool m_isOver = false;
};

/// The logins that the tasks of one window use. One that no task uses any more is forgotten.
class RecorderLogins
{
public:
    std::shared_ptr<RecorderLogin> find(const RecorderAccount &account);

private:
    std::map<RecorderAccount, std::weak_ptr<RecorderLogin>> m_logins;
};

} // namespace paravue
