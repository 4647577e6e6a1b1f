#include "video/MagicSearch.h"

#include <algorithm>

namespace paravue
{

namespace
{

constexpr qsizetype MagicSize = 4;
constexpr qsizetype BlockSize = 64;

// Without branches, so that the compiler can test many places at once.
struct IsHeader {
    bool operator()(const uchar *at) const
    {
        return (at[0] == 0xB5) & (at[1] == 0xB5) & (at[2] == 0x05) & (at[3] == 0xB5);
    }
};

struct IsRecord {
    bool operator()(const uchar *at) const
    {
        const bool header = (at[0] == 0xB5) & (at[2] == 0x05);
        const bool index = (at[0] == 0x05) & (at[2] == 0xB5);
        return (at[1] == 0xB5) & (at[3] == 0xB5) & (header | index);
    }
};

template <typename IsMagic>
qsizetype find(QByteArrayView bytes, IsMagic isMagic)
{
    const auto *begin = reinterpret_cast<const uchar *>(bytes.data());
    const qsizetype places = std::max<qsizetype>(bytes.size() - MagicSize + 1, 0);
    qsizetype place = 0;
    for (; place + BlockSize <= places; place += BlockSize) {
        uchar found = 0;
        for (qsizetype i = 0; i < BlockSize; ++i) {
            found |= isMagic(begin + place + i);
        }
        if (found) {
            break;
        }
    }
    while (place < places && !isMagic(begin + place)) {
        ++place;
    }
    return place;
}

} // namespace

qsizetype findHeaderMagic(QByteArrayView bytes)
{
    return find(bytes, IsHeader());
}

qsizetype findRecordMagic(QByteArrayView bytes)
{
    return find(bytes, IsRecord());
}

} // namespace paravue
