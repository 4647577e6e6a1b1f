#include "PictureOrder.h"

#include <algorithm>
#include <iterator>

namespace paravue
{

void PictureOrderFinder::take(qint64 time, bool isBPicture)
{
    ++m_pictures;
    m_hasBPictures = m_hasBPictures || isBPicture;
    const qint64 since = m_clock.advance(time);
    m_found.lead = std::min(m_found.lead, since);
    const auto later = int(std::distance(m_latest.upper_bound(since), m_latest.end()));
    m_found.delay = std::max(m_found.delay, later);
    m_latest.insert(since);
    if (m_latest.size() > PictureOrder::MaxDelay)
        m_latest.erase(m_latest.begin());
}

PictureOrder PictureOrderFinder::order() const
{
    if (!m_hasBPictures)
        return {}; // the clock of the recorder was uneven
    PictureOrder order = m_found;
    if (m_pictures > 1)
        order.step = std::max<qint64>((m_clock.elapsed() - order.lead) / (m_pictures - 1), 1);
    return order;
}

/// Decoding times are the times at which pictures are shown, in ascending order, taken as many pictures later
/// as the order needs. The first ones lie one step apart before all of them.
PictureTimes::Times PictureTimes::advance(qint64 shown)
{
    Times times{shown, 0};
    if (m_taken == 0)
        m_first = shown + m_order.lead;
    while (m_waiting.contains(times.shown))
        ++times.shown;
    m_waiting.insert(times.shown);
    if (m_taken < m_order.delay)
        times.decoded = m_first - (m_order.delay - m_taken) * m_order.step;
    else
        times.decoded = m_waiting.extract(m_waiting.begin()).value();
    if (m_taken > 0)
        times.decoded = std::max(times.decoded, m_lastDecoded + 1);
    times.shown = std::max(times.shown, times.decoded);
    m_lastDecoded = times.decoded;
    ++m_taken;
    m_moved += times.shown == shown ? 0 : 1;
    return times;
}

} // namespace paravue
