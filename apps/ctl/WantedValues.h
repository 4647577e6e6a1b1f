#pragma once

#include "Outcome.h"
#include "snapshots/Snapshot.h"

#include <QList>
#include <QString>

#include <optional>

class OrbSetup;

namespace paravue
{

class RecorderSession;
struct ControlCommandLine;

/// A value that is to be set.
struct WantedValue {
    QString path;                 ///< "file/section/key"
    std::optional<QString> value; ///< nothing: the key is to be as if it had never been set
};

/// Reads what the arguments of \a line and its file of values say, and what its inventory says besides. No
/// problem repeats a value, which may be a password.
Outcome readWantedValues(const ControlCommandLine &line, QList<WantedValue> &wanted);

/// The same of the file at \a path.
Outcome readWantedValues(const QString &path, QList<WantedValue> &wanted);

/// Whether \a store has the value already. Recorders drop keys without a value, so no key is an empty value.
bool isPresent(const WantedValue &wanted, OrbSetup &store);

/// Which of \a wanted the description among \a files does not allow. Values that the recorder has already are
/// not judged, as they are not sent. Without a description that can be read there are no rules.
Outcome checkAgainstDescription(const QList<WantedValue> &wanted, RecorderSession &session,
                                const FileContents &files);

/// What keeps \a wanted from being set at the recorder, whose files were fetched as \a files. Forced are keys
/// that the recorder does not have, and values that its description does not allow.
Outcome checkWantedValues(const QList<WantedValue> &wanted, RecorderSession &session,
                          const FileContents &files, bool isForced);

} // namespace paravue
