#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace recorder
{

/// The folder with the recorder's configuration files.
class DataFolder
{
public:
    /// \a model is one of models().
    DataFolder(const QString &path, const QString &model);

    /// The shipped models; the first one is the usual one. The others have just the files that differ from
    /// it.
    static QStringList models();

    /// Makes the folder and, when it holds nothing yet, copies the model into it. False, with a text
    /// in error, when that fails.
    bool prepare(QString &error) const;

    QString filePath(const QString &name) const;
    std::optional<QByteArray> read(const QString &name) const;
    /// The file as it is shipped.
    std::optional<QByteArray> shipped(const QString &name) const;
    /// Replaces the file whole; when this fails the old one stays as it was.
    bool replace(const QString &name, const QByteArray &content) const;

private:
    QString shippedPath(const QString &fileName) const;

    QString m_path;
    QString m_model;
};

} // namespace recorder
