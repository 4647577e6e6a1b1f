#pragma once

#include "ui/tasks/CameraLink.h"
#include "ui/tasks/PictureActions.h"
#include "ui/tasks/PictureAudience.h"
#include "ui/tasks/PictureLog.h"
#include "ui/tasks/PictureSource.h"
#include "ui/tasks/PictureStatus.h"
#include "ui/tasks/RecorderLogin.h"
#include "ui/tasks/RetryGesture.h"

#include <QCoreApplication>
#include <QDomElement>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace paravue
{

class ControlContext;

/// What a picture task keeps between its runs: the source of its pictures. The pictures go to the slot
/// setPixmap(QPixmap) of every control whose element has a child with the tag that "target" names. While
/// there are none the controls show why. After a refusal the next source waits (RecorderLogin). A child "ptz"
/// names the tag of the controls of a camera that turns.
class PictureTask
{
    Q_DECLARE_TR_FUNCTIONS(PictureTask)

public:
    /// All must outlive the object. \a makeSource is empty in a window that has no recorder.
    PictureTask(ControlContext &context, const PictureSourceFactory &makeSource,
                const PictureSaver &savePicture, RecorderLogins &logins)
        : m_context(&context), m_makeSource(&makeSource), m_savePicture(&savePicture), m_logins(&logins)
    {
    }

    /// Sets the notice that the controls show until the first run.
    void announce(PictureKind kind, const QDomElement &task);
    /// Fetches pictures for \a task unless its source is active or has to wait. Controls that were built
    /// since the last run are connected too.
    void run(PictureKind kind, const QDomElement &task, quint32 now);
    /// True when the last run had to wait, or the user asks for another attempt: run() is to be called at
    /// the next tick.
    bool isDeferred() const { return m_isDeferred; }
    /// Ends the wait for the next attempt.
    void retry();
    /// Updates the notice of the controls. \a now is the time of the tasks, and \a untilDue the time until
    /// the next run, in milliseconds.
    void poll(quint32 now, quint32 untilDue);
    /// Ends the source while the controls remain.
    void end();
    /// Removes the attributes that run() has set on the element of the task.
    static void forget(const QDomElement &task);

private:
    // A source may be dropped in the middle of its own signal.
    struct DeleteLater {
        void operator()(PictureSource *source) const;
    };

    bool needsSource() const { return !m_source || !m_source->isActive() || m_status.isDead(); }
    bool isWaiting() const { return m_login && m_login->isWaiting() && needsSource(); }
    void begin(PictureKind kind, const QDomElement &task, quint32 now);
    /// Returns those that have come since the last time.
    QList<QWidget *> findTargets(const QDomElement &task);
    void connectTarget(QWidget &target);
    void findCamera(const QDomElement &task);
    QString notice(quint32 untilAttempt) const;
    QString remark() const;
    void setNotice(const QString &text);
    void setRemark(const QString &text);
    void offerRetry(bool isOffered);

    ControlContext *m_context;
    const PictureSourceFactory *m_makeSource;
    const PictureSaver *m_savePicture;
    RecorderLogins *m_logins;
    std::shared_ptr<RecorderLogin> m_login;
    std::unique_ptr<PictureSource, DeleteLater> m_source;
    std::unique_ptr<LoginAttempt> m_attempt; ///< of the source
    std::unique_ptr<CameraLink> m_camera;    ///< of a task with a child "ptz"
    PictureStatus m_status;
    std::optional<PictureLog> m_log; ///< of a live video task
    QString m_notice;
    QString m_remark;
    bool m_isDeferred = false;
    /// Its controls. The source has a reference.
    std::shared_ptr<PictureAudience> m_audience = std::make_shared<PictureAudience>();
    std::unique_ptr<PictureActions> m_actions;            ///< null in a task without pictures
    std::vector<std::unique_ptr<RetryGesture>> m_retries; ///< of the targets, while the task waits
};

} // namespace paravue
