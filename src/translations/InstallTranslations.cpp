#include "translations/InstallTranslations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

#include <memory>

// Q_INIT_RESOURCE() has to be used outside of all namespaces.
static void registerTranslations()
{
    Q_INIT_RESOURCE(translations);
}

namespace paravue
{

namespace
{

const QString english = QStringLiteral("en");

/// What one call has installed. The application owns it, and it owns the translators.
class InstalledTranslations : public QObject
{
public:
    InstalledTranslations(const QString &language, QCoreApplication &application)
        : QObject(&application), language(language)
    {
    }

    bool install(const QString &name, const QStringList &folders)
    {
        auto translator = std::make_unique<QTranslator>(this);
        for (const QString &folder : folders) {
            if (translator->load(name, folder))
                return QCoreApplication::installTranslator(translator.release());
        }
        return false;
    }

    const QString language;
};

QString packedFolder()
{
    return QStringLiteral(":/paravue/translations");
}

/// "ru" for "ru-RU" and "ru_RU".
QString withoutTerritory(QString name)
{
    return name.replace(u'_', u'-').section(u'-', 0, 0).toLower();
}

bool isTranslatedInto(const QString &language)
{
    return QFile::exists(QStringLiteral("%1/paravue_%2.qm").arg(packedFolder(), language));
}

QString firstTranslated(const QStringList &languages)
{
    for (const QString &name : languages) {
        const QString language = withoutTerritory(name);
        if (language == english || isTranslatedInto(language))
            return language;
    }
    return english;
}

/// The desktop's own locale knows how its user writes dates.
void setDefaultLocale(const QString &language)
{
    const QLocale desktop = QLocale::system();
    const QLocale plain(language);
    const bool isOfDesktop =
        desktop.language() == plain.language() || (language == english && desktop.language() == QLocale::C);
    QLocale::setDefault(isOfDesktop ? desktop : plain);
}

} // namespace

QString installTranslations(const QStringList &languages)
{
    static QPointer<InstalledTranslations> installed;
    registerTranslations();
    const QString language = firstTranslated(languages);
    if (installed && installed->language == language)
        return language;
    delete installed;
    setDefaultLocale(language);
    installed = new InstalledTranslations(language, *QCoreApplication::instance());
    if (language != english) {
        installed->install(QStringLiteral("qtbase_") + language,
                           {QLibraryInfo::path(QLibraryInfo::TranslationsPath), packedFolder()});
        installed->install(QStringLiteral("paravue_") + language, {packedFolder()});
    }
    return language;
}

QString installTranslations()
{
    return installTranslations(QLocale::system().uiLanguages());
}

} // namespace paravue
