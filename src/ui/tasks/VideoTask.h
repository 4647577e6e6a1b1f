#pragma once

#include "ui/tasks/CameraLink.h"
#include "ui/tasks/PictureReceiver.h"
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

/// The part of a video task that outlives one run: its receiver. The pictures go to the slot
/// setPixmap(QPixmap) of every control whose element has a child with the tag that "target" names. While none
/// comes the controls say why. A child "ptz" names the tag of the controls of a camera that turns.
class VideoTask
{
    Q_DECLARE_TR_FUNCTIONS(VideoTask)

public:
    /// Both must outlive the object. \a makeReceiver is empty in a window that has no recorder.
    VideoTask(ControlContext &context, const ReceiverFactory &makeReceiver)
        : m_context(&context), m_makeReceiver(&makeReceiver)
    {
    }

    /// What the controls say until the first run.
    void announce(const QDomElement &task);
    /// Fetches pictures for \a task, unless they are on their way already. Controls that have come since the
    /// last run get pictures from now on too.
    void run(PictureKind kind, const QDomElement &task, quint32 now);
    /// Brings what the controls say up to date. \a now is the time of the tasks in milliseconds.
    void look(quint32 now);
    /// The task ends before its controls do.
    void end();
    /// Takes back what run() has noted on the element of the task.
    static void forget(const QDomElement &task);

private:
    // A receiver may be dropped in the middle of its own signal.
    struct DeleteLater {
        void operator()(PictureReceiver *receiver) const;
    };

    /// Returns those that have come since the last time.
    QList<QWidget *> findTargets(const QDomElement &task);
    void connectTarget(QWidget &target);
    void findCamera(const QDomElement &task);
    void say(const QString &text);

    ControlContext *m_context;
    const ReceiverFactory *m_makeReceiver;
    std::unique_ptr<PictureReceiver, DeleteLater> m_receiver;
    std::unique_ptr<CameraLink> m_camera; ///< of a task with a child "ptz"
    PictureStatus m_status;
    QString m_said;
    QList<QPointer<QWidget>> m_targets;
};

} // namespace paravue
