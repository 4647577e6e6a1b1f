#pragma once

#include <QByteArray>

namespace recorder
{

/// The bytes as one gzip member; empty when the compressor fails.
QByteArray gzip(const QByteArray &plain);

bool isGzip(const QByteArray &bytes);

} // namespace recorder
