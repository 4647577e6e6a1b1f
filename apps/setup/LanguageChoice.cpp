#include "LanguageChoice.h"

#include "store/OrbSetup.h"

#include <QApplication>
#include <QFile>
#include <QXmlStreamReader>

#include <optional>

namespace paravue
{

namespace
{

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
    : m_store(store), m_language(language)
{
    if (!language.isEmpty())
        connect(&store, &OrbSetup::loadDone, this, &LanguageChoice::choose,
                static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection));
}

void LanguageChoice::choose()
{
    const auto languages = languagesOf(m_store.filePath(QStringLiteral("interface")));
    if (!languages)
        return;
    if (languages->contains(m_language)) {
        m_store.setValue(QStringLiteral("streams/common/language/") + m_language);
        return;
    }
    m_problem = languages->isEmpty()
                    ? tr("the recorder's description has no translations, so --language cannot choose one")
                    : tr("the recorder's description has no texts in the language \"%1\", only in: %2")
                          .arg(m_language, languages->join(QStringLiteral(", ")));
    QMetaObject::invokeMethod(qApp, &QApplication::closeAllWindows, Qt::QueuedConnection);
}

} // namespace paravue
