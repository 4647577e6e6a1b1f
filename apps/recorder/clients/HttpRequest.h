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

    /// The target without its query.
    QByteArray path() const { return target.split('?').constFirst(); }
    bool hasBody() const;
};

/// \a head includes the empty line at its end. Nothing when it is not a valid request.
std::optional<HttpRequest> parseHttpRequest(const QByteArray &head);

} // namespace recorder
