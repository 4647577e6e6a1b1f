#pragma once

#include "program/ExitCode.h"

#include <QString>

namespace paravue
{

/// How a step of a command has ended.
struct Outcome {
    ExitCode code = ExitCode::Done;
    QString problem = {}; ///< in words for the user; empty when it is done

    bool isDone() const { return code == ExitCode::Done; }
};

} // namespace paravue
