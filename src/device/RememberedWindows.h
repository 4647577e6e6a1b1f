#pragma once

#include "ParavueSetupExport.h"

#include <QByteArray>
#include <QString>

namespace paravue
{

/// WindowOptions::memory in the user's settings file of the library, where the remembered logins are. Where
/// that cannot be written nothing is remembered, and a warning is logged.
PARAVUE_EXPORT QByteArray rememberedWindow(const QString &key);
PARAVUE_EXPORT void rememberWindow(const QString &key, const QByteArray &value);

} // namespace paravue
