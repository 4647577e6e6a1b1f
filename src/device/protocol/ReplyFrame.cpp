#include "device/protocol/ReplyFrame.h"

#include "device/protocol/Limits.h"

namespace paravue
{

namespace
{

constexpr QByteArrayView HeaderName("LENGTH=");
constexpr QByteArrayView AnswerName("VORN_ANSWER=");
constexpr QByteArrayView LineEnd("\r\n");
constexpr QByteArrayView ShortestAnswer("VORN_ANSWER=OK\r\n");

QString quoted(QByteArrayView text)
{
    // A few bytes more than characters are wanted, so that the cut falls on whole characters.
    QString result = QString::fromUtf8(text.first(qMin(text.size(), 4 * MaxQuotedAnswer)));
    if (result.size() <= MaxQuotedAnswer)
        return result;
    return result.left(MaxQuotedAnswer) + u'\u2026';
}

ReplyContent judge(QByteArrayView answer)
{
    const ReplyContent unrecognized{ReplyContent::Answer::Unrecognized, quoted(answer)};
    QByteArrayView rest = answer.sliced(AnswerName.size());
    const bool ok = rest.startsWith("OK");
    if (!ok && !rest.startsWith("ERROR"))
        return unrecognized;
    rest = rest.sliced(ok ? 2 : 5);
    if (!rest.endsWith(LineEnd))
        return unrecognized;
    rest.chop(LineEnd.size());
    if (!rest.isEmpty() && !rest.startsWith(':'))
        return unrecognized;
    return {ok ? ReplyContent::Answer::Ok : ReplyContent::Answer::Error,
            rest.isEmpty() ? QString() : quoted(rest.sliced(1))};
}

} // namespace

ReplyFrame::Progress ReplyFrame::read(const QByteArray &buffer)
{
    if (buffer.size() < m_read)
        reset(); // another reply than the one that was looked at
    while (m_expected != Expected::Body && m_read < buffer.size())
        readHeaderByte(buffer.at(m_read++));
    if (m_expected != Expected::Body)
        return buffer.size() > MaxReplyBytes ? Progress::TooLong : Progress::Incomplete;
    if (m_length > MaxReplyBytes)
        return Progress::TooLong;
    return buffer.size() < m_headerSize + m_length ? Progress::Incomplete : Progress::Complete;
}

void ReplyFrame::readHeaderByte(char c)
{
    const bool isDigit = c >= '0' && c <= '9';
    ++m_headerSize;
    if (m_expected == Expected::Name && c == HeaderName[m_headerSize - 1]) {
        if (m_headerSize == HeaderName.size())
            m_expected = Expected::FirstDigit;
    } else if (m_expected == Expected::FirstDigit && isDigit) {
        addDigit(c - '0');
        m_expected = Expected::DigitOrReturn;
    } else if (m_expected == Expected::DigitOrReturn && isDigit) {
        addDigit(c - '0');
    } else if (m_expected == Expected::DigitOrReturn && c == '\r') {
        m_expected = Expected::LineFeed;
    } else if (m_expected == Expected::LineFeed && c == '\n') {
        m_expected = Expected::Body;
    } else {
        startHeaderAgain(c);
    }
}

/// The name begins with a letter that it does not hold a second time, so no earlier byte can be part of it.
void ReplyFrame::startHeaderAgain(char c)
{
    m_expected = Expected::Name;
    m_headerSize = c == HeaderName.front() ? 1 : 0;
    m_length = 0;
}

void ReplyFrame::addDigit(int digit)
{
    m_length = qMin(m_length * 10 + digit, MaxReplyBytes + 1);
}

ReplyContent takeAnswer(QByteArray &reply)
{
    const qsizetype last = reply.size() - ShortestAnswer.size();
    const qsizetype start = last < 0 ? -1 : reply.lastIndexOf(AnswerName, last);
    if (start < 0)
        return {};
    const ReplyContent content = judge(QByteArrayView(reply).sliced(start));
    reply.truncate(start);
    return content;
}

} // namespace paravue
