#pragma once

#include <QByteArray>

namespace recorder
{

/// The bytes as one gzip member; empty when the compressor fails.
QByteArray gzip(const QByteArray &plain);

/// What gzip members hold, up to a size; empty when they are damaged or hold more.
QByteArray gunzip(const QByteArray &packed, qsizetype most);

bool isGzip(const QByteArray &bytes);

} // namespace recorder
