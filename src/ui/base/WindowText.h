#pragma once

#include <QCoreApplication>

namespace paravue
{

/// Translates the texts of the setup window: WindowText::tr(). They share the translation context "CWinMain",
/// whichever class shows them.
class WindowText
{
    Q_DECLARE_TR_FUNCTIONS(CWinMain)
};

} // namespace paravue
