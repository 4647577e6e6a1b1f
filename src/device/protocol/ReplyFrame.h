#pragma once

#include <QByteArray>
#include <QString>

namespace paravue
{

/// Finds the end of a reply while it arrives.
///
/// A reply is a header line "LENGTH=" with a byte count, then that many bytes: an optional body and the
/// answer line. The buffer that a reply gathers in is looked at again whenever something arrived; every byte
/// of it is read once only, however small the pieces are.
class ReplyFrame
{
public:
    enum class Progress {
        Incomplete, ///< wait for more bytes
        Complete,
        TooLong, ///< longer than any reply may be
    };

    /// \a buffer is what was given before with more bytes behind it. The header may stand anywhere in it, and
    /// what stands before the header does not count as received: only the number of bytes is compared.
    Progress read(const QByteArray &buffer);

    /// How many bytes the header line has; only of a complete reply.
    qsizetype headerSize() const { return m_headerSize; }

    /// Starts with an empty buffer again.
    void reset() { *this = ReplyFrame(); }

private:
    /// What the next byte of the header line should be.
    enum class Expected { Name, FirstDigit, DigitOrReturn, LineFeed, Body };

    void readHeaderByte(char c);
    void startHeaderAgain(char c);
    void addDigit(int digit);

    Expected m_expected = Expected::Name;
    qsizetype m_read = 0;       ///< bytes of the buffer that were looked at
    qsizetype m_headerSize = 0; ///< bytes of the header line so far
    qsizetype m_length = 0;     ///< as announced; any number that is too large reads as a little too large
};

/// What a complete reply says.
struct ReplyContent {
    enum class Answer {
        Ok,           ///< text is what the recorder adds, or empty
        Error,        ///< the recorder refuses; text says why, or is empty
        Unrecognized, ///< text is the whole answer line
        Missing,      ///< there is no answer line
    };

    Answer answer = Answer::Missing;
    QString text;
};

/// Judges \a reply, a reply without its header line, and leaves only the body in it; a reply without an
/// answer line stays as it is.
ReplyContent takeAnswer(QByteArray &reply);

} // namespace paravue
