#pragma once

#include "ui/binding/FileAccessGuard.h"
#include "ui/binding/FunctionCall.h"

#include <QString>

#include <functional>

namespace paravue
{

/// What the parts behind the window ask of it.
struct WindowServices {
    /// Receives translated messages for the user.
    std::function<void(const QString &message)> report;
    /// Opens the described dialog with this tag and waits for it.
    std::function<void(const QString &tag)> showDialog;
    /// Runs \a wait, an event loop in which the user acts.
    std::function<void(const std::function<void()> &wait)> letUserAct;
    PathQuestion askForFileAccess;
    FunctionPermit permitsFunction = {};
    /// The user has changed this control.
    std::function<void(QWidget *control)> controlChanged = [](QWidget *) {};
};

} // namespace paravue
