#pragma once

#include <QByteArray>

namespace recorder
{

/// The bytes as one gzip member; empty when the compressor fails.
QByteArray gzip(const QByteArray &plain);

/// The content of the first gzip member; empty when it is damaged or larger than \a most bytes.
QByteArray gunzip(const QByteArray &packed, qsizetype most);

bool isGzip(const QByteArray &bytes);

} // namespace recorder
