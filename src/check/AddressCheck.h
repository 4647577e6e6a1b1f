#pragma once

#include "check/IniFolder.h"

#include <QDomElement>
#include <QSet>

#include <optional>

namespace paravue
{

class ConfigAddress;
class ProblemList;

/// Checks configuration addresses: their form, whether a session has the file, and, when there is a folder of
/// files, whether the key is there.
class AddressCheck
{
public:
    /// Reads and checks the list of files under \a root, if it has one.
    AddressCheck(const QDomElement &root, const QString &filesFolder, ProblemList &problems);

    /// The name of a configuration file. False when there is no such file.
    bool file(const QDomElement &at, const QString &name);
    /// An address that is read: file/section/key, perhaps with a default.
    void value(const QDomElement &at, const QString &address);
    /// An address that is written: file/section/key/value.
    void assignment(const QDomElement &at, const QString &address);
    /// What the addresses of several values begin with: file/section. One of them, unless it is empty, is the
    /// prefix with \a member behind it.
    void group(const QDomElement &at, const QString &prefix, const QString &member = {});
    /// An address whose section and key are regular expressions.
    void pattern(const QDomElement &at, const QString &address);
    /// An address that gets the numbers of rows put behind it, from 0 to as many as the value at \a count.
    void rows(const QDomElement &at, const QString &address, const QString &count = {});

private:
    void readOwnFiles(const QDomElement &list);
    void ownFile(const QDomElement &file, bool isFirst);
    void key(const QDomElement &at, const ConfigAddress &address);

    ProblemList &m_problems;
    IniFolder m_folder;
    QSet<QString> m_builtIn;
    std::optional<QSet<QString>> m_own; ///< the files of the description's own list
    QSet<QString> m_reported;           ///< files and addresses that were complained about
};

} // namespace paravue
