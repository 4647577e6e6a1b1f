#pragma once

#include "ui/description/StoreReference.h"

#include <QString>
#include <QStringList>

namespace paravue
{

class InterfaceDocument;

/// A visible text as the user sees it, and the configuration addresses whose values are part of it.
struct ResolvedText {
    QString text;
    QStringList addresses;
    bool withinLimits = true; ///< false when the text was too large and was left as written
};

/// Turns the texts of a description into what the user sees: "@id" is looked up in the translation table in
/// the language of the recorder, "{file/section/key/default}" is replaced by the value at that address.
class TextResolver
{
public:
    /// Both must outlive the resolver.
    TextResolver(const InterfaceDocument &document, OrbSetup &store);

    /// Where the recorder keeps its language; all translated texts depend on it.
    static const QString LanguagePath;

    ResolvedText resolve(const QString &raw) const;

private:
    QString language() const;
    bool insertTranslations(QString &text) const;
    bool insertValues(ResolvedText &result) const;

    const InterfaceDocument &m_document;
    StoreReference m_store;
};

} // namespace paravue
