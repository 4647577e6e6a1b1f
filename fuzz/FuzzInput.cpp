#include "FuzzInput.h"

#include <algorithm>
#include <random>

namespace paravue::fuzz
{

FuzzInput::FuzzInput(const uint8_t *data, size_t size)
    : m_rest(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
{
}

quint8 FuzzInput::takeByte()
{
    if (m_rest.isEmpty())
        return 0;
    const auto byte = static_cast<quint8>(m_rest.front());
    m_rest = m_rest.sliced(1);
    return byte;
}

QList<QByteArray> FuzzInput::pieces() const
{
    const QByteArrayView border(PieceBorder);
    QList<QByteArray> pieces;
    QByteArrayView left = m_rest;
    while (true) {
        const qsizetype at = left.indexOf(border);
        if (at < 0)
            break;
        pieces << left.first(at).toByteArray();
        left = left.sliced(at + border.size());
    }
    return pieces << left.toByteArray();
}

QList<QByteArray> cutAtRandom(const QByteArray &bytes, quint32 seed)
{
    std::minstd_rand random(seed + 1);
    QList<QByteArray> pieces;
    qsizetype at = 0;
    while (at < bytes.size()) {
        const qsizetype longest = random() % 4 == 0 ? 1500 : 9;
        const qsizetype size = std::min<qsizetype>(random() % longest + 1, bytes.size() - at);
        pieces << bytes.sliced(at, size);
        at += size;
    }
    return pieces;
}

} // namespace paravue::fuzz
