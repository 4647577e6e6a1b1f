#include "ui/tasks/PictureChoice.h"

#include <algorithm>

namespace paravue
{

bool PictureChoice::takes(bool isInTurn, qint64 now)
{
    if (!m_lastTaken)
        m_lastTaken = now;
    if (now - *m_lastTaken >= LongestGap)
        m_missing = MostMissing;
    m_tookLast = isInTurn || (m_missing == MostMissing && !m_tookLast);
    if (m_tookLast)
        m_lastTaken = now;
    m_missing = std::clamp(m_missing + (m_tookLast ? -1 : 1), 0, MostMissing);
    return m_tookLast;
}

} // namespace paravue
