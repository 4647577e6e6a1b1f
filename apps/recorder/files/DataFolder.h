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

    /// The shipped models; the first is the default. The others have only the files that differ from it.
    static QStringList models();

    /// Creates the folder and, when it is empty, copies the model into it. False, with \a error set, when
    /// that fails.
    bool prepare(QString &error) const;

    QString filePath(const QString &name) const;
    std::optional<QByteArray> read(const QString &name) const;
    /// The file as the model has it.
    std::optional<QByteArray> shipped(const QString &name) const;
    /// Replaces the whole file; on failure the old one is unchanged.
    bool replace(const QString &name, const QByteArray &content) const;

private:
    QString shippedPath(const QString &fileName) const;

    QString m_path;
    QString m_model;
};

} // namespace recorder
