#pragma once

#include "store/LogText.h"

#include <QLoggingCategory>
#include <QString>

namespace paravue
{

/// What goes on between a store and its recorder: connections, logins, commands and the sizes of what is
/// transferred, but no contents. Off below warnings unless "paravue.link" is turned on. Each line begins with
/// the linkLogName() of its store, as several may be at work.
Q_DECLARE_LOGGING_CATEGORY(linkLog)

/// Which recorder a line is about, from the \a address of a store: without its login.
inline QString linkLogName(const QString &address)
{
    const qsizetype hostSign = address.lastIndexOf(u'@');
    return hostSign < 0 ? QString() : logText(address.sliced(hostSign + 1)) + u':';
}

} // namespace paravue
