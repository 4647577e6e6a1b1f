#pragma once

#include "Commands.h"
#include "WantedValues.h"
#include "snapshots/Snapshot.h"

#include <QList>

#include <functional>

namespace paravue
{

class RecorderSession;

/// Tells which values a recorder is to get, also those that it has already, whose files were fetched as \a
/// files. It may be asked once more: after a refused login everything was fetched anew.
using WantedSource =
    std::function<Outcome(RecorderSession &session, const FileContents &files, QList<WantedValue> &wanted)>;

/// Fetches the files of a recorder, makes edits, sends the files that these need and fetches the files once
/// more to compare the values, all under the lock of the recorder (snapshots/RecorderLock.h). The report
/// tells what was changed, also when the save has failed; the text for people of a single recorder is printed
/// that far before anything is sent. \a rest tells what a run has come to that has done
/// everything else.
void runEdits(const ControlCommandLine &line, const WantedSource &source, const CommandEnd &end,
              const std::function<Outcome()> &rest = {});

} // namespace paravue
