#include "recorder/protocol/AnswerFaults.h"

#include "recorder/protocol/FaultyContent.h"

#include <QRandomGenerator>

#include <algorithm>
#include <iterator>

namespace recorder
{

namespace
{

using Kind = AnswerFault::Kind;

const QByteArray AnswerName = QByteArrayLiteral("VORN_ANSWER=");
const QByteArray Garbage = QByteArrayLiteral("\x07garbage\xff\r\n");

/// The parts of an answer, each of which a fault may replace.
struct Frame {
    QByteArray content;
    QByteArray answerLine;
    QByteArray length; ///< in place of the real number, if any
    QByteArray before;
    QByteArray behind;

    explicit Frame(const QByteArray &answer)
    {
        const qsizetype start = answer.indexOf("\r\n") + 2;
        const qsizetype line = answer.lastIndexOf(AnswerName);
        content = answer.sliced(start, line - start);
        answerLine = answer.sliced(line);
    }

    bool isOk() const { return answerLine == AnswerName + "OK\r\n"; }

    QByteArray bytes() const
    {
        const QByteArray body = content + answerLine;
        QByteArray number = length;
        if (length.isEmpty())
            number = QByteArray::number(body.size());
        else if (length == "less")
            number = QByteArray::number(body.size() - 1);
        else if (length == "more")
            number = QByteArray::number(body.size() + 1);
        const QByteArray header = length == "none" ? QByteArray() : "LENGTH=" + number + "\r\n";
        return before + header + body + behind;
    }
};

void damage(Frame &frame, const AnswerFault &fault)
{
    switch (fault.kind) {
    case Kind::Error:
        frame.content.clear();
        frame.answerLine = AnswerName + "ERROR" + (fault.text.isEmpty() ? "" : ":" + fault.text) + "\r\n";
        break;
    case Kind::NoAnswerLine:
        frame.answerLine.clear();
        break;
    case Kind::Length:
        frame.length = fault.text;
        break;
    case Kind::GarbageBefore:
        frame.before = Garbage;
        break;
    case Kind::GarbageBehind:
        frame.behind = Garbage;
        break;
    default:
        if (frame.isOk())
            frame.content = faultyContent(fault.kind, frame.content);
        break;
    }
}

QList<qsizetype> randomPieces(qsizetype size, quint32 seed)
{
    constexpr int SmallestPieces = 16;
    QRandomGenerator random(seed);
    QList<qsizetype> pieces;
    const int most = std::max(SmallestPieces, int(size / SmallestPieces));
    for (qsizetype sent = 0; sent < size; sent += pieces.constLast())
        pieces << std::min<qsizetype>(random.bounded(1, most), size - sent);
    return pieces;
}

void applyDelivery(Delivery &delivery, const AnswerFault &fault)
{
    switch (fault.kind) {
    case Kind::Bytewise:
        delivery.pieces = QList<qsizetype>(delivery.bytes.size(), 1);
        break;
    case Kind::Pieces:
        delivery.pieces = randomPieces(delivery.bytes.size(), quint32(fault.number));
        break;
    case Kind::Late:
        delivery.delay = int(fault.number);
        break;
    case Kind::Never:
        delivery.bytes.clear();
        delivery.end = Delivery::End::Silent;
        break;
    case Kind::CloseBefore:
        delivery.bytes.clear();
        delivery.end = Delivery::End::Close;
        break;
    case Kind::CloseWithin:
        delivery.bytes.truncate(delivery.bytes.size() / 2);
        delivery.end = Delivery::End::Close;
        break;
    case Kind::CloseAfter:
        delivery.end = Delivery::End::Close;
        break;
    case Kind::Reset:
        delivery.bytes.clear();
        delivery.end = Delivery::End::Reset;
        break;
    default:
        break;
    }
}

} // namespace

void AnswerFaults::set(const QList<AnswerFault> &faults)
{
    m_faults = faults;
    m_refusals = 0;
    for (const AnswerFault &fault : faults)
        m_refusals += fault.kind == Kind::Refuse ? fault.number : 0;
}

bool AnswerFaults::takeRefusal()
{
    if (m_refusals == 0)
        return false;
    --m_refusals;
    return true;
}

Delivery AnswerFaults::deliver(const QByteArray &answer, const QByteArray &request, int number) const
{
    QList<AnswerFault> due;
    std::copy_if(m_faults.begin(), m_faults.end(), std::back_inserter(due), [&](const AnswerFault &fault) {
        return fault.kind != Kind::Refuse && fault.isDue(request, number);
    });
    if (due.isEmpty())
        return {answer};
    Frame frame(answer);
    for (const AnswerFault &fault : std::as_const(due))
        damage(frame, fault);
    Delivery delivery{frame.bytes()};
    for (const AnswerFault &fault : std::as_const(due)) {
        applyDelivery(delivery, fault);
        delivery.faults << nameOf(fault.kind);
    }
    return delivery;
}

} // namespace recorder
