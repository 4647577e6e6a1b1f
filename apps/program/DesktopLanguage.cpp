#include "program/DesktopLanguage.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <memory>

// Q_INIT_RESOURCE() has to be used outside of all namespaces.
static void registerTranslations()
{
    Q_INIT_RESOURCE(program_translations);
}

namespace paravue
{

namespace
{

bool install(QCoreApplication &application, const QString &name)
{
    auto translator = std::make_unique<QTranslator>(&application);
    return translator->load(name, QStringLiteral(":/paravue/translations")) &&
           QCoreApplication::installTranslator(translator.release());
}

} // namespace

void useDesktopLanguage(QCoreApplication &application)
{
    registerTranslations();
    QLocale::setDefault(QLocale(QLocale::English));
    for (const QString &name : QLocale::system().uiLanguages()) {
        const QString language = name.section(u'-', 0, 0);
        if (language == u"en")
            return;
        if (install(application, QStringLiteral("paravue_") + language)) {
            install(application, QStringLiteral("qtbase_") + language);
            QLocale::setDefault(QLocale(language));
            return;
        }
    }
}

} // namespace paravue
