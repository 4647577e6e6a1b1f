#pragma once

#include <QByteArrayList>

namespace recorder
{

class DataFolder;

/// The e-mails that the recorder keeps on its disks, in the file "emails": one line each, the name of the
/// disk in front ("DISC1 2024-05-01 11:58:02 to guard@example.net: Motion"). Beyond a limit the oldest are
/// removed.
class MailStore
{
public:
    explicit MailStore(const DataFolder &folder) : m_folder(folder) {}

    bool add(const QByteArray &disk, const QByteArray &mail) const;
    bool clear(const QByteArray &disk) const;

    int count(const QByteArray &disk) const;
    /// The newest one of all disks, without the name of its disk.
    QByteArray last() const;

private:
    QByteArrayList lines() const;
    bool keep(const QByteArrayList &lines) const;

    const DataFolder &m_folder;
};

} // namespace recorder
