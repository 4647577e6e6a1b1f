#pragma once

#include <QString>

#include <optional>

namespace paravue
{

/// A value as lists show it, in one line: dots in the place of a secret one (SecretKeys::dots()), also of one
/// that is empty or has no key, as recorders drop the keys of empty passwords. Otherwise a dash for an empty
/// value, "(none)" where there is no such key.
QString shownValue(const std::optional<QString> &value, bool isSecret);

} // namespace paravue
