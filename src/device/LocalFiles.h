#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>

namespace paravue
{

class SessionFolder;

/// The local copies of a session: files in a temporary folder of its own that are readable by their owner
/// only and removed with this object. Of the copies of one name only the newest few are kept, so that a long
/// session with a periodic report does not fill the disk. What a session could not remove, because its
/// program was killed, the next one removes at its beginning.
///
/// They are held by their paths: a QTemporaryFile keeps its descriptor for as long as it lives, and a
/// session with some hundred functions would run out of them.
class LocalFiles
{
public:
    LocalFiles();
    ~LocalFiles();
    Q_DISABLE_COPY_MOVE(LocalFiles)

    /// The path of a new file with \a content for \a name; empty when it cannot be written whole.
    QString add(const QString &name, const QByteArray &content);
    /// Removes the newest file of \a name.
    void takeBack(const QString &name);

private:
    std::unique_ptr<SessionFolder> m_folder; ///< made for the first copy
    QHash<QString, QStringList> m_paths;     ///< by name, the oldest first
};

} // namespace paravue
