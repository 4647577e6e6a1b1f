#pragma once

#include <QCoreApplication>
#include <QString>

namespace paravue
{

/// Translates \a text. What the parts of the setup window say is looked up under the window's own name,
/// whichever class says it.
inline QString tr(const char *text)
{
    return QCoreApplication::translate("CWinMain", text);
}

} // namespace paravue
