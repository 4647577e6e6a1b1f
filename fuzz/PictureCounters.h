#pragma once

#include <QImage>

/// Tells the fuzzer which pictures were decoded. The codecs are not instrumented, so otherwise an input that
/// reaches new code in them would look like any other.
namespace paravue::fuzz
{

/// \a place is the number of the picture within its input.
void countPicture(const QImage &image, int place);

} // namespace paravue::fuzz
