#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// The control data of a Debian package, or why it cannot be read.
///
/// As deb(5) has it, a package is an ar archive of "debian-binary", "control.tar" (plain or with the suffix
/// of its compression: ".gz", ".xz", ".zst") and "data.tar" in any compression. Only the control data is
/// read: the recorder keeps a list of packages and unpacks none.
struct DebPackage {
    QByteArray name;
    QByteArray version;
    QByteArray description; // its first line
    QByteArray priority;
    QString fault; // for the client to read; empty when the package is fine
};

DebPackage readDebPackage(const QByteArray &file);

} // namespace recorder
