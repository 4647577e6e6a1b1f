#include "video/CodedPictures.h"

#include <algorithm>
#include <bit>
#include <utility>

using namespace std::string_view_literals;

namespace paravue
{
namespace
{

constexpr std::size_t StartCodeSize = 3;

/// The next 00 00 01 with a byte behind it, or the end.
std::size_t findStartCode(std::string_view bytes, std::size_t from)
{
    // Searched for by its one, which is rarer than zeros.
    for (std::size_t one = bytes.find('\1', from + 2); one < bytes.size() - 1;
         one = bytes.find('\1', one + 1)) {
        if (bytes[one - 1] == 0 && bytes[one - 2] == 0)
            return one - 2;
    }
    return bytes.size();
}

struct Mpeg4End {
    std::size_t at;
    qint64 restarts; ///< pairs of zeros before it
};

/// The next start code, or the end. What restarts the codec within a picture begins with two zeros like a
/// start code, so both are searched for at once.
Mpeg4End findPictureEnd(std::string_view bytes, std::size_t from)
{
    Mpeg4End end{bytes.size(), 0};
    std::size_t behind = from;
    for (std::size_t first = bytes.find('\0', from); first < bytes.size(); first = bytes.find('\0', behind)) {
        behind = first + 1;
        while (behind < bytes.size() && bytes[behind] == 0)
            ++behind;
        const std::size_t zeros = behind - first;
        if (zeros >= 2 && behind + 1 < bytes.size() && bytes[behind] == 1) {
            end.at = behind - 2;
            end.restarts += qint64(zeros - 2) / 2;
            break;
        }
        end.restarts += qint64(zeros) / 2;
    }
    return end;
}

quint8 byteAt(std::string_view bytes, std::size_t at)
{
    return at < bytes.size() ? static_cast<quint8>(bytes[at]) : 0;
}

/// Reads the Exp-Golomb codes in the first eight bytes of a unit.
class LeadingNumbers
{
public:
    explicit LeadingNumbers(std::string_view bytes)
    {
        for (std::size_t at = 0; at < sizeof(m_window); ++at)
            m_window = m_window << 8 | byteAt(bytes, at);
    }

    /// 0 for a code of more than 31 bits.
    quint32 next()
    {
        const int zeros = std::countl_zero(m_window);
        if (zeros > 31)
            return 0;
        const auto number = static_cast<quint32>((m_window << zeros >> (63 - zeros)) - 1);
        m_window <<= 2 * zeros + 1;
        return number;
    }

private:
    quint64 m_window = 0;
};

/// The types of slices that need no other picture, modulo 5.
bool isIntra(quint32 sliceType)
{
    return sliceType % 5 == 2 || sliceType % 5 == 4;
}

enum H264Unit : quint8 {
    Slice = 1,
    PartitionA = 2,
    KeySlice = 5,
    FirstHeader = 6,
    SequenceParameters = 7,
    PictureParameters = 8,
    LastHeader = 9
};

quint8 h264UnitType(std::string_view bytes, std::size_t startCode)
{
    return byteAt(bytes, startCode + StartCodeSize) & 0x1f;
}

/// Counts the H.264 units of one picture.
struct H264Units {
    qint64 slices = 0;
    qint64 headers = 0;
    quint32 lastBlock = 0;
    bool isKey = true;

    /// False when the unit at \a startCode belongs to the next picture.
    bool add(std::string_view bytes, std::size_t startCode)
    {
        const quint8 type = h264UnitType(bytes, startCode);
        if (type == Slice || type == PartitionA || type == KeySlice) {
            LeadingNumbers numbers(bytes.substr(std::min(startCode + StartCodeSize + 1, bytes.size())));
            const quint32 block = numbers.next();
            if (slices > 0 && block <= lastBlock)
                return false;
            lastBlock = block;
            isKey = isKey && isIntra(numbers.next());
            ++slices;
            return true;
        }
        if (slices > 0 && type >= FirstHeader && type <= LastHeader)
            return false;
        ++headers;
        return true;
    }
};

/// Of MPEG-4.
constexpr int IntraPicture = 0;
constexpr int BPicture = 2;
enum Mpeg4Unit : quint8 {
    LastVideoLayer = 0x2f, // those of objects are below
    VideoSequence = 0xb0,
    UserData = 0xb2, // names the encoder, of which the codec knows errors
    VisualObject = 0xb5,
    Mpeg4Picture = 0xb6
};

/// What begins with a start code of H.264 or MPEG-4.
enum class Unit { Picture, Parameters, Other };

Unit unitAt(VideoCodec codec, std::string_view bytes, std::size_t startCode)
{
    if (codec == VideoCodec::H264) {
        const quint8 type = h264UnitType(bytes, startCode);
        if (type >= Slice && type <= KeySlice)
            return Unit::Picture;
        return type == SequenceParameters || type == PictureParameters ? Unit::Parameters : Unit::Other;
    }
    const quint8 type = byteAt(bytes, startCode + StartCodeSize);
    if (type == Mpeg4Picture)
        return Unit::Picture;
    const bool isParameters =
        type <= LastVideoLayer || type == VideoSequence || type == UserData || type == VisualObject;
    return isParameters ? Unit::Parameters : Unit::Other;
}

enum JpegMarker : quint8 {
    HuffmanTables = 0xc4,
    FirstRestart = 0xd0,
    LastRestart = 0xd7,
    StartOfImage = 0xd8,
    StartOfScan = 0xda,
    QuantizerTables = 0xdb,
    FirstApplication = 0xe0,
    LastApplication = 0xef,
    Comment = 0xfe
};

/// The segments of applications may contain other images, such as a preview.
bool hidesImages(quint8 marker)
{
    return (marker >= FirstApplication && marker <= LastApplication) || marker == Comment;
}

} // namespace

CodedPicture CodedPictures::next()
{
    const std::string_view all = m_rest;
    m_rest = all.substr(0, m_longest + 1);
    const CodedPicture picture = nextOfCodec();
    m_rest = all.substr(picture.bytes.size());
    return picture;
}

CodedPicture CodedPictures::nextOfCodec()
{
    switch (m_codec) {
    case VideoCodec::H264:
        return nextH264();
    case VideoCodec::Mpeg4:
        return nextMpeg4();
    case VideoCodec::MotionJpeg:
        return nextJpeg();
    case VideoCodec::Other:
        break;
    }
    return {.bytes = cut(m_rest.size())};
}

std::string_view CodedPictures::cut(std::size_t size)
{
    const std::string_view front = m_rest.substr(0, size);
    m_rest.remove_prefix(front.size());
    return front;
}

CodedPicture CodedPictures::nextH264()
{
    H264Units units;
    std::size_t at = findStartCode(m_rest, 0);
    while (at < m_rest.size() && units.add(m_rest, at))
        at = findStartCode(m_rest, at + StartCodeSize);
    return {.bytes = cut(at),
            .passes = std::max<qint64>(units.slices, 1),
            .headers = units.headers,
            .isKey = units.slices > 0 && units.isKey};
}

CodedPicture CodedPictures::nextMpeg4()
{
    const auto isPicture = [this](std::size_t startCode) {
        return byteAt(m_rest, startCode + 3) == Mpeg4Picture;
    };
    std::size_t begin = findStartCode(m_rest, 0);
    while (begin < m_rest.size() && !isPicture(begin))
        begin = findStartCode(m_rest, begin + StartCodeSize);
    const std::size_t body = std::min(begin + StartCodeSize, m_rest.size());
    const auto [end, restarts] = findPictureEnd(m_rest, body);
    CodedPicture picture{.bytes = cut(end)};
    picture.restarts = restarts;
    const int type = byteAt(picture.bytes, begin + StartCodeSize + 1) >> 6;
    picture.isKey = begin < picture.bytes.size() && type == IntraPicture;
    // The codec does not report the rows of these (see CodecStream::endRow()).
    if (type == BPicture)
        picture.passes += std::exchange(picture.restarts, 0);
    return picture;
}

CodedPicture CodedPictures::nextJpeg()
{
    CodedPicture picture;
    qint64 scans = 0;
    bool begun = false;
    std::size_t hiddenUntil = 0;
    std::size_t at = m_rest.find('\xff');
    for (; at < m_rest.size(); at = m_rest.find('\xff', at + 1)) {
        const quint8 marker = byteAt(m_rest, at + 1);
        if (marker == 0 || marker == 0xff || (marker >= FirstRestart && marker <= LastRestart))
            continue;
        const std::size_t length = std::size_t(byteAt(m_rest, at + 2)) << 8 | byteAt(m_rest, at + 3);
        if (marker == StartOfImage && at >= hiddenUntil) {
            if (begun)
                break;
            begun = true;
        } else if (marker == StartOfScan) {
            ++scans;
        } else if (marker == HuffmanTables || marker == QuantizerTables) {
            picture.tableBytes += length;
        } else if (hidesImages(marker) && at >= hiddenUntil) {
            hiddenUntil = at + 2 + length;
        }
    }
    picture.bytes = cut(std::min(at, m_rest.size()));
    picture.passes = std::max<qint64>(scans, 1);
    return picture;
}

std::string_view parametersIn(VideoCodec codec, std::string_view bytes)
{
    constexpr std::size_t Longest = 1024;
    if (codec != VideoCodec::H264 && codec != VideoCodec::Mpeg4)
        return {};
    const std::string_view front = bytes.substr(0, Longest);
    std::size_t begin = front.size();
    std::size_t end = begin;
    bool isWanted = false;
    for (std::size_t at = findStartCode(front, 0);; at = findStartCode(front, at + StartCodeSize)) {
        const bool isCut = at == front.size() && front.size() < bytes.size();
        if (isWanted && !isCut)
            end = at;
        const Unit unit = at < front.size() ? unitAt(codec, front, at) : Unit::Picture;
        if (unit == Unit::Picture)
            break;
        isWanted = unit == Unit::Parameters;
        if (isWanted && begin == front.size())
            begin = end = at;
    }
    return front.substr(begin, end - begin);
}

std::string_view takeH264Unit(std::string_view &picture)
{
    const std::size_t end =
        findStartCode(picture, std::min(findStartCode(picture, 0) + StartCodeSize, picture.size()));
    const std::string_view unit = picture.substr(0, end);
    picture.remove_prefix(end);
    return unit;
}

} // namespace paravue
