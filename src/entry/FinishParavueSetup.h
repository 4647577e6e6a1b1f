#pragma once

#include "ParavueSetupExport.h"
#include "store/LinkStatus.h"

#include <QString>
#include <QStringList>

class OrbSetup;

namespace paravue
{

/// How what a setup session has sent to its recorder has ended.
struct SaveOutcome {
    enum class Result {
        Nothing, ///< nothing was being sent, and no save has failed before
        Done,    ///< everything has arrived
        Failed,  ///< see problem
        Stopped, ///< by the user, or because the program ends
    };

    Result result = Result::Nothing;
    QStringList arrived = {}; ///< files of the last save that the recorder has confirmed
    QStringList missing = {}; ///< those that it has not
    /// Those that it has not and that were fetched anew meanwhile, behind another login for example: what was
    /// edited in them is gone.
    QStringList replaced = {};
    QString problem = {};                              ///< in plain words for the user, translated
    LinkStatus::Cause cause = LinkStatus::Cause::None; ///< what kind of problem it is
};

struct FinishOptions {
    /// Shows the progress, asks before Stop, and after a failure offers to send the missing files again.
    /// Without it, or in a program without widgets, nothing is shown.
    bool asksUser = true;
    /// A recorder that is silent for so long, in milliseconds, counts as lost.
    int longestSilence = 60'000;
};

} // namespace paravue

/// Runs until what a setup session has started to send, a save above all, has ended: DoParavueSetup() returns
/// as soon as its window is closed, and a program that ended then would lose it. Returns at once when nothing
/// is under way, and in any case when the recorder has answered, the connection has failed, the recorder is
/// silent for too long, the user has stopped it, or the application quits.
///
/// Runs an event loop of its own; to be called in the thread of \a setup, which must outlive the call.
PARAVUE_EXPORT paravue::SaveOutcome FinishParavueSetup(OrbSetup *setup,
                                                       const paravue::FinishOptions &options = {});
