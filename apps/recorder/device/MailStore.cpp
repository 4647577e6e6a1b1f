#include "recorder/device/MailStore.h"

#include "recorder/files/DataFolder.h"

#include <algorithm>

namespace recorder
{

namespace
{

const QString MailFile = QStringLiteral("emails");
constexpr qsizetype MaxMails = 1000;

} // namespace

QByteArrayList MailStore::lines() const
{
    QByteArrayList lines = m_folder.read(MailFile).value_or(QByteArray()).split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

bool MailStore::keep(const QByteArrayList &lines) const
{
    const qsizetype first = std::max<qsizetype>(0, lines.size() - MaxMails);
    return m_folder.replace(MailFile, lines.mid(first).join('\n') + '\n');
}

bool MailStore::add(const QByteArray &disk, const QByteArray &mail) const
{
    QByteArrayList all = lines();
    all.append(disk + ' ' + QByteArray(mail).replace('\n', ' '));
    return keep(all);
}

bool MailStore::clear(const QByteArray &disk) const
{
    QByteArrayList left = lines();
    left.removeIf([&](const QByteArray &line) { return line.startsWith(disk + ' '); });
    return keep(left);
}

int MailStore::count(const QByteArray &disk) const
{
    const QByteArrayList all = lines();
    return int(std::count_if(all.begin(), all.end(),
                             [&](const QByteArray &line) { return line.startsWith(disk + ' '); }));
}

QByteArray MailStore::last() const
{
    const QByteArrayList all = lines();
    return all.isEmpty() ? QByteArray() : all.last().mid(all.last().indexOf(' ') + 1);
}

} // namespace recorder
