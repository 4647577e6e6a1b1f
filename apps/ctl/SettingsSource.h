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
struct WantedValue;

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

/// \a wanted values as a source of the name \a name.
SettingsSource sourceOf(const QList<WantedValue> &wanted, const QString &name);

/// Reads the snapshot at \a path.
Outcome readSnapshot(const QString &path, Snapshot &snapshot);

/// Reads the recorder of \a line, or what \a text names, a recorder with the options of \a line. The handler
/// may be called within the call. Its problem names the source of \a text.
using SourceHandler = std::function<void(const Outcome &, const SettingsSource &)>;
void readRecorder(const ControlCommandLine &line, const SourceHandler &then);
void readSource(const QString &text, const ControlCommandLine &line, const SourceHandler &then);

} // namespace paravue
