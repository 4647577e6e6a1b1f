#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace paravue
{

/// The local copies of a session: temporary files that are readable by their owner only and removed with this
/// object.
///
/// They are held by their paths: a toolkit temporary file keeps its descriptor for as long as it lives, and a
/// session with some hundred functions would run out of them.
class LocalFiles
{
public:
    LocalFiles() = default;
    ~LocalFiles();
    Q_DISABLE_COPY_MOVE(LocalFiles)

    /// The path of a new file with \a content; empty when it cannot be written whole.
    QString add(const QByteArray &content);

private:
    QStringList m_paths;
};

} // namespace paravue
