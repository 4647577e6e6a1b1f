#pragma once

#include "Require.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace paravue::fuzz
{

/// The files of one input, in a folder of their own.
class InputFolder
{
public:
    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// Writes the file \a name, and returns its path.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(filePath(name));
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
                "files can be written");
        return file.fileName();
    }

    QByteArray content(const QString &name) const
    {
        QFile file(filePath(name));
        require(file.open(QIODevice::ReadOnly), "the file is there");
        return file.readAll();
    }

private:
    QTemporaryDir m_folder;
};

} // namespace paravue::fuzz
