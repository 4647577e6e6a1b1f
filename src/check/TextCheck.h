#pragma once

#include "check/TextMarkup.h"

#include <QDomElement>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <map>

namespace paravue
{

class AddressCheck;
class ProblemList;

/// Checks the visible texts of a description and its translations.
class TextCheck
{
public:
    TextCheck(const QDomElement &root, AddressCheck &addresses, ProblemList &problems);

    /// A text in which the window replaces references, such as the parameter of a call.
    void resolved(const QDomElement &at, const QString &text);
    /// A text that the window shows too, in the language of the recorder.
    void visible(const QDomElement &at, const QString &text, TextPlace place);
    /// The captions of tabs beside each other.
    void tabs(const QList<QDomElement> &names);
    /// To be called after all texts: reports missing translations.
    void finish();

    bool hasLanguage(const QString &language) const { return m_texts.contains(language); }

private:
    struct Reference {
        QString id;
        qsizetype position = 0;
    };
    using Texts = QMap<QString, QDomElement>;

    void readLanguage(const QDomElement &language);
    void use(const QString &id, const QDomElement &at);
    void translation(const QString &language, const QDomElement &element);
    void values(const QDomElement &at, const QString &text);
    void markup(const QDomElement &at, const QString &text, TextPlaces places);
    void lacking(const QDomElement &translation);
    QStringList missingLanguages(const QString &id) const;
    void untranslated(const QDomElement &at, const QString &text);
    QString captionIn(const QString &language, const QString &text) const;
    void endless(const QString &language, const Texts &texts);
    QList<Reference> references(const QString &text) const;
    bool isTranslated(const QString &language, const QString &id) const;
    QString advice(const QString &id) const;

    AddressCheck &m_addresses;
    ProblemList &m_problems;
    QDomElement m_table;                 ///< the first of them
    std::map<QString, Texts> m_texts;    ///< by language, then by id
    QStringList m_languages;             ///< in the order of the document
    QHash<QString, int> m_known;         ///< in how many languages an id has a text
    QHash<QString, QDomElement> m_used;  ///< where an id is used first
    QHash<QString, TextPlaces> m_places; ///< where ids are whole texts
};

} // namespace paravue
