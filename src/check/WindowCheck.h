#pragma once

#include <QDomElement>

namespace paravue
{

class InterfaceDocument;
class ProblemList;
class TextCheck;
struct DescribedParts;

/// Checks what makes a window usable as a whole: that OK does something, and that each tab can be opened
/// without a mouse.
void checkWindow(const InterfaceDocument &document, const DescribedParts &parts, TextCheck &texts,
                 ProblemList &problems);

} // namespace paravue
