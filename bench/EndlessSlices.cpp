#include "EndlessSlices.h"

#include <bit>
#include <string>

namespace paravue::bench
{
namespace
{

constexpr quint32 BlockSize = 16;
const QByteArray StartCode("\0\0\1", 3);

std::string bitsOf(const QByteArray &bytes)
{
    std::string bits;
    for (const char byte : bytes) {
        for (int bit = 7; bit >= 0; --bit)
            bits += byte >> bit & 1 ? '1' : '0';
    }
    return bits;
}

/// An Exp-Golomb code.
std::string code(quint32 number)
{
    const int length = std::bit_width(number + 1);
    std::string bits(length - 1, '0');
    for (int bit = length - 1; bit >= 0; --bit)
        bits += (number + 1) >> bit & 1 ? '1' : '0';
    return bits;
}

/// As bytes that hold no start code.
QByteArray escaped(std::string bits)
{
    bits.resize((bits.size() + 7) / 8 * 8, '0');
    QByteArray bytes;
    int zeros = 0;
    for (std::size_t at = 0; at < bits.size(); at += 8) {
        const char byte = char(std::stoi(bits.substr(at, 8), nullptr, 2));
        if (zeros >= 2 && quint8(byte) <= 3) {
            bytes += '\3';
            zeros = 0;
        }
        bytes += byte;
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return bytes;
}

} // namespace

QByteArray emptySliceFrom(const QByteArray &picture, quint32 block, QSize size)
{
    const qsizetype at = picture.lastIndexOf(StartCode) + StartCode.size();
    const char unitType = picture[at];
    std::string bits = bitsOf(picture.sliced(at + 1).replace(QByteArray("\0\0\3", 3), QByteArray("\0\0", 2)));
    const quint32 blocks = size.width() / BlockSize * (size.height() / BlockSize);
    const std::string whole = code(blocks) + '1'; // the number of unchanged blocks, and the end
    const std::size_t end = bits.rfind(whole);
    if (bits.front() != '1' || end == bits.npos)
        qFatal("not an empty picture");
    return StartCode + unitType + escaped(code(block) + bits.substr(1, end - 1) + code(blocks - block) + '1');
}

} // namespace paravue::bench
