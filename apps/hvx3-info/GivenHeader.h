#pragma once

#include <QByteArray>
#include <QString>

namespace paravue
{

/// A header for recordings that begin behind theirs, as the bytes of a stream.

/// With one stream, number 0, of video. \a codec is its name in streams.
QByteArray headerWithCodec(const QByteArray &codec);
/// The first header in the \a recording. Throws a MediaError when there is none.
QByteArray headerOf(const QString &recording);

} // namespace paravue
