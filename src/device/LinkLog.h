#pragma once

#include <QLoggingCategory>

namespace paravue
{

/// What goes on between a store and its recorder: connections, logins, commands and the sizes of what is
/// transferred, but no contents. Off below warnings unless "paravue.link" is turned on.
Q_DECLARE_LOGGING_CATEGORY(linkLog)

} // namespace paravue
