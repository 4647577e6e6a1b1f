#pragma once

#include "store/OrbSetup.h"

#include <QByteArray>
#include <QFile>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include <utility>

namespace paravue::test
{

/// A store without a recorder: its files stand in a temporary folder, and its load() completes at once.
class StoreFixture
{
public:
    /// \a files gives the content of each file by its name in the store.
    explicit StoreFixture(const QMap<QString, QByteArray> &files)
    {
        m_store.setProperty("offline", true);
        QObject::connect(&m_store, &OrbSetup::pseudothrow, &m_store,
                         [this](const QString &text) { m_errors << text; });
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            setFile(file.key(), file.value());
    }

    OrbSetup &store() { return m_store; }
    /// Writes the file \a name, new or again, as a fetch would.
    void setFile(const QString &name, const QByteArray &content)
    {
        const QString path = m_folder.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Cannot write %s", qPrintable(path));
        m_store.setFilePath(name, path);
    }
    /// The file \a name as it is on the disk.
    QByteArray content(const QString &name)
    {
        QFile file(m_store.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
    }
    /// What the store has reported since the last call.
    QStringList takeErrors() { return std::exchange(m_errors, {}); }

private:
    QTemporaryDir m_folder; // outlives the store, which writes its files at its end
    OrbSetup m_store;
    QStringList m_errors;
};

} // namespace paravue::test
