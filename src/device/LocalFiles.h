#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;

namespace paravue
{

class SessionFolder;

/// The local copies of a session: files in a temporary folder of its own that are readable by their owner
/// only and removed with this object. Of the copies of one name only the newest few are kept, so that a long
/// session with a periodic report does not fill the disk. What a session could not remove, because its
/// program was killed, the next one removes at its beginning.
///
/// They are held by their paths: a session with some hundred functions would run out of descriptors.
class LocalFiles
{
public:
    LocalFiles();
    ~LocalFiles();
    Q_DISABLE_COPY_MOVE(LocalFiles)

    /// The path of a new file with \a content for \a name; empty when it cannot be written whole.
    QString add(const QString &name, const QByteArray &content);
    /// True when the file at \a path is removed with this object.
    bool holds(const QString &path) const;
    /// Removes the newest file of \a name.
    void takeBack(const QString &name);

private:
    bool open(QFile &file);

    std::unique_ptr<SessionFolder> m_folder; ///< made for the first copy
    int m_count = 0;                         ///< files that were made
    QHash<QString, QStringList> m_paths;     ///< by name, the oldest first
};

} // namespace paravue
