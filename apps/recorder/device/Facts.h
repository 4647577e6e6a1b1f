#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// What a client sends back of a file may be older than what the recorder did meanwhile: the use of a disk,
/// the hours since the start. Of such values the recorder's own count; they replace those in \a sent.
QByteArray withOwnFacts(const QString &file, const QByteArray &sent, const QByteArray &kept);

} // namespace recorder
