#pragma once

#include "ParavueSetupExport.h"
#include "ui/WindowOptions.h"

class OrbSetup;
class QWidget;

namespace paravue
{

struct SessionOptions {
    /// The window stands above this one, and in its middle at first. It must outlive the session. Null: the
    /// window stands on its own.
    QWidget *parent = nullptr;
    WindowOptions window = {};
};

struct SessionOutcome {
    bool isAccepted = false; ///< the user has closed the window with OK
    bool isShown = false;    ///< the recorder's description was read, and its pages were shown
};

} // namespace paravue

/// DoParavueSetup() with options, and with more to tell about the session. SetupPage shows a session within a
/// window of the host instead.
PARAVUE_EXPORT paravue::SessionOutcome RunParavueSetup(OrbSetup *setup,
                                                       const paravue::SessionOptions &options = {});
