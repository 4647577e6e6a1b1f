#pragma once

#include <functional>

namespace paravue::fuzz
{

/// Handles the events that there are, until there are none.
void handleEvents();
/// Goes on with events to come until \a isDone. Never being done is a hang, which the fuzzer reports.
void handleEventsUntil(const std::function<bool()> &isDone);

} // namespace paravue::fuzz
