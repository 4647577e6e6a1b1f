#pragma once

#include "program/ExitCode.h"
#include "store/LinkStatus.h"

namespace paravue
{

/// What a program ends with when an exchange has failed for \a cause; \a otherwise without one.
ExitCode exitCodeOf(LinkStatus::Cause cause, ExitCode otherwise);

} // namespace paravue
