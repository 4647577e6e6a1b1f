#pragma once

#include <QString>

#include <optional>

namespace paravue
{

/// The address of a recorder, login:password@address[:port], in its parts.
///
/// The login ends at the last ":" that has an "@" behind it, the password at the last "@"; so both may hold
/// these characters, as long as the password holds no ":".
struct DeviceAddress {
    static constexpr quint16 DefaultPort = 5049;

    QString login;
    QString password;
    QString url; ///< address[:port] as written
    QString host;
    quint16 port = DefaultPort;

    /// Nothing when \a text has another form.
    static std::optional<DeviceAddress> parse(const QString &text);
};

/// Equal for two ways to write the same address[:port]: the host without case, the port filled in when it is
/// left out. Ports above 32767 are the same in their negative form, which is how links are given them.
QString comparableUrl(const QString &url);

} // namespace paravue
