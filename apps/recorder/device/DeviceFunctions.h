#pragma once

#include "recorder/device/MailStore.h"
#include "recorder/protocol/Answers.h"
#include "recorder/protocol/CommandTable.h"

#include <QMap>

namespace recorder
{

class DataFolder;

/// The functions of the recorder. Their effects are changes of the files in its data folder.
class DeviceFunctions
{
public:
    explicit DeviceFunctions(const DataFolder &folder) : m_folder(folder), m_mails(folder) {}

    /// \a now is the reading of the clock, for reports and e-mails.
    Answer run(Function function, const QByteArray &body, const QByteArray &now) const;

private:
    Answer adjustPicture(const QByteArray &body) const;
    Answer clearEmails(const QByteArray &body) const;
    Answer format(const QByteArray &body) const;
    Answer installPackage(const QByteArray &body) const;
    Answer reboot() const;
    Answer removePackage(const QByteArray &body) const;
    Answer resetSettings() const;
    Answer sendTestEmail(const QByteArray &now) const;

    QByteArray content(const char *file) const;
    Answer store(const char *file, const QByteArray &content) const;
    Answer missingDisk(const QByteArray &disk) const;
    bool hasDisk(const QByteArray &disk) const;

    const DataFolder &m_folder;
    MailStore m_mails;
};

} // namespace recorder
