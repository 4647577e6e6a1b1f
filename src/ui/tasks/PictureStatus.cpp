#include "ui/tasks/PictureStatus.h"

#include "ui/tasks/PictureSource.h"

namespace paravue
{
namespace
{

// In milliseconds. Sources show half of the pictures, in groups: with a picture each second there are gaps
// of five seconds in which the stream runs on.
constexpr quint32 ShortSilence = 2'500;
constexpr quint32 ReportedSilence = 5'000;
constexpr quint32 ReportedGap = 15'000;
constexpr quint32 LongestSilence = 60'000;
constexpr quint32 RemarkTime = 5'000;

/// In steps that grow, so that a screen reader does not read a new text every second.
int roundedSeconds(quint32 milliseconds)
{
    const int seconds = int(milliseconds / 1000);
    return seconds < 10 ? seconds : seconds - seconds % (seconds < 60 ? 5 : 60);
}

} // namespace

QString PictureStatus::unknownCodec(const QString &codec)
{
    return tr("Video of the codec \"%1\" cannot be shown").arg(codec);
}

void PictureStatus::begin(quint32 now)
{
    m_begin = now;
    m_pictures = 0;
    m_traffic = 0;
    m_leftOut = 0;
    m_wasConnected = false;
    m_isDead = false;
}

bool PictureStatus::poll(const PictureSource &source, quint32 now)
{
    const bool isNew = source.pictures() != m_pictures;
    const bool isSavedPicture = source.isPaused() && source.traffic() != m_traffic;
    if (isSavedPicture || source.hasConnected() != m_wasConnected)
        m_waitBegin = now;
    if (source.traffic() != m_traffic || source.hasConnected() != m_wasConnected)
        m_lastTraffic = now;
    if (isNew) {
        m_trouble.clear();
        m_hasPicture = true;
        // One that came while nobody saw it may be shown long after that.
        m_lastPicture = source.hasConnected() ? m_lastTraffic : now;
        m_waitBegin = m_lastPicture;
    }
    m_pictures = source.pictures();
    m_traffic = source.traffic();
    m_wasConnected = source.hasConnected();
    m_isDead = m_wasConnected && now - m_lastTraffic >= LongestSilence;
    if (m_isDead && (m_hasPicture || m_trouble.isEmpty()))
        m_trouble = tr("Connection lost");
    m_isStale = !source.isActive() || m_isDead || isOverdue(now);
    m_isSilent = m_wasConnected && now - m_lastTraffic >= ShortSilence;
    m_text = textFor(source, now);
    pollLeftOut(source, now);
    return isNew;
}

void PictureStatus::pollLeftOut(const PictureSource &source, quint32 now)
{
    if (source.leftOut() != m_leftOut) {
        m_leftOut = source.leftOut();
        m_lastLeftOut = now;
        m_remark = tr("Pictures are left out: this computer is too slow");
    } else if (m_isStale || now - m_lastLeftOut >= RemarkTime) {
        m_remark.clear();
    }
}

QString PictureStatus::textFor(const PictureSource &source, quint32 now)
{
    if (!source.isActive()) {
        if (!source.problem().isEmpty())
            m_trouble = source.problem();
        else if (m_wasConnected)
            m_trouble = m_pictures > 0 ? tr("Connection lost") : tr("No picture: login refused?");
        else if (m_pictures == 0)
            m_trouble = tr("No connection");
        return m_trouble;
    }
    if (m_isDead)
        return m_trouble;
    if (!source.problem().isEmpty())
        return source.problem();
    // The earlier problem tells the user more than the time without a picture.
    const bool isKnownTrouble = !m_hasPicture && !m_trouble.isEmpty();
    if (isOverdue(now) && !isKnownTrouble) {
        const int seconds = roundedSeconds(now - (m_hasPicture ? m_lastPicture : m_waitBegin));
        return seconds < 60 ? tr("No picture for %1 s").arg(seconds)
                            : tr("No picture for %1 min").arg(seconds / 60);
    }
    if (m_hasPicture || !m_trouble.isEmpty())
        return m_trouble;
    return m_wasConnected ? tr("No picture yet") : tr("Connecting…");
}

bool PictureStatus::isOverdue(quint32 now) const
{
    // A still picture counts as current until the next request remains unanswered.
    if (!m_wasConnected)
        return m_hasPicture && m_trouble.isEmpty() && now - m_begin >= ReportedSilence;
    const bool isSilent = now - m_lastTraffic >= ReportedSilence;
    return now - m_waitBegin >= (isSilent ? ReportedSilence : ReportedGap);
}

} // namespace paravue
