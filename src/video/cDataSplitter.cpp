#include "video/cDataSplitter.h"

#include <QtEndian>

namespace
{

[[noreturn]] void needMoreData()
{
    throw QByteArray();
}

} // namespace

void cDataSplitter::append(const QByteArray &bytes)
{
    m_buffer.append(bytes);
}

void cDataSplitter::consume(int n)
{
    if (!has(0, n)) {
        needMoreData();
    }
    m_buffer.remove(0, n);
}

bool cDataSplitter::has(int position, int n) const
{
    // No sum of the two: it could leave the range of an int.
    return position >= 0 && n >= 0 && position <= m_buffer.size() && n <= m_buffer.size() - position;
}

int cDataSplitter::cStringSize(int position) const
{
    if (!has(position, 0)) {
        return 0;
    }
    const qsizetype zero = m_buffer.indexOf('\0', position);
    return zero < 0 ? 0 : static_cast<int>(zero - position + 1);
}

quint8 cDataSplitter::readU8(int &position) const
{
    return static_cast<quint8>(*take(position, sizeof(quint8)));
}

quint16 cDataSplitter::readU16(int &position) const
{
    return qFromLittleEndian<quint16>(take(position, sizeof(quint16)));
}

quint32 cDataSplitter::readU32(int &position) const
{
    return qFromLittleEndian<quint32>(take(position, sizeof(quint32)));
}

QByteArray cDataSplitter::readBytes(int &position, int n) const
{
    return QByteArray(take(position, n), n);
}

QByteArray cDataSplitter::readCString(int &position) const
{
    const int size = cStringSize(position);
    if (size == 0) {
        needMoreData();
    }
    return readBytes(position, size);
}

/// The \a n bytes at \a position, which moves behind them.
const char *cDataSplitter::take(int &position, int n) const
{
    if (!has(position, n)) {
        needMoreData();
    }
    const char *bytes = m_buffer.constData() + position;
    position += n;
    return bytes;
}
