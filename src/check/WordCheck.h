#pragma once

#include <QDomElement>

namespace paravue
{

class ProblemList;

/// Judges single words of an element: numbers that are none, keywords that the window does not know and would
/// silently take for their default, and tags that the window keeps for itself.
void checkWords(const QDomElement &element, ProblemList &problems);

} // namespace paravue
