#include "ui/tasks/PictureTask.h"

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
bool resolveUrl(ControlContext &context, const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    if (url.isNull())
        return false;
    // Resolved once: the URL of a running task does not follow changes of the values in it.
    if (!url.hasAttribute(parsedAttribute))
        url.setAttribute(parsedAttribute, context.text(url.text()));
    url.setAttribute(loginAttribute, credential(context, task, loginAttribute));
    url.setAttribute(passwordAttribute, credential(context, task, passwordAttribute));
    return true;
}

/// A plain label shows either a text or a picture.
void showNotice(QWidget *widget, const QString &text)
{
    if (auto *view = dynamic_cast<PictureNotice *>(widget))
        view->setNotice(text);
    else if (auto *label = qobject_cast<QLabel *>(widget);
             label && !text.isEmpty() && !label->pixmap(Qt::ReturnByValue).isNull())
        label->setText(text);
}

} // namespace

void PictureTask::DeleteLater::operator()(PictureSource *source) const
{
    source->disconnect();
    source->deleteLater();
}

void PictureTask::announce(const QDomElement &task)
{
    findTargets(task);
    setNotice(*m_makeSource ? tr("No picture yet") : tr("No video in a preview"));
}

void PictureTask::run(PictureKind kind, const QDomElement &task, quint32 now)
{
    const QList<QWidget *> added = findTargets(task);
    if (!*m_makeSource)
        return;
    if (!m_source || !m_source->isActive() || m_status.isDead()) {
        if (!resolveUrl(*m_context, task))
            return setNotice(tr("No address of pictures"));
        m_camera.reset();
        m_source.reset((*m_makeSource)(kind, task).release());
        m_status.begin(now);
        for (QWidget *target : std::as_const(m_targets))
            connectTarget(*target);
    } else {
        for (QWidget *target : added)
            connectTarget(*target);
    }
    if (!m_source)
        return;
    findCamera(task);
    poll(now);
}

void PictureTask::poll(quint32 now)
{
    if (!m_source)
        return;
    if (m_status.poll(*m_source, now))
        m_notice.clear(); // by the picture
    if (m_camera)
        m_camera->setLive(!m_status.isStale());
    setNotice(m_status.text());
}

void PictureTask::end()
{
    m_camera.reset();
    m_source.reset();
    setNotice(tr("Pictures have ended"));
}

QList<QWidget *> PictureTask::findTargets(const QDomElement &task)
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
        if (!m_notice.isEmpty())
            showNotice(target, m_notice);
    }
    return added;
}

void PictureTask::connectTarget(QWidget &target)
{
    if (m_source && target.metaObject()->indexOfSlot("setPixmap(QPixmap)") >= 0)
        QObject::connect(m_source.get(), SIGNAL(pixmapReady(QPixmap)), &target, SLOT(setPixmap(QPixmap)));
}

void PictureTask::findCamera(const QDomElement &task)
{
    const QDomElement ptz = task.firstChildElement(QStringLiteral("ptz"));
    if (ptz.isNull())
        return;
    if (!m_camera)
        m_camera = std::make_unique<CameraLink>(*m_source);
    m_camera->add(m_context->description().widgets(ptz.text().trimmed()));
}

void PictureTask::setNotice(const QString &text)
{
    if (text == m_notice)
        return;
    m_notice = text;
    for (const QPointer<QWidget> &target : std::as_const(m_targets)) {
        if (target)
            showNotice(target, text);
    }
}

void PictureTask::forget(const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    for (const QString &attribute : {parsedAttribute, loginAttribute, passwordAttribute})
        url.removeAttribute(attribute);
}

} // namespace paravue
