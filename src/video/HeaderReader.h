#pragma once

#include "video/Hvx3Records.h"

class cDataSplitter;

namespace paravue
{

/// Reads a stream header that arrives in pieces.
///
/// The texts of a header may be of any length, so a header that is cut short is not read again from its start
/// with every piece: the reader goes on at the field, and within a text at the byte, where it ran short.
/// Until the header is whole nothing may be removed from the front of the input, which is the header's first
/// byte.
class HeaderReader
{
public:
    /// Reads what has arrived. True once the header is whole.
    bool readOn(const cDataSplitter &input);
    /// The number of bytes that were read: once the header is whole, its size.
    int position() const { return m_position; }
    /// The header, once it is whole. The reader begins anew.
    HDR_T take();

private:
    enum class Field { Lengths, Name, StreamKind, Label, Tag, Text, None };

    bool readField(const cDataSplitter &input);
    bool readLengths(const cDataSplitter &input);
    bool readStreamKind(const cDataSplitter &input);
    bool readLabel(const cDataSplitter &input);
    bool readTag(const cDataSplitter &input);
    bool readText(const cDataSplitter &input, QByteArray &text);
    Field nextStream() const;
    Field nextTag() const;

    HDR_T m_header;
    QByteArray m_name;
    QList<STREAM_T> m_streams;
    QList<QByteArray> m_texts = QList<QByteArray>(9);
    STREAM_T m_stream;
    QList<QByteArray> m_labels;
    quint8 m_tag = 0;
    Field m_field = Field::Lengths;
    int m_position = 0;
    /// How much of the text at the position holds no zero.
    int m_searched = 0;
};

} // namespace paravue
