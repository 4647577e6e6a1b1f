#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

namespace paravue
{

/// The local copies of a session: temporary files that are readable by their owner only and removed with this
/// object. Of the copies of one name only the newest few are kept, so that a long session with a periodic
/// report does not fill the disk.
///
/// They are held by their paths: a QTemporaryFile keeps its descriptor for as long as it lives, and a
/// session with some hundred functions would run out of them.
class LocalFiles
{
public:
    LocalFiles() = default;
    ~LocalFiles();
    Q_DISABLE_COPY_MOVE(LocalFiles)

    /// The path of a new file with \a content for \a name; empty when it cannot be written whole.
    QString add(const QString &name, const QByteArray &content);
    /// Removes the newest file of \a name.
    void takeBack(const QString &name);

private:
    QHash<QString, QStringList> m_paths; ///< by name, the oldest first
};

} // namespace paravue
