#pragma once

namespace recorder
{

/// From now on the signals that ask a process to end (SIGTERM, SIGINT as of Ctrl+C, SIGHUP of a closed
/// terminal; on Windows the events of the console) end the application's event loops instead of the process,
/// whatever windows are open. The same signal again ends the process, in case that its event loop does not
/// run. A signal that the parent process has chosen to ignore, as nohup does, stays ignored.
void quitOnStopSignal();

/// Whether such a signal has come.
bool hasStopSignal();

} // namespace recorder
