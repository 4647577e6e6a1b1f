#pragma once

#include <functional>

namespace paravue::fuzz
{

/// Handles events until none are left.
void handleEvents();
/// Handles events until \a isDone, waiting for new ones. If that is never, the fuzzer reports a hang.
void handleEventsUntil(const std::function<bool()> &isDone);

} // namespace paravue::fuzz
