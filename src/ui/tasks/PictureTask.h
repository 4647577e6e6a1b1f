#pragma once

#include "ui/tasks/CameraLink.h"
#include "ui/tasks/PictureSource.h"
#include "ui/tasks/PictureStatus.h"

#include <QCoreApplication>
#include <QDomElement>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <memory>

namespace paravue
{

class ControlContext;

/// What a picture task keeps between its runs: the source of its pictures. The pictures go to the slot
/// setPixmap(QPixmap) of every control whose element has a child with the tag that "target" names. While
/// there are none the controls show why. A child "ptz" names the tag of the controls of a camera that turns.
class PictureTask
{
    Q_DECLARE_TR_FUNCTIONS(PictureTask)

public:
    /// Both must outlive the object. \a makeSource is empty in a window that has no recorder.
    PictureTask(ControlContext &context, const PictureSourceFactory &makeSource)
        : m_context(&context), m_makeSource(&makeSource)
    {
    }

    /// Sets the notice that the controls show until the first run.
    void announce(const QDomElement &task);
    /// Fetches pictures for \a task unless its source is active. Controls that were built since the last run
    /// are connected too.
    void run(PictureKind kind, const QDomElement &task, quint32 now);
    /// Updates the notice of the controls. \a now is the time of the tasks in milliseconds.
    void poll(quint32 now);
    /// Ends the source while the controls remain.
    void end();
    /// Removes the attributes that run() has set on the element of the task.
    static void forget(const QDomElement &task);

private:
    // A source may be dropped in the middle of its own signal.
    struct DeleteLater {
        void operator()(PictureSource *source) const;
    };

    /// Returns those that have come since the last time.
    QList<QWidget *> findTargets(const QDomElement &task);
    void connectTarget(QWidget &target);
    void findCamera(const QDomElement &task);
    void setNotice(const QString &text);

    ControlContext *m_context;
    const PictureSourceFactory *m_makeSource;
    std::unique_ptr<PictureSource, DeleteLater> m_source;
    std::unique_ptr<CameraLink> m_camera; ///< of a task with a child "ptz"
    PictureStatus m_status;
    QString m_notice;
    QList<QPointer<QWidget>> m_targets;
};

} // namespace paravue
