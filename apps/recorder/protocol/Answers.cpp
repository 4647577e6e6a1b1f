#include "recorder/protocol/Answers.h"

namespace recorder
{

namespace
{

QByteArray framed(const QByteArray &content)
{
    return "LENGTH=" + QByteArray::number(content.size()) + "\r\n" + content;
}

} // namespace

Answer okAnswer(const QByteArray &body)
{
    return {framed(body + "VORN_ANSWER=OK\r\n"),
            body.isEmpty() ? QStringLiteral("OK") : QStringLiteral("OK, %1 bytes").arg(body.size()), true};
}

Answer errorAnswer(const QString &text)
{
    return {framed("VORN_ANSWER=ERROR:" + text.toUtf8() + "\r\n"), QStringLiteral("ERROR: %1").arg(text)};
}

Answer loginRefusal()
{
    return {framed("VORN_ANSWER=ERROR\r\n"), QStringLiteral("ERROR, login refused")};
}

} // namespace recorder
