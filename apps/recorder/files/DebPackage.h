#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// What the control data of a Debian package tells, or why it tells nothing.
///
/// A package is an ar archive of "debian-binary", "control.tar" or "control.tar.gz", and "data.tar" in any
/// packing. Only the control data is read: the recorder keeps a list of packages and unpacks none.
struct DebPackage {
    QByteArray name;
    QByteArray version;
    QByteArray description; // its first line
    QByteArray priority;
    QString fault; // for the client to read; empty when the package is fine
};

DebPackage readDebPackage(const QByteArray &file);

} // namespace recorder
