#include "ui/tasks/PictureChoice.h"

namespace paravue
{

bool PictureChoice::takes(bool isInTurn, qint64 now)
{
    if (!m_lastTaken)
        m_lastTaken = now;
    m_inTurn = isInTurn ? m_inTurn + 1 : 0;
    if (m_inTurn >= WholeTurn)
        m_isHelping = false;
    else if (now - *m_lastTaken >= LongestGap)
        m_isHelping = true;
    m_tookLast = isInTurn || (m_isHelping && !m_tookLast);
    if (m_tookLast)
        m_lastTaken = now;
    return m_tookLast;
}

} // namespace paravue
