#pragma once

#include <QString>

namespace paravue
{

/// What a function of the recorder does, in words for the user: "Format disk 1". The name itself of a
/// function that has no words.
QString functionTitle(const QString &name);

} // namespace paravue
