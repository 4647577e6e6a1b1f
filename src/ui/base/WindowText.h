#pragma once

#include <QCoreApplication>

namespace paravue
{

/// What the setup window says: WindowText::tr(). Its translations stand under the window's own name,
/// whichever class says it.
class WindowText
{
    Q_DECLARE_TR_FUNCTIONS(CWinMain)
};

} // namespace paravue
