#pragma once

#include <QString>
#include <QTemporaryDir>

namespace paravue::test
{

/// While it lives, what programs keep for the user goes to a temporary folder: settings, and the sockets of a
/// companion. Programs that a test starts inherit that.
class OwnUserFolders
{
public:
    OwnUserFolders()
    {
        qputenv("PARAVUE_DATA_HOME", m_folder.path().toLocal8Bit());
#ifndef Q_OS_WIN
        for (const char *variable : {"XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
            qputenv(variable, m_folder.path().toLocal8Bit());
#endif
    }

    QString settingsPath() const
    {
        return m_folder.filePath("Paravue/settings.ini");
    }

private:
    QTemporaryDir m_folder;
};

} // namespace paravue::test
