#pragma once

#include "recorder/clients/HttpRequest.h"
#include "recorder/files/Accounts.h"

#include <QElapsedTimer>

namespace recorder
{

/// Who may see what is served over HTTP: Basic (RFC 7617) and Digest authentication (RFC 7616; MD5, qop=auth)
/// with the accounts of the recorder.
///
/// An account that is stored as a digest can only log in with that digest in Digest authentication, as the
/// recorder does not know the password itself.
class HttpAccess
{
public:
    enum Scheme : unsigned { Basic = 1, Digest = 2 };

    /// What has been handed out and not expired; the oldest goes when there are more.
    static constexpr int MaxNonces = 64;

    struct Verdict {
        std::optional<Account> account;
        bool isStale = false; ///< the password is right, the nonce is not
    };

    HttpAccess() { m_elapsed.start(); }

    /// Which of them are offered and accepted.
    void setSchemes(unsigned schemes) { m_schemes = schemes; }

    Verdict check(const HttpRequest &request, const QList<Account> &accounts);
    /// The values of WWW-Authenticate.
    QList<QByteArray> challenges(bool isStale);

private:
    struct Nonce {
        QByteArray text;
        qint64 created = 0;
        quint32 lastUse = 0; ///< the count of its last request
    };

    Verdict checkDigest(const QByteArray &credentials, const HttpRequest &request,
                        const QList<Account> &accounts);
    bool useNonce(const QByteArray &text, quint32 count);
    void forgetOldNonces();

    unsigned m_schemes = Basic | Digest;
    QList<Nonce> m_nonces; // oldest first
    QElapsedTimer m_elapsed;
};

} // namespace recorder
