#pragma once

#include "recorder/protocol/AnswerFault.h"

namespace recorder
{

/// How an answer goes out.
struct Delivery {
    enum class End {
        Stay,   ///< the connection goes on
        Close,  ///< it is closed behind the bytes
        Reset,  ///< it is reset
        Silent, ///< it stays open, and nothing is read and sent any more
    };

    QByteArray bytes;
    /// The sizes of the pieces that the bytes are sent in, each in an event of its own; empty for one piece.
    QList<qsizetype> pieces = {};
    int delay = 0; ///< milliseconds
    End end = End::Stay;
    QStringList faults = {}; ///< names, for the log
};

/// The faults of a recorder.
class AnswerFaults
{
public:
    /// Faults of answers that were not sent yet.
    void set(const QList<AnswerFault> &faults);

    /// True when a login must be refused, which is counted.
    bool takeRefusal();
    /// How the frame \a answer goes out. \a request is the request line, or AnswerFault::Login; \a number
    /// counts the answers of the connection from 1.
    Delivery deliver(const QByteArray &answer, const QByteArray &request, int number) const;

private:
    QList<AnswerFault> m_faults;
    qint64 m_refusals = 0; ///< logins still to be refused
};

} // namespace recorder
