#pragma once

#include <QDomElement>

namespace paravue
{

class ProblemList;

/// Checks single words of an element: malformed numbers, unknown keywords that the window would silently
/// replace by their default, and tags that are reserved for the window.
void checkWords(const QDomElement &element, ProblemList &problems);

} // namespace paravue
