#include "ui/tasks/PictureTask.h"

#include "controls/LiveView.h"
#include "controls/PictureNotice.h"
#include "store/OrbSetup.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"

#include <QLabel>
#include <QSet>

#include <algorithm>
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

RecorderAccount accountOf(PictureKind kind, const QDomElement &task)
{
    const QDomElement url = task.firstChildElement(urlTag);
    return RecorderAccount::of(kind, url.attribute(parsedAttribute), url.attribute(loginAttribute),
                               url.attribute(passwordAttribute));
}

/// In seconds, rounded up in few steps, so that a screen reader does not read a new text every second.
int roundedWait(quint32 milliseconds)
{
    const quint32 seconds = (milliseconds + 999) / 1000;
    for (const quint32 step : {10, 30, 60}) {
        if (seconds <= step)
            return int(step);
    }
    return int((seconds + 59) / 60 * 60);
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

void showRemark(QWidget *widget, const QString &text)
{
    if (auto *view = dynamic_cast<PictureNotice *>(widget))
        view->setRemark(text);
}

} // namespace

void PictureTask::DeleteLater::operator()(PictureSource *source) const
{
    source->disconnect();
    source->deleteLater();
}

void PictureTask::announce(PictureKind kind, const QDomElement &task)
{
    m_actions = std::make_unique<PictureActions>(kind, m_audience, *m_savePicture);
    findTargets(task);
    setNotice(*m_makeSource ? tr("No picture yet") : tr("No video in a preview"));
}

void PictureTask::run(PictureKind kind, const QDomElement &task, quint32 now)
{
    const QList<QWidget *> added = findTargets(task);
    if (!*m_makeSource)
        return;
    for (QWidget *target : added)
        connectTarget(*target);
    m_isDeferred = false;
    if (needsSource()) {
        if (!resolveUrl(*m_context, task))
            return setNotice(tr("No address of pictures"));
        m_login = m_logins->find(accountOf(kind, task));
        m_isDeferred = !m_login->mayBegin(now);
        if (!m_isDeferred)
            begin(kind, task, now);
    }
    if (m_source)
        findCamera(task);
    poll(now, 0);
}

void PictureTask::begin(PictureKind kind, const QDomElement &task, quint32 now)
{
    m_camera.reset();
    m_attempt.reset();
    m_source.reset((*m_makeSource)(kind, task).release());
    m_status.begin(now);
    m_actions->setSource(m_source.get());
    if (!m_source)
        return;
    m_source->setAudience(m_audience);
    m_attempt = std::make_unique<LoginAttempt>(m_login);
    if (kind == PictureKind::Live) {
        if (!m_log)
            m_log.emplace();
        m_log->begin(accountOf(kind, task).recorder);
    }
    for (QWidget *target : std::as_const(m_audience->controls))
        connectTarget(*target);
}

void PictureTask::retry()
{
    if (!isWaiting())
        return;
    m_login->endWait();
    m_isDeferred = true;
}

void PictureTask::poll(quint32 now, quint32 untilDue)
{
    if (m_source) {
        if (m_status.poll(*m_source, now)) {
            m_notice.clear(); // the picture has replaced it on the widgets
            m_actions->setNotice({});
        }
        if (m_log)
            m_log->poll(*m_source, m_status);
        m_attempt->poll(*m_source, m_status, now);
    }
    if (m_camera) {
        m_camera->setLive(!m_status.isStale(), !m_status.isSilent());
        m_camera->poll(now);
    }
    if (m_source)
        setRemark(remark());
    if (std::any_of(m_retries.begin(), m_retries.end(), [](const auto &each) { return each->isRequested(); }))
        retry();
    offerRetry(isWaiting());
    if (m_actions && m_actions->takeFetchRequest() && *m_makeSource) {
        m_isDeferred = true;
        if (m_login)
            m_login->endWait();
    }
    if (m_source || m_isDeferred)
        setNotice(notice(isWaiting() ? std::max(m_login->remaining(now), untilDue) : 0));
}

void PictureTask::end()
{
    m_actions.reset();
    m_camera.reset();
    m_attempt.reset();
    m_source.reset();
    m_isDeferred = false;
    offerRetry(false);
    setRemark({});
    setNotice(tr("Pictures have ended"));
}

QList<QWidget *> PictureTask::findTargets(const QDomElement &task)
{
    const QSet<QWidget *> before(m_audience->controls.begin(), m_audience->controls.end());
    QSet<QWidget *> found; // one may have the tag twice
    QList<QWidget *> added;
    m_audience->controls.clear();
    for (QWidget *target : m_context->description().widgets(
             task.firstChildElement(QStringLiteral("target")).text().trimmed())) {
        if (found.contains(target))
            continue;
        found.insert(target);
        m_audience->controls.append(target);
        if (before.contains(target))
            continue;
        added.append(target);
        m_actions->add(*target);
        if (!m_notice.isEmpty())
            showNotice(target, m_notice);
        showRemark(target, m_remark);
    }
    for (const QPointer<QWidget> &view : m_actions->enlarged()) {
        if (view)
            m_audience->controls.append(view);
    }
    return added;
}

void PictureTask::connectTarget(QWidget &target)
{
    if (!m_source)
        return;
    if (auto *view = qobject_cast<LiveView *>(&target)) {
        QObject::connect(m_source.get(), &PictureSource::scaledReady, view, &LiveView::setScaledPicture);
        QObject::connect(m_source.get(), &PictureSource::wholeReady, view, &LiveView::setWholePicture);
        QObject::connect(view, &LiveView::wholePictureNeeded, m_source.get(), &PictureSource::showWhole);
    }
    if (target.metaObject()->indexOfSlot("setPixmap(QPixmap)") >= 0)
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
    m_camera->addPictures(m_audience->controls);
}

QString PictureTask::notice(quint32 untilAttempt) const
{
    QString reason;
    if (m_source)
        reason = m_status.text();
    else if (m_login) // otherwise the first run is yet to come
        reason = m_login->problem();
    if (!m_source && reason.isEmpty())
        reason = tr("No picture yet");
    if (untilAttempt == 0)
        return reason;
    const int seconds = roundedWait(untilAttempt);
    return seconds <= 60 ? tr("%1 (next attempt within %2 s)").arg(reason, QString::number(seconds))
                         : tr("%1 (next attempt within %2 min)").arg(reason, QString::number(seconds / 60));
}

QString PictureTask::remark() const
{
    return m_camera && !m_camera->remark().isEmpty() ? m_camera->remark() : m_status.remark();
}

void PictureTask::offerRetry(bool isOffered)
{
    if (!isOffered)
        return m_retries.clear();
    for (const QPointer<QWidget> &target : std::as_const(m_audience->controls)) {
        const auto belongs = [&](const auto &retry) { return retry->belongsTo(target); };
        if (target && RetryGesture::suits(*target) &&
            std::none_of(m_retries.begin(), m_retries.end(), belongs))
            m_retries.push_back(std::make_unique<RetryGesture>(*target));
    }
}

void PictureTask::setNotice(const QString &text)
{
    if (text == m_notice)
        return;
    m_notice = text;
    if (m_actions)
        m_actions->setNotice(text);
    for (const QPointer<QWidget> &target : std::as_const(m_audience->controls)) {
        if (target)
            showNotice(target, text);
    }
}

void PictureTask::setRemark(const QString &text)
{
    if (text == m_remark)
        return;
    m_remark = text;
    if (m_actions)
        m_actions->setRemark(text);
    for (const QPointer<QWidget> &target : std::as_const(m_audience->controls)) {
        if (target)
            showRemark(target, text);
    }
}

void PictureTask::forget(const QDomElement &task)
{
    QDomElement url = task.firstChildElement(urlTag);
    for (const QString &attribute : {parsedAttribute, loginAttribute, passwordAttribute})
        url.removeAttribute(attribute);
}

} // namespace paravue
