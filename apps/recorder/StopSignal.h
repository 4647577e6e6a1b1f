#pragma once

namespace recorder
{

/// From now on SIGTERM and SIGINT (Ctrl+C) end the application's event loop instead of the process.
void quitOnStopSignal();

} // namespace recorder
