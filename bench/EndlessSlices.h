#pragma once

#include <QByteArray>
#include <QSize>

namespace paravue::bench
{

/// A slice of an H.264 picture of \a size that begins at \a block, counted in blocks of 16 x 16 pixels, and
/// goes on to the end of the picture without a change. Made from \a picture: one slice, without CABAC, in
/// which nothing changes.
QByteArray emptySliceFrom(const QByteArray &picture, quint32 block, QSize size);

} // namespace paravue::bench
