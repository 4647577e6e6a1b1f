#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

class OrbSetup;

namespace paravue
{

/// The names of the state files: only in these are directives carried out.
QSet<QString> stateFiles(OrbSetup &store);

/// The files that bring the edits of the values \a paths, "file/section/key", to the recorder: those that
/// hold them, and each state file whose directives ask for one of them. In the order of their names, and
/// without files that no save sends.
///
/// A save of the setup window sends all files. A program that sets single values sends these: what somebody
/// else has changed meanwhile in other files stays.
QStringList editedFiles(OrbSetup &store, const QSet<QString> &paths);

} // namespace paravue
