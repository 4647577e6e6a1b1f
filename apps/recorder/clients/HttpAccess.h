#pragma once

#include "recorder/clients/HttpRequest.h"
#include "recorder/files/Accounts.h"

#include <QElapsedTimer>

namespace recorder
{

/// HTTP authentication with the accounts of the recorder: Basic (RFC 7617) and Digest (RFC 7616; MD5,
/// qop=auth).
///
/// An account that is stored as a digest can only log in with that digest in Digest authentication, as the
/// recorder does not know the password itself.
class HttpAccess
{
public:
    enum Scheme : unsigned { Basic = 1, Digest = 2 };

    /// The limit of nonces that are valid at a time; a new one replaces the oldest.
    static constexpr int MaxNonces = 64;

    struct Verdict {
        std::optional<Account> account;
        bool isStale = false; ///< the password is right, the nonce is not
    };

    HttpAccess() { m_elapsed.start(); }

    /// The schemes that are offered and accepted.
    void setSchemes(unsigned schemes) { m_schemes = schemes; }

    Verdict check(const HttpRequest &request, const QList<Account> &accounts);
    /// The values of the WWW-Authenticate fields.
    QList<QByteArray> challenges(bool isStale);

private:
    struct Nonce {
        QByteArray text;
        qint64 created = 0;
        quint32 lastUse = 0; ///< the nonce count (nc) of its last request
    };

    Verdict checkDigest(const QByteArray &credentials, const HttpRequest &request,
                        const QList<Account> &accounts);
    bool useNonce(const QByteArray &text, quint32 count);
    void removeExpiredNonces();

    unsigned m_schemes = Basic | Digest;
    QList<Nonce> m_nonces; // oldest first
    QElapsedTimer m_elapsed;
};

} // namespace recorder
