#include "video/HeaderReader.h"

#include "video/cDataSplitter.h"

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int LengthsSize = 8; // with the magic

} // namespace

bool HeaderReader::read(const cDataSplitter &input)
{
    while (m_field != Field::None) {
        if (!readField(input)) {
            return false;
        }
    }
    return true;
}

int HeaderReader::leastSize() const
{
    return std::max(LengthsSize, m_header.headerLength + m_header.tagBlockLength);
}

HDR_T HeaderReader::take()
{
    HDR_T header = m_header;
    header.name = m_name;
    header.streams = m_streams;
    header.texts = m_texts;
    *this = HeaderReader();
    return header;
}

/// Reads one field and sets the next one; false when a part of it is missing.
bool HeaderReader::readField(const cDataSplitter &input)
{
    switch (m_field) {
    case Field::Lengths:
        return readLengths(input);
    case Field::Name:
        if (!readText(input, m_name)) {
            return false;
        }
        m_field = nextStream();
        return true;
    case Field::StreamKind:
        return readStreamKind(input);
    case Field::Label:
        return readLabel(input);
    case Field::Tag:
        return readTag(input);
    case Field::Text:
        if (!readText(input, m_texts[m_tag])) {
            return false;
        }
        m_field = nextTag();
        return true;
    case Field::None:
        break;
    }
    return false;
}

bool HeaderReader::readLengths(const cDataSplitter &input)
{
    if (!input.has(m_position, LengthsSize)) {
        return false;
    }
    m_header.magic = input.readU32(m_position);
    m_header.headerLength = input.readU16(m_position);
    m_header.tagBlockLength = input.readU16(m_position);
    m_field = Field::Name;
    return true;
}

bool HeaderReader::readStreamKind(const cDataSplitter &input)
{
    if (!input.has(m_position, 2)) {
        return false;
    }
    m_stream.streamId = input.readU8(m_position);
    m_stream.streamType = input.readU8(m_position);
    m_labels.clear();
    m_field = Field::Label;
    return true;
}

bool HeaderReader::readLabel(const cDataSplitter &input)
{
    QByteArray label;
    if (!readText(input, label)) {
        return false;
    }
    m_labels.append(label);
    if (m_labels.size() < 3) {
        return true;
    }
    m_stream.label1 = m_labels.at(0);
    m_stream.label2 = m_labels.at(1);
    m_stream.label3 = m_labels.at(2);
    // Deliberate: a stream that goes beyond the header's length is read, but is none of the header's.
    if (m_position <= m_header.headerLength) {
        m_streams.append(m_stream);
    }
    m_field = nextStream();
    return true;
}

bool HeaderReader::readTag(const cDataSplitter &input)
{
    if (!input.has(m_position, 1)) {
        return false;
    }
    m_tag = input.readU8(m_position);
    m_field = m_tag >= 1 && m_tag < m_texts.size() ? Field::Text : nextTag();
    return true;
}

bool HeaderReader::readText(const cDataSplitter &input, QByteArray &text)
{
    const int size = input.cStringSize(m_position, m_searched);
    if (size == 0) {
        m_searched = static_cast<int>(input.size() - m_position);
        return false;
    }
    text = input.readBytes(m_position, size);
    m_searched = 0;
    return true;
}

HeaderReader::Field HeaderReader::nextStream() const
{
    return m_position < m_header.headerLength ? Field::StreamKind : nextTag();
}

HeaderReader::Field HeaderReader::nextTag() const
{
    return m_position < m_header.headerLength + m_header.tagBlockLength ? Field::Tag : Field::None;
}

} // namespace paravue
