#pragma once

#include <QString>

#include <optional>

namespace paravue
{

/// A value as lists show it, in one line: dots in the place of a secret one (SecretKeys::dots()), a dash for
/// an empty one, "(none)" where there is no such key.
QString shownValue(const std::optional<QString> &value, bool isSecret);

} // namespace paravue
