#pragma once

#include <QByteArray>

namespace paravue::test
{

/// One member of an ar archive.
QByteArray arMember(const QByteArray &name, const QByteArray &content);

/// A Debian package without files, whose control data is this text.
QByteArray debFile(const QByteArray &control);

} // namespace paravue::test
