#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// Replaces in \a sent what the recorder itself measures, such as the use of a disk or the hours since the
/// start: what a client sends of these may be older than what was measured since.
QByteArray withMeasuredValues(const QString &file, const QByteArray &sent, const QByteArray &kept);

} // namespace recorder
