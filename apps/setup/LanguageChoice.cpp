#include "LanguageChoice.h"

#include "store/OrbSetup.h"
#include "translations/InstallTranslations.h"

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QXmlStreamReader>

#include <optional>

namespace paravue
{

namespace
{

const QString languagePath = QStringLiteral("streams/common/language");
const QString usualLanguage = QStringLiteral("ru"); ///< of a recorder that names none

/// The languages that the description in the file at \a path has texts in. Nothing when it cannot be read,
/// which is for the window to tell.
std::optional<QStringList> languagesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    QStringList languages;
    if (!xml.readNextStartElement())
        return {};
    while (xml.readNextStartElement()) {
        if (xml.name() != u"translations") {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            languages << xml.name().toString();
            xml.skipCurrentElement();
        }
        break;
    }
    if (xml.hasError())
        return {};
    languages.removeDuplicates();
    return languages;
}

} // namespace

LanguageChoice::LanguageChoice(OrbSetup &store, const QString &language)
    : m_store(&store), m_language(language)
{
    connect(&store, &OrbSetup::loadDone, this, &LanguageChoice::choose);
    store.addObserver(*this);
}

LanguageChoice::~LanguageChoice()
{
    if (m_store)
        m_store->removeObserver(*this);
}

void LanguageChoice::choose()
{
    const auto languages = languagesOf(m_store->filePath(QStringLiteral("interface")));
    if (!languages)
        return;
    m_offered = *languages;
    if (m_language.isEmpty() || m_isChosen)
        return follow();
    m_isChosen = true; // from now on its user may choose another one
    if (m_offered.contains(m_language)) {
        m_store->setValue(languagePath + u'/' + m_language);
        return follow();
    }
    m_problem = m_offered.isEmpty()
                    ? tr("the recorder's description has no translations, so --language cannot choose one")
                    : tr("the recorder's description has no texts in the language \"%1\", only in: %2")
                          .arg(m_language, m_offered.join(QStringLiteral(", ")));
    QMetaObject::invokeMethod(qApp, &QApplication::closeAllWindows, Qt::QueuedConnection);
}

void LanguageChoice::valueSet(const QString &path, const std::optional<QString> &)
{
    if (path == languagePath)
        follow();
}

/// A description without texts in the language of the recorder says nothing about what its user reads.
void LanguageChoice::follow()
{
    QStringList languages = QLocale::system().uiLanguages();
    const QString shown = m_store->fileExists(QStringLiteral("streams"))
                              ? m_store->value(languagePath + u'/' + usualLanguage)
                              : usualLanguage;
    if (m_offered.contains(shown))
        languages.prepend(shown);
    installTranslations(languages);
}

} // namespace paravue
