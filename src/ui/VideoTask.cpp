#include "ui/VideoTask.h"

#include "store/OrbSetup.h"
#include "ui/ActionRunner.h"
#include "ui/ControlContext.h"

#include <QWidget>

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

void connectTargets(const PictureReceiver &receiver, const QList<QWidget *> &targets)
{
    for (QWidget *target : targets) {
        if (target->metaObject()->indexOfSlot("setPixmap(QPixmap)") >= 0)
            QObject::connect(&receiver, SIGNAL(pixmapReady(QPixmap)), target, SLOT(setPixmap(QPixmap)),
                             Qt::UniqueConnection);
    }
}

} // namespace

void VideoTask::DeleteLater::operator()(PictureReceiver *receiver) const
{
    receiver->disconnect();
    receiver->deleteLater();
}

void VideoTask::run(PictureKind kind, const QDomElement &task, const ReceiverFactory &makeReceiver,
                    ControlContext &context, const ActionRunner &actions)
{
    if (!makeReceiver)
        return;
    if (!m_receiver || !m_receiver->isActive()) {
        if (!resolveSource(context, task))
            return;
        m_receiver.reset(makeReceiver(kind, task).release());
    }
    if (m_receiver)
        connectTargets(*m_receiver,
                       actions.targets(task.firstChildElement(QStringLiteral("target")).text().trimmed()));
}

void VideoTask::forget(const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    for (const QString &attribute : {parsedAttribute, loginAttribute, passwordAttribute})
        url.removeAttribute(attribute);
}

} // namespace paravue
