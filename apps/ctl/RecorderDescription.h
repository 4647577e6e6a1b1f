#pragma once

#include "Outcome.h"
#include "snapshots/Snapshot.h"
#include "ui/description/DescribedValues.h"

#include <memory>

class OrbSetup;

namespace paravue
{

/// Reads the interface description among \a files; \a store has the values in its texts. Null with a
/// \a problem when it cannot be read.
std::unique_ptr<DescribedValues> readDescription(const FileContents &files, OrbSetup &store,
                                                 Outcome &problem);

} // namespace paravue
