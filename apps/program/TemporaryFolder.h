#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace paravue
{

/// A folder for the files of one run of a program, which only the user can read. It is removed with this
/// object; that of a program that was killed is removed when the next one is made.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    Q_DISABLE_COPY_MOVE(TemporaryFolder)

    bool isValid() const { return m_lock != nullptr; }
    QString errorString() const;
    /// Empty when the folder could not be made.
    QString path() const { return isValid() ? m_files : QString(); }

private:
    QTemporaryDir m_folder;
    QString m_files; ///< within the folder, so that the lock does not stand among the files
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace paravue
