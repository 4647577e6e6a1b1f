#pragma once

#include "EncodedClip.h"

#include <QString>

namespace paravue::test
{

/// Writes a clip into a file at 25 pictures a second; the name's suffix says the kind of file. What a decoder
/// needs first stands in the head of the file only, where the kind has a place for it. Fails the program when
/// FFmpeg refuses.
void writeMovie(const QString &path, const ClipFormat &format);

} // namespace paravue::test
