#pragma once

#include <QImage>

/// Tells the fuzzer which pictures came out. The codecs themselves are not built for coverage, so without
/// this an input that opens a new way through one of them looks like any other.
namespace paravue::fuzz
{

/// The picture at \a place among those of one input.
void countPicture(const QImage &image, int place);

} // namespace paravue::fuzz
