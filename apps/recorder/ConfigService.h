#pragma once

#include "Accounts.h"
#include "Answers.h"
#include "DataFolder.h"
#include "RecorderClock.h"

#include <QHash>

namespace recorder
{

/// What the recorder does with a request, apart from how it arrives: it knows the files, the accounts and the
/// clock.
class ConfigService
{
public:
    explicit ConfigService(const QString &dataDir);

    const DataFolder &folder() const { return m_folder; }

    std::optional<Account> login(const QByteArray &name, const QByteArray &password) const;
    Answer get(const QString &file);
    /// Keeps the body, or says why not.
    Answer put(const QString &file, const QByteArray &body, const Account &account);

private:
    struct Packed {
        QByteArray plain;
        QByteArray gzip;
    };

    QByteArray packedInterface(const QByteArray &plain);
    QByteArray withClock(const QByteArray &timeFile) const;
    QString fault(const QString &file, const QByteArray &body, const Account &account) const;
    QString usersFault(const QByteArray &body, const Account &account) const;
    QByteArray mergedTime(const QByteArray &body) const;
    void setClock(const QByteArray &timeFile);

    DataFolder m_folder;
    RecorderClock m_clock;
    Packed m_interface; // the last description sent, so that it is packed once
};

} // namespace recorder
