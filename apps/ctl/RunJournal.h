#pragma once

#include "Outcome.h"

#include <QFile>
#include <QSet>
#include <QString>

namespace paravue
{

struct ControlCommandLine;

/// A file that tells with which recorders a command was done, so that an interrupted run can be taken up
/// again: a line of JSON with the digest of the command, then one for each recorder.
class RunJournal
{
public:
    /// Reads the file at \a path, or begins it. One of another command is refused.
    Outcome open(const QString &path, const ControlCommandLine &line);

    bool contains(const QString &recorder) const { return m_done.contains(recorder); }
    /// False when it cannot be written. Without a file nothing is noted.
    bool note(const QString &recorder);

private:
    QFile m_file;
    QSet<QString> m_done;
};

} // namespace paravue
