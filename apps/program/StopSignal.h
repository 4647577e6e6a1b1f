#pragma once

namespace paravue
{

/// From now on the signals that ask a process to end (SIGTERM, SIGINT as of Ctrl+C, SIGHUP of a closed
/// terminal; on Windows the events of the console) end the application's event loops instead of the process,
/// whatever windows are open. The same signal again ends the process, in case that its event loop does not
/// run. A signal that the parent process has chosen to ignore, as nohup does, stays ignored. A second call
/// does nothing.
void quitOnStopSignal();

/// To be called first in main(): when the program was started with its standard input closed, its number must
/// not be given to another file, which would be taken for the input. Closed input is input that has ended.
void keepInputOpen();

/// From now on the end of standard input ends the event loops too: a program that has started this one closes
/// it, also when it is killed. Nothing else may read standard input.
void quitAtEndOfInput();

/// Whether one of these has come.
bool hasStopSignal();

#ifndef _WIN32
/// Waits until standard input can be read, also when it has ended. False as soon as one of the signals has
/// come.
bool waitForInput();
#endif

} // namespace paravue
