#pragma once

#include "check/DescribedParts.h"

namespace paravue
{

class AddressCheck;
class ProblemList;

/// Checks the parts of a control: its addresses, its choices, its pattern.
void checkControl(const DescribedParts::Control &control, AddressCheck &addresses, ProblemList &problems);

} // namespace paravue
