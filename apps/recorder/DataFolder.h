#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace recorder
{

/// The folder with the recorder's configuration files.
class DataFolder
{
public:
    explicit DataFolder(const QString &path);

    /// Makes the folder and, when it holds nothing yet, copies the shipped model into it. False, with a text
    /// in error, when that fails.
    bool prepare(QString &error) const;

    QString filePath(const QString &name) const;
    std::optional<QByteArray> read(const QString &name) const;
    /// The file as it is shipped.
    static std::optional<QByteArray> shipped(const QString &name);
    /// Replaces the file whole; when this fails the old one stays as it was.
    bool replace(const QString &name, const QByteArray &content) const;

private:
    QString m_path;
};

} // namespace recorder
