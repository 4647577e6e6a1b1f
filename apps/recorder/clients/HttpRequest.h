#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

namespace recorder
{

/// The head of a request as RFC 9112 describes it.
struct HttpRequest {
    QByteArray method;
    QByteArray target;                    ///< as it was sent
    QHash<QByteArray, QByteArray> fields; ///< by name in lower case

    /// The target without what follows a "?".
    QByteArray path() const { return target.split('?').constFirst(); }
    bool hasBody() const;
};

/// \a head ends with the empty line. Nothing when it is no request.
std::optional<HttpRequest> parseHttpRequest(const QByteArray &head);

} // namespace recorder
