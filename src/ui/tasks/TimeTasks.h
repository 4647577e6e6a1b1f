#pragma once

#include "ui/base/ElementRules.h"
#include "ui/tasks/PictureTask.h"
#include "ui/tasks/RecorderLogin.h"

#include <QDomElement>
#include <QList>

#include <functional>
#include <optional>
#include <vector>

namespace paravue
{

class ActionRunner;
class ControlContext;

/// The periodic tasks of the description, "timetask" children of the window and of dialogs.
///
/// A task runs at the first tick at which more than its "period" has passed since it was registered or has
/// last run, and once per tick at most. The attribute "ms" of its element holds that time. Type "call" is a
/// call action, "v3getjpeg" and "startVideoOnline" fetch still and live pictures.
class TimeTasks
{
public:
    /// The present time in milliseconds; it may begin anywhere and wraps around.
    using Clock = std::function<quint32()>;

    TimeTasks(ControlContext &context, ActionRunner &actions);

    /// The attributes of a task, and the pictures that a task of this type fetches, if it does.
    static const ElementRule &rule();
    static std::optional<PictureKind> pictureKind(const QString &type);

    /// What saves the pictures of tasks that are added later.
    void setPictureSaver(const PictureSaver &saver) { m_savePicture = saver; }

    /// Restarts the period of the registered tasks. The default is a monotonic clock.
    void setClock(const Clock &clock);
    /// Without one the controls for pictures show that a preview has none.
    void setSourceFactory(const PictureSourceFactory &factory) { m_makeSource = factory; }

    /// Registers the tasks of a window or dialog and returns those that were not registered yet; the caller
    /// removes them.
    QList<QDomElement> add(const QDomElement &owner);
    void remove(const QList<QDomElement> &elements);
    void clear();

    /// Lets all tasks whose pictures wait for another attempt make it now.
    void retryPictures();
    /// Runs the tasks whose time has come, and those whose pictures had to wait for a login. A task may open
    /// a dialog, in which further ticks happen.
    void tick();

private:
    struct Task {
        QDomElement element;
        PictureTask video;
    };

    void start(QDomElement element) const;
    /// How long it is until \a element is to run; 0 when it is due.
    quint32 untilDue(const QDomElement &element) const;
    bool isToRun(const Task &task) const;
    Task *find(const QDomElement &element);
    void run(const QDomElement &element, PictureTask &video);

    ControlContext &m_context;
    ActionRunner &m_actions;
    Clock m_clock;
    PictureSourceFactory m_makeSource;
    PictureSaver m_savePicture;
    RecorderLogins m_logins;
    std::vector<Task> m_tasks;
};

} // namespace paravue
