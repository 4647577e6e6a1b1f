#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace paravue
{

class SnapshotFolder;

/// Keeps programs that change settings without a window from doing so at the same time with one recorder. The
/// lock is a file beside the snapshots of the recorder, "changing.lock"; one of a program that has crashed
/// does not count.
class RecorderLock
{
public:
    /// Tries once to take the lock, which is given back with the object.
    explicit RecorderLock(const SnapshotFolder &folder);

    /// Why it was not taken, with who holds it, in words for the user; empty when it was.
    QString problem() const { return m_problem; }

private:
    std::unique_ptr<QLockFile> m_file;
    QString m_problem;
};

/// Removes the file of a QLockFile that names no process. The name is written a moment after the file was
/// made; a program that is killed meanwhile leaves a file without one, which would hold the lock for ever.
void removeUnnamedLock(const QString &path);

} // namespace paravue
