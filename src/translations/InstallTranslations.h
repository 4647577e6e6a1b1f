#pragma once

#include "ParavueSetupExport.h"

#include <QString>
#include <QStringList>

namespace paravue
{

/// Shows the texts of the library in the first of \a languages that they exist in, and Qt's own texts
/// (standard buttons, file dialogs) too. Languages are named as QLocale::uiLanguages() names them: "ru",
/// "ru-RU". English is always there, and is taken when there is nothing else. Returns the language that was
/// taken, such as "ru".
///
/// The translators are installed into the QCoreApplication, which must exist; they replace those of an
/// earlier call. The default QLocale becomes one of that language, so that dates and numbers fit the texts;
/// it stays the desktop's when that has the same language. Open windows follow: they get
/// QEvent::LanguageChange.
///
/// The library never calls it by itself: without this call its texts are English, or those of a QTranslator
/// of the host.
PARAVUE_EXPORT QString installTranslations(const QStringList &languages);

/// The same with the languages that the user of this computer has chosen.
PARAVUE_EXPORT QString installTranslations();

} // namespace paravue
