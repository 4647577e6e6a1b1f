#pragma once

#include "snapshots/Snapshot.h"
#include "snapshots/SnapshotDifferences.h"

#include <QList>
#include <QString>

#include <optional>

namespace paravue
{

/// A value that was edited without the recorder, from three sides; or one that was not, but stands in a list
/// that can only be taken over as a whole.
struct MergedEdit {
    enum class State {
        Fits,     ///< the recorder still has the value that was edited
        Collides, ///< the recorder has another value meanwhile, or what it had is not known
        IsDone,   ///< the recorder has the edited value already
        NoFile,   ///< the recorder takes no such file
    };

    QString path;                  ///< "file/section/key"
    std::optional<QString> before; ///< in the snapshot; nothing where there is no such key
    std::optional<QString> edited;
    std::optional<QString> now; ///< on the recorder
    State state = State::Fits;
    /// "file/section" of a list whose entries have moved (see PositionLists) or would move; empty for other
    /// values. Such an edit collides, as it may be meant for another entry than the recorder has at
    /// this position, and is taken over with all others of the list.
    QString movedList = {};
    /// False in such a list when the snapshot has left out some of its secrets.
    bool canBeTaken = true;
    bool isBeforeKnown = true; ///< the snapshot has not left out what it had there
};

/// All edits of \a snapshot, in the order of their paths, and behind them what else lists that are taken over
/// as a whole need. \a recorder are the values that the recorder has now, of the files that it takes.
QList<MergedEdit> mergeEdits(const Snapshot &snapshot, const ConfigurationValues &recorder);

} // namespace paravue
