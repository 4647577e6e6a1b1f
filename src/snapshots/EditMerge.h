#pragma once

#include "snapshots/Snapshot.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace paravue
{

/// A value that was edited without the recorder, from three sides.
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
    /// The entries of its list have moved (changes/PositionLists.h) or would move, so it may be meant for
    /// another one than the recorder has at this position. Such an edit collides.
    bool hasMoved = false;
    bool isBeforeKnown = true; ///< the snapshot has not left out what it had there
};

/// What a recorder has at a path; \a hasFile tells of a file whether there is one that it takes.
struct RecorderValues {
    std::function<bool(const QString &file)> hasFile;
    std::function<std::optional<QString>(const QString &path)> value;
};

/// All edits of \a snapshot, in the order of their paths.
QList<MergedEdit> mergeEdits(const Snapshot &snapshot, const RecorderValues &recorder);

} // namespace paravue
