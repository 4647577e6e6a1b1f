#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// One answer as it goes over the wire, and what the log says of it.
///
/// An answer is "LENGTH=n", CR LF, then n bytes: the body, if any, and the line "VORN_ANSWER=OK" or
/// "VORN_ANSWER=ERROR:text", CR LF included in the count.
struct Answer {
    QByteArray bytes;
    QString logText;
    bool accepted = false;
    /// The recorder restarts once this answer is out.
    bool restarts = false;
};

Answer okAnswer(const QByteArray &body = {});
Answer errorAnswer(const QString &text);
/// A refused login gets an error without a text: clients compare the whole frame.
Answer loginRefusal();

} // namespace recorder
