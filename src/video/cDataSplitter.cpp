#include "video/cDataSplitter.h"

#include <QtEndian>

#include <limits>

namespace
{

/// A larger buffer releases its memory once it is nearly empty.
constexpr qsizetype KeptCapacity = 1024 * 1024;

[[noreturn]] void needMoreData()
{
    throw QByteArray();
}

} // namespace

void cDataSplitter::append(QByteArrayView bytes)
{
    keep();
    m_buffer.append(bytes);
    m_unread = m_buffer;
}

void cDataSplitter::borrow(QByteArrayView bytes)
{
    if (size() > 0) {
        append(bytes);
        return;
    }
    m_buffer.resize(0);
    m_unread = bytes;
    m_borrowed = true;
}

void cDataSplitter::keep()
{
    if (m_borrowed) {
        m_buffer.append(m_unread);
        m_borrowed = false;
    } else if (m_unread.size() < m_buffer.size()) {
        m_buffer.remove(0, m_buffer.size() - m_unread.size());
    } else {
        return;
    }
    if (m_buffer.capacity() > KeptCapacity && m_buffer.size() < m_buffer.capacity() / 8) {
        m_buffer.squeeze();
    }
    m_unread = m_buffer;
}

void cDataSplitter::consume(qsizetype n)
{
    if (n < 0 || n > size()) {
        needMoreData();
    }
    m_unread = m_unread.sliced(n);
}

bool cDataSplitter::has(int position, int n) const
{
    // No sum of the two: it could leave the range of an int.
    return position >= 0 && n >= 0 && position <= size() && n <= size() - position;
}

int cDataSplitter::cStringSize(int position, int searched) const
{
    if (!has(position, searched)) {
        return 0;
    }
    const qsizetype zero = m_unread.indexOf('\0', position + searched);
    // A position behind a zero that is further away would exceed the range of an int.
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
    const char *bytes = m_unread.data() + position;
    position += n;
    return bytes;
}
