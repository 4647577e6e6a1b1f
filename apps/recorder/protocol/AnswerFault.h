#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace recorder
{

/// A fault of the configuration protocol that is injected on request. The commands are carried out all the
/// same; only their answers are wrong.
struct AnswerFault {
    enum class Kind {
        Bytewise,      ///< the answer is sent byte by byte
        Pieces,        ///< the answer is sent in random pieces; number is the seed
        Late,          ///< the answer is sent number milliseconds later
        Never,         ///< no answer to this and to everything that follows on the connection
        CloseBefore,   ///< the connection is closed in place of the answer
        CloseWithin,   ///< the connection is closed after half of the answer
        CloseAfter,    ///< the connection is closed after the answer
        Reset,         ///< the connection is reset (TCP RST) in place of the answer
        Error,         ///< the answer is an ERROR, with the text if it has one
        NoAnswerLine,  ///< the answer line is missing
        Length,        ///< the LENGTH line has the text as its number; also "less", "more" and "none"
        GarbageBefore, ///< bytes before the frame
        GarbageBehind, ///< bytes behind the frame
        Refuse,        ///< so many logins (number) are refused, whatever their password is
        // The content of the answer to GET SETUP:
        Truncated, ///< the first half
        NoXml,     ///< compressed, but no XML
        NoGzip,    ///< begins like gzip and goes on with something else
        Bomb,      ///< a few kilobytes that unpack to 64 MiB
        Deep,      ///< 100,000 nested elements
        Entities,  ///< entities that expand to a gigabyte
        Controls,  ///< 200,000 controls
        // The content of the answer to GET STATE CONFIG:
        Directives, ///< each directive lengthens itself and all others
    };
    /// The request of a login, for \c request.
    static constexpr char Login[] = "login";

    Kind kind = Kind::Never;
    qint64 number = 0;
    QByteArray text = {};

    /// The answers that are wrong: those to this request line, "GET NET CONFIG" for example, or to Login;
    /// empty for any.
    QByteArray request = {};
    /// The n-th answer of every connection, beginning with 1 (the one to the login); 0 for all.
    int answer = 0;

    bool isDue(const QByteArray &requestLine, int answerNumber) const
    {
        return (request.isEmpty() || request == requestLine) && (answer == 0 || answer == answerNumber);
    }
};

QString nameOf(AnswerFault::Kind kind);
/// The kinds as the command line has them, with their values: "late=MS" for example.
QStringList answerFaultForms();

/// Reads KIND[=VALUE][@WHERE], "late=500@GET NET CONFIG" for example. Nothing, with \a reason set, when it is
/// wrong.
std::optional<AnswerFault> readAnswerFault(const QString &text, QString &reason);

} // namespace recorder
