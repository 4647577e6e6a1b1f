#pragma once

#include "store/OrbSetup.h"

#include <QByteArray>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

namespace paravue::test
{

/// A store without a recorder: its files stand in a temporary folder, and its load() completes at once.
class StoreFixture
{
public:
    /// \a files gives the content of each file by its name in the store.
    explicit StoreFixture(const QMap<QString, QByteArray> &files);

    OrbSetup &store() { return m_store; }
    /// Writes the file \a name, new or again, as a fetch would.
    void setFile(const QString &name, const QByteArray &content);
    /// The file \a name as it is on the disk.
    QByteArray content(const QString &name);
    /// What the store has reported since the last call.
    QStringList takeErrors() { return std::exchange(m_errors, {}); }

private:
    QTemporaryDir m_folder; // outlives the store, which writes its files at its end
    OrbSetup m_store;
    QStringList m_errors;
};

} // namespace paravue::test
