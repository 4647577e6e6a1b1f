#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// A request line for the log: one short printable line, without the password that it may hold.
QString readableRequest(const QByteArray &line);

/// The body of a request for the log, likewise in one line. It must hold no password.
QString readableBody(const QByteArray &body);

} // namespace recorder
