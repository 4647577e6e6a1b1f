#pragma once

#include <QDomElement>

namespace paravue
{

class ProblemList;

/// Reports items of the grid \a grid that cover a place which an earlier one has already. Items that begin
/// hidden may share a place.
void checkOverlaps(const QDomElement &grid, ProblemList &problems);

} // namespace paravue
