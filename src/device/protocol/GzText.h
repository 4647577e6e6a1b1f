#pragma once

#include <QByteArray>

#include <optional>

namespace paravue
{

/// The content of \a data as zlib's gzip file reader gives it: members that follow each other are joined,
/// bytes behind the last one are dropped, and data that is not compressed is returned as it is. Of data that
/// is cut, the part that is there is returned; of damaged data only full blocks of 1024 bytes before the
/// damage, so that it does not look whole.
///
/// Nothing when the content is longer than \a maximumSize: some kilobytes can unpack to gigabytes.
std::optional<QByteArray> gunzipped(const QByteArray &data, qsizetype maximumSize);

} // namespace paravue
