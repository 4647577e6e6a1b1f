#include "PlainParser.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

constexpr std::string_view HeaderMagic = "\xB5\xB5\x05\xB5";
constexpr std::string_view IndexMagic = "\x05\xB5\xB5\xB5";
constexpr size_t MagicSize = 4;
constexpr size_t IndexSize = 13;
constexpr size_t LengthsEnd = 8;
constexpr uint8_t VideoStream = 1;
constexpr uint8_t FirstFragment = 0x80;
constexpr uint8_t LastFragment = 0x40;

uint8_t byteAt(std::string_view bytes, size_t at)
{
    return uint8_t(bytes[at]);
}

uint16_t wordAt(std::string_view bytes, size_t at)
{
    uint16_t value;
    std::memcpy(&value, bytes.data() + at, sizeof(value));
    return value;
}

/// The first header or index record. Without one, what may be the beginning of one is left at the end.
size_t findMagic(std::string_view bytes)
{
    // Both have this byte in the second place.
    for (size_t second = bytes.find('\xB5', 1); second < bytes.size();
         second = bytes.find('\xB5', second + 1)) {
        const std::string_view magic = bytes.substr(second - 1, MagicSize);
        if (magic == HeaderMagic || magic == IndexMagic)
            return second - 1;
    }
    return bytes.size() - std::min(bytes.size(), MagicSize - 1);
}

std::string takeText(std::string_view &bytes)
{
    const size_t size = bytes.find('\0') + 1;
    std::string text(bytes.substr(0, size));
    bytes.remove_prefix(size);
    return text;
}

} // namespace

void PlainParser::append(std::string_view piece)
{
    m_input = piece;
    if (!m_kept.empty()) {
        m_kept.append(piece);
        if (m_kept.size() < m_wanted)
            return;
        m_input = m_kept;
    }
    m_wanted = 0;
    while (step()) {
    }
    if (m_kept.empty())
        m_kept = m_input;
    else
        m_kept.erase(0, m_kept.size() - m_input.size());
}

bool PlainParser::has(size_t bytes)
{
    m_wanted = bytes;
    return m_input.size() >= bytes;
}

bool PlainParser::step()
{
    switch (m_state) {
    case State::Header:
        drop(std::min(m_input.find(HeaderMagic), m_input.size() - std::min(m_input.size(), MagicSize - 1)));
        return readHeader();
    case State::Index:
        drop(findMagic(m_input));
        return readMagic();
    case State::Data:
        return readData();
    }
    return false;
}

bool PlainParser::readMagic()
{
    return has(MagicSize) && (m_input.substr(0, MagicSize) == HeaderMagic ? readHeader() : readIndex());
}

bool PlainParser::readHeader()
{
    if (!has(LengthsEnd))
        return false;
    const size_t streamsEnd = wordAt(m_input, 4);
    const size_t size = streamsEnd + wordAt(m_input, 6);
    if (!has(size))
        return false;
    std::string_view rest = m_input.substr(LengthsEnd, streamsEnd - LengthsEnd);
    m_name = takeText(rest);
    m_streams.clear();
    while (!rest.empty()) {
        Stream stream{byteAt(rest, 0), byteAt(rest, 1), {}};
        rest.remove_prefix(2);
        for (std::string &label : stream.labels)
            label = takeText(rest);
        m_streams.push_back(std::move(stream));
    }
    m_streamOf.fill(nullptr);
    for (const Stream &stream : m_streams)
        m_streamOf[stream.id] = &stream;
    drop(size);
    ++m_headers;
    m_state = State::Index;
    return true;
}

bool PlainParser::readIndex()
{
    if (!has(IndexSize) || !has(IndexSize + byteAt(m_input, IndexSize - 1)))
        return false;
    uint32_t seconds;
    std::memcpy(&seconds, m_input.data() + MagicSize, sizeof(seconds));
    drop(m_wanted);
    m_state = State::Data;
    onIndex(seconds);
    return true;
}

bool PlainParser::readData()
{
    if (!has(MagicSize))
        return false;
    const std::string_view magic = m_input.substr(0, MagicSize);
    const Stream *stream = m_streamOf[byteAt(m_input, 3)];
    if (!stream || magic == HeaderMagic || magic == IndexMagic) {
        m_state = State::Index;
        return true;
    }
    const uint8_t flags = byteAt(m_input, 2);
    const size_t length = wordAt(m_input, 0);
    const bool isExtended = stream->type == VideoStream && (flags & FirstFragment);
    const size_t head = isExtended ? 8 : 4;
    if (!has(head + length))
        return false;
    if (isExtended) {
        Frame &frame = m_frames[stream->id];
        frame.milliseconds = wordAt(m_input, 4);
        frame.byteA = byteAt(m_input, 6);
        frame.byteB = byteAt(m_input, 7);
        if (frame.byteA < 4)
            frame.milliseconds %= 3000;
    }
    const std::string_view payload = m_input.substr(head, length);
    drop(head + length);
    addFragment(*stream, flags, payload);
    return true;
}

void PlainParser::addFragment(const Stream &stream, uint8_t flags, std::string_view payload)
{
    Frame &frame = m_frames[stream.id];
    if (flags & FirstFragment)
        frame.payload.clear();
    frame.payload.append(payload);
    if (flags & LastFragment) {
        frame.stream = &stream;
        frame.flags = flags;
        onFrame(frame);
    }
}
