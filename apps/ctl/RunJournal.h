#pragma once

#include "Outcome.h"

#include <QFile>
#include <QHash>
#include <QString>

#include <memory>

class QLockFile;

namespace paravue
{

struct ControlCommandLine;

/// A file that tells with which recorders a command was done, so that an interrupted run can be taken up
/// again: a line of JSON with the digest of the command, then one for each recorder with the digest of what
/// was done there. One run uses it at a time.
class RunJournal
{
public:
    RunJournal();
    ~RunJournal();
    Q_DISABLE_COPY_MOVE(RunJournal)

    /// Reads the file at \a path, or begins it. One of another command is refused.
    Outcome open(const QString &path, const ControlCommandLine &line);

    /// A digest of what the command \a line of one recorder comes to: its words, its values and the contents
    /// of the files that it names. Without a journal it is empty.
    QString workOf(const ControlCommandLine &line);
    /// Whether this work is what was last done with \a recorder.
    bool contains(const QString &recorder, const QString &work) const;
    /// Without a journal nothing is noted.
    Outcome note(const QString &recorder, const QString &work);

private:
    Outcome lock(const QString &path);
    Outcome cannotWrite() const;
    QString digestOfFile(const QString &path);

    std::unique_ptr<QLockFile> m_lock;
    QFile m_file;
    QHash<QString, QString> m_done;     ///< the last work by the name of the recorder
    QHash<QString, QString> m_contents; ///< digests of files, by path
};

} // namespace paravue
