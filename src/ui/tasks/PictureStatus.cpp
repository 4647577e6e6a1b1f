#include "ui/tasks/PictureStatus.h"

#include "ui/tasks/PictureReceiver.h"

namespace paravue
{
namespace
{

// In milliseconds. Receivers show half of the pictures, in groups: with a picture each second there are gaps
// of five seconds in which the stream runs on.
constexpr quint32 SilenceWorthTelling = 5'000;
constexpr quint32 GapWorthTelling = 15'000;
constexpr quint32 SilenceOfTheDead = 60'000;

/// In steps that nobody has to wait for, and that do not keep a screen reader talking.
int roundedSeconds(quint32 milliseconds)
{
    const int seconds = int(milliseconds / 1000);
    return seconds < 10 ? seconds : seconds - seconds % (seconds < 60 ? 5 : 60);
}

} // namespace

void PictureStatus::begin(quint32 now)
{
    m_begin = now;
    m_pictures = 0;
    m_traffic = 0;
    m_wasConnected = false;
    m_isDead = false;
}

bool PictureStatus::look(const PictureReceiver &receiver, quint32 now)
{
    const bool isNew = receiver.pictures() != m_pictures;
    if (isNew || receiver.hasConnected() != m_wasConnected)
        m_lastPicture = now;
    if (receiver.traffic() != m_traffic || receiver.hasConnected() != m_wasConnected)
        m_lastTraffic = now;
    if (isNew) {
        m_trouble.clear();
        m_hasPicture = true;
    }
    m_pictures = receiver.pictures();
    m_traffic = receiver.traffic();
    m_wasConnected = receiver.hasConnected();
    m_isDead = m_wasConnected && now - m_lastTraffic >= SilenceOfTheDead;
    if (m_isDead && (m_hasPicture || m_trouble.isEmpty()))
        m_trouble = tr("Connection lost");
    m_isStale = !receiver.isActive() || m_isDead || isOverdue(now);
    m_text = textFor(receiver, now);
    return isNew;
}

QString PictureStatus::textFor(const PictureReceiver &receiver, quint32 now)
{
    if (!receiver.isActive()) {
        if (!receiver.problem().isEmpty())
            m_trouble = receiver.problem();
        else if (m_wasConnected)
            m_trouble = m_pictures > 0 ? tr("Connection lost") : tr("No picture: login refused?");
        else if (m_pictures == 0)
            m_trouble = tr("No connection");
        return m_trouble;
    }
    if (m_isDead)
        return m_trouble;
    // What was wrong says more than that there is nothing now either.
    const bool isKnownTrouble = !m_hasPicture && !m_trouble.isEmpty();
    if (isOverdue(now) && !isKnownTrouble) {
        const int seconds = roundedSeconds(now - m_lastPicture);
        return seconds < 60 ? tr("No picture for %1 s").arg(seconds)
                            : tr("No picture for %1 min").arg(seconds / 60);
    }
    if (m_hasPicture || !m_trouble.isEmpty())
        return m_trouble;
    return m_wasConnected ? tr("No picture yet") : tr("Connecting…");
}

bool PictureStatus::isOverdue(quint32 now) const
{
    // A still picture is the present one until a request for the next one is not answered.
    if (!m_wasConnected)
        return m_hasPicture && m_trouble.isEmpty() && now - m_begin >= SilenceWorthTelling;
    const bool isSilent = now - m_lastTraffic >= SilenceWorthTelling;
    return now - m_lastPicture >= (isSilent ? SilenceWorthTelling : GapWorthTelling);
}

} // namespace paravue
