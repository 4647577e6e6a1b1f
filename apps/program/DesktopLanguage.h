#pragma once

class QCoreApplication;

namespace paravue
{

/// Shows the texts of \a application in the first language of its user that there are translations into, for
/// programs without the library. English needs none. The default locale becomes that of the language, so that
/// numbers fit.
void useDesktopLanguage(QCoreApplication &application);

} // namespace paravue
