#pragma once

#include <QString>

namespace paravue
{

/// "1.5G" and the like in bytes: a number with an optional fraction and an optional unit out of "TGMK"
/// (powers of 1024). Anything else is 0; what does not fit is the largest number.
qint64 parseSize(const QString &text);

} // namespace paravue
