#pragma once

#include "program/ExitCode.h"

#include <QString>

#include <functional>

namespace paravue
{

/// How a step of a command has ended.
struct Outcome {
    ExitCode code = ExitCode::Done;
    QString problem = {}; ///< in words for the user; empty when it is done

    bool isDone() const { return code == ExitCode::Done; }
};

/// Is called once, when a step has ended.
using OutcomeHandler = std::function<void(const Outcome &)>;

} // namespace paravue
