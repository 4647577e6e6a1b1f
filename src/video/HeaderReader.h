#pragma once

#include "video/Hvx3Records.h"

class cDataSplitter;

namespace paravue
{

/// Reads a stream header that arrives in pieces.
///
/// The texts of a header may be of any length, so a header that is not complete is not read again from its
/// start with every piece: reading continues at the field, and within a text at the byte, at which the input
/// ended. The input begins with the first byte of the header, of which nothing may be removed before the
/// header is complete.
class HeaderReader
{
public:
    /// Reads what has arrived. True once the header is complete.
    bool read(const cDataSplitter &input);
    /// The number of bytes that were read; the size of the header once it is complete.
    int position() const { return m_position; }
    /// The header is complete with so many bytes at the earliest.
    int leastSize() const;
    /// The complete header. The reader is then ready for the next one.
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
    /// How many bytes of the text at the position are known to hold no zero.
    int m_searched = 0;
};

} // namespace paravue
