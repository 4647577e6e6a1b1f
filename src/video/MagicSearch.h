#pragma once

#include <QByteArrayView>

/// Finds the next record in bytes that belong to none. The time depends on the number of bytes only, not on
/// their values.
namespace paravue
{

/// The offset of the first header magic. Without one, the offset of the bytes at the end that may be the
/// beginning of one, three at most.
qsizetype findHeaderMagic(QByteArrayView bytes);

/// The same for the magic of a header or an index record, whichever comes first.
qsizetype findRecordMagic(QByteArrayView bytes);

} // namespace paravue
