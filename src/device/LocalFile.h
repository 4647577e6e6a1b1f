#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace paravue
{

/// A temporary file that is readable by its owner only and removed with this object.
///
/// It is held by its path: a toolkit temporary file keeps its descriptor for as long as it lives, and a
/// session with some hundred functions would run out of them.
class LocalFile
{
public:
    /// Null when the file cannot be created or written whole.
    static std::unique_ptr<LocalFile> create(const QByteArray &content);

    LocalFile(const LocalFile &) = delete;
    LocalFile &operator=(const LocalFile &) = delete;
    ~LocalFile();

    const QString &path() const { return m_path; }

private:
    explicit LocalFile(const QString &path) : m_path(path) {}

    QString m_path;
};

} // namespace paravue
