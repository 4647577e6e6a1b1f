#include "ui/tasks/VideoTask.h"

#include "controls/PictureNotice.h"
#include "store/OrbSetup.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"

#include <QLabel>
#include <QSet>

#include <utility>

namespace paravue
{
namespace
{

const QString urlTag = QStringLiteral("url");
const QString parsedAttribute = QStringLiteral("parsed");
const QString loginAttribute = QStringLiteral("login");
const QString passwordAttribute = QStringLiteral("password");

/// The translated text of the child \a tag, or the recorder's own one.
QString credential(ControlContext &context, const QDomElement &task, const QString &tag)
{
    const QDomElement child = task.firstChildElement(tag);
    return child.isNull() ? context.store().value(QStringLiteral("general/network/") + tag)
                          : context.text(child.text());
}

/// False when the task does not say where its pictures come from.
bool resolveSource(ControlContext &context, const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    if (url.isNull())
        return false;
    // Once: the address of a running task does not follow the values in it.
    if (!url.hasAttribute(parsedAttribute))
        url.setAttribute(parsedAttribute, context.text(url.text()));
    url.setAttribute(loginAttribute, credential(context, task, loginAttribute));
    url.setAttribute(passwordAttribute, credential(context, task, passwordAttribute));
    return true;
}

/// A plain label has no room for a text over a picture: it shows the one or the other.
void showNotice(QWidget *widget, const QString &text)
{
    if (auto *view = dynamic_cast<PictureNotice *>(widget))
        view->setNotice(text);
    else if (auto *label = qobject_cast<QLabel *>(widget);
             label && !text.isEmpty() && !label->pixmap(Qt::ReturnByValue).isNull())
        label->setText(text);
}

} // namespace

void VideoTask::DeleteLater::operator()(PictureReceiver *receiver) const
{
    receiver->disconnect();
    receiver->deleteLater();
}

void VideoTask::announce(const QDomElement &task)
{
    findTargets(task);
    say(*m_makeReceiver ? tr("No picture yet") : tr("No video in a preview"));
}

void VideoTask::run(PictureKind kind, const QDomElement &task, quint32 now)
{
    const QList<QWidget *> added = findTargets(task);
    if (!*m_makeReceiver)
        return;
    if (!m_receiver || !m_receiver->isActive() || m_status.isDead()) {
        if (!resolveSource(*m_context, task))
            return say(tr("No address of pictures"));
        m_camera.reset();
        m_receiver.reset((*m_makeReceiver)(kind, task).release());
        m_status.begin(now);
        for (QWidget *target : std::as_const(m_targets))
            connectTarget(*target);
    } else {
        for (QWidget *target : added)
            connectTarget(*target);
    }
    if (!m_receiver)
        return;
    findCamera(task);
    look(now);
}

void VideoTask::look(quint32 now)
{
    if (!m_receiver)
        return;
    if (m_status.look(*m_receiver, now))
        m_said.clear(); // by the picture
    if (m_camera)
        m_camera->setLive(!m_status.isStale());
    say(m_status.text());
}

void VideoTask::end()
{
    m_camera.reset();
    m_receiver.reset();
    say(tr("Pictures have ended"));
}

QList<QWidget *> VideoTask::findTargets(const QDomElement &task)
{
    const QSet<QWidget *> before(m_targets.begin(), m_targets.end());
    QSet<QWidget *> found; // one may have the tag twice
    QList<QWidget *> added;
    m_targets.clear();
    for (QWidget *target : m_context->description().widgets(
             task.firstChildElement(QStringLiteral("target")).text().trimmed())) {
        if (found.contains(target))
            continue;
        found.insert(target);
        m_targets.append(target);
        if (before.contains(target))
            continue;
        added.append(target);
        if (!m_said.isEmpty())
            showNotice(target, m_said);
    }
    return added;
}

void VideoTask::connectTarget(QWidget &target)
{
    if (m_receiver && target.metaObject()->indexOfSlot("setPixmap(QPixmap)") >= 0)
        QObject::connect(m_receiver.get(), SIGNAL(pixmapReady(QPixmap)), &target, SLOT(setPixmap(QPixmap)));
}

void VideoTask::findCamera(const QDomElement &task)
{
    const QDomElement ptz = task.firstChildElement(QStringLiteral("ptz"));
    if (ptz.isNull())
        return;
    if (!m_camera)
        m_camera = std::make_unique<CameraLink>(*m_receiver);
    m_camera->add(m_context->description().widgets(ptz.text().trimmed()));
}

void VideoTask::say(const QString &text)
{
    if (text == m_said)
        return;
    m_said = text;
    for (const QPointer<QWidget> &target : std::as_const(m_targets)) {
        if (target)
            showNotice(target, text);
    }
}

void VideoTask::forget(const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    for (const QString &attribute : {parsedAttribute, loginAttribute, passwordAttribute})
        url.removeAttribute(attribute);
}

} // namespace paravue
