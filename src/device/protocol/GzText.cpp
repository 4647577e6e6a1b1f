#include "device/protocol/GzText.h"

#include <QtEndian>

#include <zlib.h>

namespace paravue
{

namespace
{

constexpr QByteArrayView GzipMark("\x1f\x8b");

/// Unpacks gzip members into one text. In memory: going through files, as zlib's reader wants it, was a tenth
/// of the time of a whole session.
class Unpacker
{
public:
    explicit Unpacker(const QByteArray &data)
    {
        constexpr int GzipFormat = 15 + 16;
        m_stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
        m_stream.avail_in = static_cast<uInt>(data.size());
        m_status = inflateInit2(&m_stream, GzipFormat);
    }
    ~Unpacker() { inflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(Unpacker)

    /// Unpacks into \a size bytes at \a to, and returns how many there were.
    qsizetype read(char *to, qsizetype size)
    {
        m_stream.next_out = reinterpret_cast<Bytef *>(to);
        m_stream.avail_out = static_cast<uInt>(size);
        while (m_status == Z_OK && m_stream.avail_out > 0) {
            m_status = inflate(&m_stream, Z_NO_FLUSH);
            if (m_status == Z_STREAM_END &&
                QByteArrayView(m_stream.next_in, m_stream.avail_in).startsWith(GzipMark))
                m_status = inflateReset(&m_stream);
        }
        return size - m_stream.avail_out;
    }

    bool isDamaged() const { return m_status == Z_DATA_ERROR || m_status == Z_NEED_DICT; }

private:
    z_stream m_stream{};
    int m_status = Z_OK;
};

/// The size that the end of the data claims. Not to be relied on.
qsizetype claimedSize(const QByteArray &data)
{
    return data.size() < 4 ? 0 : qFromLittleEndian<quint32>(data.constData() + data.size() - 4);
}

} // namespace

std::optional<QByteArray> gunzipped(const QByteArray &data, qsizetype maximumSize)
{
    constexpr qsizetype BlockSize = 1024;
    if (!data.startsWith(GzipMark))
        return data.size() <= maximumSize ? std::optional(data) : std::nullopt;

    Unpacker unpacker(data);
    QByteArray content(qMin(claimedSize(data), maximumSize) + 1, Qt::Uninitialized);
    qsizetype size = 0;
    for (;;) {
        size += unpacker.read(content.data() + size, content.size() - size);
        if (size > maximumSize)
            return {};
        if (size < content.size())
            break;
        content.resize(2 * size + BlockSize);
    }
    content.truncate(unpacker.isDamaged() ? size - size % BlockSize : size);
    return content;
}

} // namespace paravue
