#include "recorder/clients/HttpRequest.h"

#include <algorithm>

namespace recorder
{

namespace
{

bool isToken(const QByteArray &text)
{
    constexpr QByteArrayView Others = "!#$%&'*+-.^_`|~";
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               Others.contains(c);
    });
}

bool isVisible(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

bool readRequestLine(const QByteArray &line, HttpRequest &request)
{
    const QList<QByteArray> parts = line.split(' ');
    if (parts.size() != 3 || !isToken(parts[0]) || !parts[1].startsWith('/') || !isVisible(parts[1]))
        return false;
    request.method = parts[0];
    request.target = parts[1];
    return parts[2] == "HTTP/1.1" || parts[2] == "HTTP/1.0";
}

/// False for what could be read in two ways: a repeated field that may stand only once, or a folded line.
bool readField(const QByteArray &line, HttpRequest &request)
{
    const qsizetype colon = line.indexOf(':');
    const QByteArray name = line.left(std::max<qsizetype>(0, colon)).toLower();
    if (!isToken(name) || request.fields.contains(name))
        return name != "host" && name != "authorization" && isToken(name);
    request.fields.insert(name, line.mid(colon + 1).trimmed());
    return true;
}

} // namespace

bool HttpRequest::hasBody() const
{
    return fields.value("content-length", "0") != "0" || fields.contains("transfer-encoding");
}

std::optional<HttpRequest> parseHttpRequest(const QByteArray &head)
{
    QList<QByteArray> lines = head.split('\n');
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    HttpRequest request;
    if (!readRequestLine(lines.takeFirst(), request))
        return std::nullopt;
    for (const QByteArray &line : std::as_const(lines)) {
        if (line.isEmpty())
            break;
        if (!readField(line, request))
            return std::nullopt;
    }
    const bool needsHost = head.left(head.indexOf('\n')).contains("HTTP/1.1");
    return needsHost && !request.fields.contains("host") ? std::nullopt : std::optional(request);
}

} // namespace recorder
