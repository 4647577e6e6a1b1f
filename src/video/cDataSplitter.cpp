#include "video/cDataSplitter.h"

#include <QtEndian>

#include <limits>

namespace
{

/// A buffer that has been larger gives its memory back once it is nearly empty.
constexpr qsizetype KeptCapacity = 1024 * 1024;

[[noreturn]] void needMoreData()
{
    throw QByteArray();
}

} // namespace

void cDataSplitter::append(const QByteArray &bytes)
{
    // Never shared with the caller, who may have wrapped memory that is gone when this returns.
    m_buffer.append(bytes.constData(), bytes.size());
}

void cDataSplitter::consume(qsizetype n)
{
    if (n < 0 || n > m_buffer.size()) {
        needMoreData();
    }
    m_buffer.remove(0, n);
    if (m_buffer.capacity() > KeptCapacity && m_buffer.size() < m_buffer.capacity() / 8) {
        m_buffer.squeeze();
    }
}

bool cDataSplitter::has(int position, int n) const
{
    // No sum of the two: it could leave the range of an int.
    return position >= 0 && n >= 0 && position <= m_buffer.size() && n <= m_buffer.size() - position;
}

int cDataSplitter::cStringSize(int position, int searched) const
{
    if (!has(position, searched)) {
        return 0;
    }
    const qsizetype zero = m_buffer.indexOf('\0', position + searched);
    // Behind a zero that is further away no position could be told.
    return zero < 0 || zero >= std::numeric_limits<int>::max() ? 0 : static_cast<int>(zero - position + 1);
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
    return readView(position, n).toByteArray();
}

QByteArrayView cDataSplitter::readView(int &position, int n) const
{
    return QByteArrayView(take(position, n), n);
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
