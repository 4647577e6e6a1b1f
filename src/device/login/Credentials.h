#pragma once

#include "ParavueSetupExport.h"

#include <QByteArray>

namespace paravue
{

/// What is known about the login to one recorder.
struct Credentials {
    bool remember = false; ///< the user wants this record to be kept
    QByteArray url;        ///< the recorder's address, host[:port], in the local 8-bit encoding
    QByteArray name;       ///< display name of the recorder, UTF-8
    int level = 0;         ///< access level; above 0 the default login is the administrator's
    QByteArray login;      ///< in the local 8-bit encoding
    QByteArray password;   ///< as it is sent: the lower-case hexadecimal MD5 digest of the typed text
    /// When it is asked for: a login that somebody has given was refused, not just the default one.
    bool isAfterRefusal = true;
};

/// Where OrbNetSetup gets a login from when the recorder refuses the one it has, and where it keeps one. A
/// program without a screen, and a test, bring their own.
class PARAVUE_EXPORT CredentialsSource
{
public:
    virtual ~CredentialsSource();

    /// Asks for login and password of the recorder at \a record.url and fills \a record in.
    /// Returns false when the user gave up; the record is then of no use.
    virtual bool ask(Credentials &record) = 0;
    /// Keeps \a record for the next session.
    virtual void save(const Credentials &record) = 0;
};

} // namespace paravue
