#pragma once

#include <QString>

namespace paravue
{

/// A recorder's address as users write it, [login:password@]host[:port], checked and brought into the form
/// that OrbNetSetup takes.
struct RecorderAddress {
    enum class Password {
        AsSent, ///< the text holds what is sent to the recorder
        AsTyped ///< the text holds what a user types; its MD5 digest is sent
    };

    QString address; ///< without a login when the text has none
    QString
        problem; ///< not empty: why the text is no address; never repeats the text, which holds a password

    static RecorderAddress fromText(const QString &text, Password password);

    /// \a address with the remembered login of its recorder when it has none; else as it is. A recorder that
    /// nobody has logged in to yet gets the administrator's login, and will ask for another one.
    static QString withLogin(const QString &address);

    /// \a port as the library reads it: a signed 16-bit number, so that 40000 is written -25536.
    static QString portText(quint16 port);
};

} // namespace paravue
