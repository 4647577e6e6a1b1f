#include "device/protocol/WireBody.h"

namespace paravue
{

QByteArray wireBody(const QByteArray &file)
{
    if (file.isEmpty())
        return {};
    QByteArray body = file;
    if (body.startsWith(UntitledHeader))
        body.remove(0, UntitledHeader.size());
    body.replace("\r\n", "\n");
    return "LENGTH=" + QByteArray::number(body.size()) + "\r\n" + body;
}

} // namespace paravue
