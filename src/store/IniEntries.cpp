#include "store/IniEntries.h"

#include "store/IniGrammar.h"

#include <QStringEncoder>
#include <QVarLengthArray>

#include <algorithm>
#include <cstring>

namespace paravue
{

namespace
{

/// The UTF-8 of a key, most of which are short.
class EncodedKey
{
public:
    explicit EncodedKey(QStringView key)
    {
        QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
        m_bytes.resize(encoder.requiredSpace(key.size()));
        m_size = encoder.appendToBuffer(m_bytes.data(), key) - m_bytes.data();
    }

    operator QByteArrayView() const { return {m_bytes.data(), m_size}; }

private:
    QVarLengthArray<char, 256> m_bytes;
    qsizetype m_size = 0;
};

/// In UTF-16, characters beyond U+FFFF stand before those from U+E000 on; in UTF-8, behind them.
int orderOf(char unit)
{
    const uchar byte = uchar(unit);
    return byte == 0xee || byte == 0xef ? byte + 0x10 : byte;
}

bool isBefore(QByteArrayView a, QByteArrayView b)
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char one, char other) { return orderOf(one) < orderOf(other); });
}

} // namespace

QByteArrayView IniEntries::Entry::section() const
{
    const qsizetype slash = key().indexOf('/');
    return slash < 0 ? QByteArrayView(DefaultSection) : key().first(slash);
}

QByteArrayView IniEntries::Entry::name() const
{
    return key().sliced(key().indexOf('/') + 1);
}

void IniEntries::Entry::take(const IniText &text) const
{
    m_value = QString::fromUtf8(text.value(text.marks()[m_mark]));
    m_mark = InMemory;
}

void IniEntries::clear()
{
    m_sorted.clear();
    m_index.clear();
    m_entries.clear();
    m_freeKeys = {};
    m_keys.release();
}

void IniEntries::reserve(qsizetype count, qsizetype keyBytes)
{
    m_entries.reserve(size_t(count));
    m_index.reserve(size_t(count));
    m_freeKeys = {static_cast<char *>(m_keys.allocate(size_t(keyBytes), alignof(char))), size_t(keyBytes)};
}

const IniEntries::Entry *IniEntries::find(QStringView key) const
{
    const EncodedKey encoded(key);
    const quint32 number = find(encoded, hashOf(encoded));
    return number == KeyIndex::None ? nullptr : &m_entries[number];
}

quint32 IniEntries::numberOf(QStringView key)
{
    return numberOf(QByteArrayView(EncodedKey(key)));
}

quint32 IniEntries::numberOf(QByteArrayView key)
{
    const size_t hash = hashOf(key);
    const quint32 found = find(key, hash);
    if (found != KeyIndex::None)
        return found;
    m_sorted.clear();
    const quint32 number = quint32(m_entries.size());
    m_entries.emplace_back(keep(key));
    m_index.insert(hash, number);
    return number;
}

/// Word by word: Qt's hash of bytes leaves the wide registers of some processors in use, so that the next
/// instruction for narrow ones waits. That took a third of the time to read a file.
size_t IniEntries::hashOf(QByteArrayView key) const
{
    size_t hash = qHash(quint64(key.size()), m_seed);
    quint64 word = 0;
    qsizetype left = key.size();
    for (const char *bytes = key.data(); left > 0; bytes += sizeof(word), left -= sizeof(word)) {
        word = 0;
        std::memcpy(&word, bytes, size_t(std::min(left, qsizetype(sizeof(word)))));
        hash = qHash(word, hash);
    }
    return hash;
}

QByteArrayView IniEntries::keep(QByteArrayView key)
{
    const size_t size = size_t(key.size());
    const bool isReserved = size <= m_freeKeys.size();
    char *const copy =
        isReserved ? m_freeKeys.data() : static_cast<char *>(m_keys.allocate(size, alignof(char)));
    if (isReserved)
        m_freeKeys = m_freeKeys.subspan(size);
    std::copy_n(key.data(), size, copy);
    return {copy, key.size()};
}

void IniEntries::sort(std::vector<const Entry *> &entries)
{
    std::sort(entries.begin(), entries.end(),
              [](const Entry *a, const Entry *b) { return isBefore(a->key(), b->key()); });
}

const std::vector<const IniEntries::Entry *> &IniEntries::sorted() const
{
    if (m_sorted.size() != m_entries.size()) {
        m_sorted.clear();
        m_sorted.reserve(m_entries.size());
        for (const Entry &entry : m_entries)
            m_sorted.push_back(&entry);
        sort(m_sorted);
    }
    return m_sorted;
}

} // namespace paravue
