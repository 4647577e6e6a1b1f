#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// A request line for the log: one short printable line, without the password that it may hold.
QString readableRequest(const QByteArray &line);

} // namespace recorder
