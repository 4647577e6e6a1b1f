#pragma once

#include "Outcome.h"
#include "SecretValues.h"
#include "snapshots/SnapshotDifferences.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace paravue
{

struct ControlCommandLine;

/// The settings of a recorder, a snapshot, a folder of configuration files or a file of wanted values.
struct SettingsSource {
    QString name; ///< as messages call it; never with a password
    ConfigurationValues values;
    QStringList leftOut; ///< as SnapshotInfo::leftOut
    SecretValues secrets;
    bool isPartial = false; ///< it tells nothing of values that it lacks
};

/// True when \a text names a file or folder of this computer rather than a recorder.
bool isLocalSource(const QString &text);

/// Reads the snapshot at \a path.
Outcome readSnapshot(const QString &path, Snapshot &snapshot);

/// Reads what \a text names; a recorder with the options of \a line. The handler may be called within this
/// call. Its problem names the source.
using SourceHandler = std::function<void(const Outcome &, const SettingsSource &)>;
void readSource(const QString &text, const ControlCommandLine &line, const SourceHandler &then);

} // namespace paravue
