#pragma once

#include "ParavueSetupExport.h"

class OrbSetup;

#ifdef _WIN32
#define PARAVUE_CALL __stdcall
#else
#define PARAVUE_CALL
#endif

/// Runs a whole setup session on \a setup as a modal window and returns 1 when the user accepted it, 0 when
/// it was rejected or could not be run (the reason has then been shown).
///
/// The caller keeps \a setup and needs a running QApplication. The session ends, as rejected, when the caller
/// closes the window or deletes \a setup, in a timer for example; not in a slot of either. A save that the
/// window started may still be under way when the call returns; FinishParavueSetup() runs until it has ended.
extern "C" PARAVUE_EXPORT int PARAVUE_CALL DoParavueSetup(OrbSetup *setup);
