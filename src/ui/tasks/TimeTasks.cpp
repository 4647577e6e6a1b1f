#include "ui/tasks/TimeTasks.h"

#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/ControlContext.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace paravue
{
namespace
{

const QString taskTag = QStringLiteral("timetask");
const QString typeAttribute = QStringLiteral("type");
const QString lastRunAttribute = QStringLiteral("ms");
const QString periodAttribute = QStringLiteral("period");

// Not clock() of the C library: processor time hardly advances while a window waits.
quint32 steadyMilliseconds()
{
    using namespace std::chrono;
    return quint32(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

/// Deliberate: unsigned, so a negative period practically never ends.
quint32 period(const QDomElement &element)
{
    const qlonglong written = element.attribute(periodAttribute).toLongLong();
    return quint32(std::min<qlonglong>(written, std::numeric_limits<quint32>::max()));
}

} // namespace

TimeTasks::TimeTasks(ControlContext &context, ActionRunner &actions)
    : m_context(context), m_actions(actions), m_clock(steadyMilliseconds)
{
}

void TimeTasks::setClock(const Clock &clock)
{
    m_clock = clock;
    for (const Task &task : m_tasks)
        start(task.element);
}

const ElementRule &TimeTasks::rule()
{
    static const ElementRule rule{
        taskTag,
        {{typeAttribute, AttributeRule::Text, {"call", "v3getjpeg", "startVideoOnline"}},
         {periodAttribute},
         {"slot", AttributeRule::Text},
         {"param", AttributeRule::Text}},
        {"url", "target", "login", "password", "ptz"}};
    return rule;
}

std::optional<PictureKind> TimeTasks::pictureKind(const QString &type)
{
    if (type == QLatin1String("v3getjpeg"))
        return PictureKind::Still;
    if (type == QLatin1String("startVideoOnline"))
        return PictureKind::Live;
    return {};
}

QList<QDomElement> TimeTasks::add(const QDomElement &owner)
{
    QList<QDomElement> added;
    for (QDomElement element = owner.firstChildElement(taskTag); !element.isNull();
         element = element.nextSiblingElement(taskTag)) {
        if (find(element))
            continue;
        if (m_tasks.size() >= limits::TimeTasks) {
            m_context.reportOnce(WindowText::tr("The interface description has more than %1 time tasks")
                                     .arg(QString::number(limits::TimeTasks)));
            break;
        }
        start(element);
        m_tasks.push_back({element, PictureTask(m_context, m_makeSource, m_savePicture, m_logins)});
        if (const auto kind = pictureKind(element.attribute(typeAttribute)))
            m_tasks.back().video.announce(*kind, element);
        added.append(element);
    }
    return added;
}

void TimeTasks::remove(const QList<QDomElement> &elements)
{
    for (const QDomElement &element : elements) {
        PictureTask::forget(element);
        if (Task *task = find(element))
            task->video.end();
        std::erase_if(m_tasks, [&](const Task &task) { return task.element == element; });
    }
}

void TimeTasks::clear()
{
    m_tasks.clear();
}

void TimeTasks::retryPictures()
{
    for (Task &task : m_tasks)
        task.video.retry();
}

void TimeTasks::tick()
{
    QList<QDomElement> due;
    for (Task &task : m_tasks) {
        task.video.poll(m_clock(), untilDue(task.element));
        if (isToRun(task))
            due.append(task.element);
    }
    for (const QDomElement &element : std::as_const(due)) {
        // Looked up again: a task that ran before may have removed this one, or opened a dialog during which
        // it ran.
        Task *task = find(element);
        if (!task || !isToRun(*task))
            continue;
        start(element);
        const UnattendedScope unattended(m_context, true);
        run(element, task->video);
    }
}

void TimeTasks::start(QDomElement element) const
{
    element.setAttribute(lastRunAttribute, m_clock());
}

quint32 TimeTasks::untilDue(const QDomElement &element) const
{
    const quint32 elapsed = m_clock() - element.attribute(lastRunAttribute).toUInt();
    const quint32 whole = period(element);
    return elapsed > whole ? 0 : std::max<quint32>(whole - elapsed, 1);
}

bool TimeTasks::isToRun(const Task &task) const
{
    return task.video.isDeferred() || untilDue(task.element) == 0;
}

TimeTasks::Task *TimeTasks::find(const QDomElement &element)
{
    const auto found = std::find_if(m_tasks.begin(), m_tasks.end(),
                                    [&](const Task &task) { return task.element == element; });
    return found == m_tasks.end() ? nullptr : &*found;
}

/// \a element is not that of the list, which the task may clear.
void TimeTasks::run(const QDomElement &element, PictureTask &video)
{
    const QString type = element.attribute(typeAttribute);
    if (type == QLatin1String("call"))
        m_actions.runCall(element);
    else if (const auto kind = pictureKind(type))
        video.run(*kind, element, m_clock());
    else
        m_context.report(WindowText::tr("Unknown time task \"%1\"").arg(type));
}

} // namespace paravue
