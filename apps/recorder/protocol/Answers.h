#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// An answer as it is sent, and its line in the log.
///
/// An answer is "LENGTH=n", CR LF, then n bytes: the body, if any, and the line "VORN_ANSWER=OK" or
/// "VORN_ANSWER=ERROR:text", CR LF included in the count.
struct Answer {
    QByteArray bytes;
    QString logText;
    bool accepted = false;
    /// The recorder restarts once this answer was sent.
    bool restarts = false;
};

Answer okAnswer(const QByteArray &body = {});
Answer errorAnswer(const QString &text);
/// A refused login gets an error without a text: clients compare the whole frame.
Answer loginRefusal();

} // namespace recorder
