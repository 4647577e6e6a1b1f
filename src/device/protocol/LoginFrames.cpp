#include "device/protocol/LoginFrames.h"

namespace paravue
{

namespace
{

constexpr char EndOfTransmission = 0x04;
constexpr QByteArrayView AcceptedFrame("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
constexpr QByteArrayView RefusedFrame("LENGTH=19\r\nVORN_ANSWER=ERROR\r\n");

} // namespace

QByteArray loginRequest(const QString &login, const QString &password)
{
    return EndOfTransmission + ("LOGIN=" + login.toUtf8() + "\r\nPASS=" + password.toUtf8() + "\r\n");
}

LoginReply loginReply(const QByteArray &received)
{
    if (received == AcceptedFrame)
        return LoginReply::Accepted;
    if (received == RefusedFrame)
        return LoginReply::Refused;
    const bool isBeginning = AcceptedFrame.startsWith(received) || RefusedFrame.startsWith(received);
    return isBeginning ? LoginReply::Incomplete : LoginReply::Wrong;
}

qsizetype longestLoginReply()
{
    return RefusedFrame.size();
}

} // namespace paravue
