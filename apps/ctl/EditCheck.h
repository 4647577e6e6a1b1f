#pragma once

#include "Outcome.h"
#include "snapshots/Snapshot.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

class OrbSetup;

namespace paravue
{

struct Change;

/// Adds to \a changes what state files have otherwise than their directives make it of the values \a present,
/// which the recorder has already: an earlier save has ended before it came to these files.
void addStaleStates(QList<Change> &changes, OrbSetup &store, const QSet<QString> &present);

/// What would be destroyed by sending the files \a sent of \a store, which were fetched as \a files and have
/// edits of the values \a edited.
Outcome checkWriting(const QStringList &edited, const QStringList &sent, OrbSetup &store,
                     const FileContents &files);

} // namespace paravue
