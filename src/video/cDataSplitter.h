#pragma once

#include <QByteArray>

/// Reads little-endian fields from a byte stream that arrives in pieces.
///
/// The buffer holds the input that is not consumed yet. Readers work at a position that the caller owns,
/// counted from the first byte of the buffer; they move it behind what they read and remove nothing, so a
/// record of which a part is still missing can be read again from its start when more has come. Only
/// consume() removes.
///
/// A reader that needs bytes which are not there throws an empty QByteArray and leaves position and buffer as
/// they are, which means that more data is needed. has() and cStringSize() tell so without a throw, which is
/// far cheaper when a stream comes in many small pieces.
class cDataSplitter
{
public:
    cDataSplitter() = default;
    virtual ~cDataSplitter() = default;
    Q_DISABLE_COPY(cDataSplitter)

    void append(QByteArrayView bytes);
    /// The same without a copy: until keep() the \a bytes must stay where they are. Copies what is read only
    /// when something was unread before.
    void borrow(QByteArrayView bytes);
    /// Makes a copy of what was borrowed and is not consumed.
    void keep();
    /// Removes the first \a n bytes; throws when there are fewer.
    void consume(qsizetype n);

    /// The number of bytes that are not consumed.
    qsizetype size() const { return m_unread.size(); }
    /// These bytes, until the next append() or consume().
    QByteArrayView unread() const { return m_unread; }
    /// True when \a n bytes can be read at \a position.
    bool has(int position, int n) const;
    /// The size of the C-string at \a position with its zero byte, or 0 while that byte is not there. Its
    /// first \a searched bytes are known to hold none.
    int cStringSize(int position, int searched = 0) const;

    quint8 readU8(int &position) const;
    quint16 readU16(int &position) const;
    quint32 readU32(int &position) const;
    QByteArray readBytes(int &position, int n) const;
    /// The same without a copy, until the next append() or consume().
    QByteArrayView readView(int &position, int n) const;
    /// The bytes up to and including the first zero byte.
    QByteArray readCString(int &position) const;

private:
    const char *take(int &position, int n) const;

    /// What was appended or kept; the bytes at its end are unread.
    QByteArray m_buffer;
    /// The end of the buffer, or of what is borrowed.
    QByteArrayView m_unread;
    bool m_borrowed = false;
};
