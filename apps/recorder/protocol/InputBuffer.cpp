#include "recorder/protocol/InputBuffer.h"

#include <algorithm>

namespace recorder
{

void InputBuffer::append(const QByteArray &bytes)
{
    dropTaken();
    m_bytes += bytes;
}

std::optional<QByteArray> InputBuffer::takeLine()
{
    const qsizetype feed = m_bytes.indexOf('\n', std::max(m_start, m_scanned));
    if (feed < 0) {
        m_scanned = m_bytes.size();
        return std::nullopt;
    }
    QByteArray line = m_bytes.sliced(m_start, feed - m_start);
    if (line.endsWith('\r'))
        line.chop(1);
    m_start = feed + 1;
    return line;
}

QByteArray InputBuffer::takeBytes(qsizetype count)
{
    QByteArray taken = m_bytes.sliced(m_start, std::min(count, size()));
    m_start += taken.size();
    return taken;
}

void InputBuffer::clear()
{
    m_bytes.clear();
    m_start = 0;
    m_scanned = 0;
}

void InputBuffer::dropTaken()
{
    m_bytes.remove(0, m_start);
    m_scanned = std::max<qsizetype>(0, m_scanned - m_start);
    m_start = 0;
}

} // namespace recorder
