#include "video/MagicSearch.h"

#include <algorithm>

namespace paravue
{

namespace
{

constexpr qsizetype MagicSize = 4;
constexpr qsizetype BlockSize = 64;

// Without branches, so that the compiler can test many places at once. What all records have in common is
// looked for first, which is less work and found in few blocks.
struct MayBeRecord {
    bool operator()(const uchar *at) const { return (at[1] == 0xB5) & (at[3] == 0xB5); }
};

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

template <typename Test>
bool isAnywhere(const uchar *block, Test test)
{
    uchar found = 0;
    for (qsizetype i = 0; i < BlockSize; ++i)
        found |= test(block + i);
    return found;
}

template <typename IsMagic>
qsizetype find(QByteArrayView bytes, IsMagic isMagic)
{
    const auto *begin = reinterpret_cast<const uchar *>(bytes.data());
    const qsizetype places = std::max<qsizetype>(bytes.size() - MagicSize + 1, 0);
    const auto holdsMagic = [&](qsizetype place) {
        return isAnywhere(begin + place, MayBeRecord()) && isAnywhere(begin + place, isMagic);
    };
    qsizetype place = 0;
    while (place + BlockSize <= places && !holdsMagic(place))
        place += BlockSize;
    const bool isAtEnd = places >= BlockSize && place + BlockSize > places;
    if (isAtEnd && !holdsMagic(places - BlockSize))
        return places;
    while (place < places && !isMagic(begin + place))
        ++place;
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
