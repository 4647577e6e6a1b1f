#pragma once

#include "recorder/device/DeviceFunctions.h"
#include "recorder/device/RecorderClock.h"
#include "recorder/files/Accounts.h"
#include "recorder/files/DataFolder.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/CommandTable.h"

namespace recorder
{

/// Executes the requests of configuration clients, whatever way they arrive, on the files, the accounts and
/// the clock.
class ConfigService
{
public:
    ConfigService(const QString &dataDir, const QString &model);

    const DataFolder &folder() const { return m_folder; }
    RecorderClock &clock() { return m_clock; }

    QList<Account> accounts() const;
    std::optional<Account> login(const QByteArray &name, const QByteArray &password) const;
    /// Administrators always may, operators if the file "users" allows it.
    bool mayTurnCameras(const Account &account) const;
    Answer get(const QString &file);
    /// Stores the body, or answers why not.
    Answer put(const QString &file, const QByteArray &body, const Account &account);
    /// Executes the command, or answers why not.
    Answer run(const Command &command, const QByteArray &body, const Account &account) const;

private:
    struct Packed {
        QByteArray plain;
        QByteArray gzip;
    };

    QByteArray packedInterface(const QByteArray &plain);
    QByteArray withClock(const QByteArray &timeFile) const;
    QString fault(const QString &file, const QByteArray &body, const Account &account) const;
    QString usersFault(const QByteArray &body, const Account &account) const;
    QString timeFault(const QByteArray &body) const;
    QByteArray mergedTime(const QByteArray &body) const;
    void setClock(const QByteArray &sent, const QByteArray &timeFile) const;

    DataFolder m_folder;
    RecorderClock m_clock;
    DeviceFunctions m_functions;
    Packed m_interface; // the last description sent, so that it is compressed once
};

} // namespace recorder
