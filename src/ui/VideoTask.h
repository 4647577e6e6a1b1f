#pragma once

#include "ui/PictureReceiver.h"

#include <QDomElement>

#include <memory>

namespace paravue
{

class ActionRunner;
class ControlContext;

/// The part of a video task that outlives one run: its receiver. The pictures go to the slot
/// setPixmap(QPixmap) of every control whose element has a child with the tag that "target" names.
class VideoTask
{
public:
    /// Fetches pictures for \a task, unless they are on their way already. Controls that have come since the
    /// last run get pictures from now on too.
    void run(PictureKind kind, const QDomElement &task, const ReceiverFactory &makeReceiver,
             ControlContext &context, const ActionRunner &actions);
    /// Takes back what run() has noted on the element of the task.
    static void forget(const QDomElement &task);

private:
    // A receiver may be dropped in the middle of its own signal.
    struct DeleteLater {
        void operator()(PictureReceiver *receiver) const;
    };

    std::unique_ptr<PictureReceiver, DeleteLater> m_receiver;
};

} // namespace paravue
