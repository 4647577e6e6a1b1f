#pragma once

#include "check/DescribedParts.h"

namespace paravue
{

class AddressCheck;
class ProblemList;

/// Judges what a control is made of: its addresses, its choices, its pattern.
void checkControl(const DescribedParts::Control &control, AddressCheck &addresses, ProblemList &problems);

} // namespace paravue
