#include "check/TextCheck.h"

#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/description/TextReferences.h"

#include <QRegularExpression>

#include <utility>
#include <vector>

namespace paravue
{
namespace
{

/// True for a text with words, as opposed to names, units and numbers, which are the same in all languages.
bool hasWords(const QString &text)
{
    static const QRegularExpression references(QStringLiteral("\\{[^{}]*\\}|@[^ .@\r\n\t]+|<[^<>]*>"));
    static const QRegularExpression word(QStringLiteral("\\p{Lu}\\p{Ll}{2,}|\\p{Ll}{4,}"));
    return word.match(QString(text).remove(references)).hasMatch();
}

} // namespace

TextCheck::TextCheck(const QDomElement &root, AddressCheck &addresses, ProblemList &problems)
    : m_addresses(addresses), m_problems(problems)
{
    const QString tag = QStringLiteral("translations");
    m_table = root.firstChildElement(tag);
    for (QDomElement table = m_table; !table.isNull(); table = table.nextSiblingElement(tag)) {
        for (QDomElement language = table.firstChildElement(); !language.isNull();
             language = language.nextSiblingElement())
            readLanguage(language);
    }
}

void TextCheck::readLanguage(const QDomElement &language)
{
    const QString name = language.tagName();
    if (!hasLanguage(name))
        m_languages.append(name);
    Texts &texts = m_texts[name];
    for (QDomElement text = language.firstChildElement(); !text.isNull(); text = text.nextSiblingElement()) {
        const QString id = text.tagName();
        if (texts.contains(id)) {
            m_problems.warning(text,
                               CheckText::tr("\"%1\" is translated twice; the first text counts").arg(id));
            continue;
        }
        texts.insert(id, text);
        if (!text.text().isEmpty())
            ++m_known[id];
    }
}

void TextCheck::visible(const QDomElement &at, const QString &text, TextPlace place)
{
    resolved(at, text);
    const QList<Reference> found = references(text);
    // In parts of a text, what looks like markup depends on the rest.
    if (found.size() == 1 && text.trimmed() == u'@' + found.first().id)
        m_places[found.first().id] |= place;
    else if (found.isEmpty())
        markup(at, text, place);
    untranslated(at, text);
}

void TextCheck::untranslated(const QDomElement &at, const QString &text)
{
    // Languages are named in themselves.
    const QString key = at.firstChildElement(QStringLiteral("key")).text();
    if (m_languages.size() > 1 && hasWords(text) &&
        !key.startsWith(QLatin1String("streams/common/language/")))
        m_problems.warning(
            at, CheckText::tr("This text is the same in all languages; \"@\" with an id would have "
                              "a translation into each"));
}

void TextCheck::markup(const QDomElement &at, const QString &text, TextPlaces places)
{
    for (const QString &problem : unintendedMarkup(text, places))
        m_problems.warning(at, problem);
}

QString TextCheck::captionIn(const QString &language, const QString &text) const
{
    const QString id = text.trimmed().mid(1);
    const bool isReference = text.trimmed().startsWith(u'@') && isTranslated(language, id);
    return isReference ? m_texts.at(language).value(id).text() : text;
}

void TextCheck::tabs(const QList<QDomElement> &names)
{
    const QStringList languages = m_languages.isEmpty() ? QStringList{QString()} : m_languages;
    for (const QString &language : languages) {
        QMap<QChar, QString> keys;
        for (const QDomElement &name : names) {
            const QString caption = m_languages.isEmpty() ? name.text() : captionIn(language, name.text());
            const QChar key = mnemonicOf(caption);
            if (!key.isNull() && keys.contains(key))
                m_problems.warning(name, CheckText::tr("Alt+%1 is the key of the tab \"%2\" already")
                                             .arg(key)
                                             .arg(keys.value(key)));
            else if (!key.isNull())
                keys.insert(key, QString(caption).remove(u'&'));
        }
    }
}

void TextCheck::resolved(const QDomElement &at, const QString &text)
{
    for (const Reference &reference : references(text)) {
        if (!m_used.contains(reference.id))
            m_used.insert(reference.id, at);
    }
    values(at, text);
}

void TextCheck::values(const QDomElement &at, const QString &text)
{
    if (const QString alone = unmatchedBraces(text); !alone.isEmpty())
        m_problems.warning(at, alone.contains(u'{')
                                   ? CheckText::tr("A \"{\" has no \"}\", so no value is shown for it")
                                   : CheckText::tr("A \"}\" has no \"{\", so no value is shown for it"));
    qsizetype position = 0;
    while (const auto braces = findBracedAddress(text, position)) {
        // A part of the address may be a translation.
        if (!braces->address.contains(u'@'))
            m_addresses.value(at, braces->address);
        position = braces->end;
    }
}

QList<TextCheck::Reference> TextCheck::references(const QString &text) const
{
    QList<Reference> found;
    for (qsizetype at = text.indexOf(u'@'); at >= 0; at = text.indexOf(u'@', at + 1)) {
        qsizetype end = at + 1;
        while (end < text.size() && !endsReference(text.at(end)))
            ++end;
        const QString id = text.mid(at + 1, end - at - 1);
        // An e-mail address is not a reference.
        const bool isWithinWord = at > 0 && text.at(at - 1).isLetterOrNumber();
        if (!id.isEmpty() && (!isWithinWord || m_known.contains(id)))
            found.append({id, at});
    }
    return found;
}

bool TextCheck::isTranslated(const QString &language, const QString &id) const
{
    const Texts &texts = m_texts.at(language);
    const auto text = texts.constFind(id);
    return text != texts.constEnd() && !text->text().isEmpty();
}

void TextCheck::finish()
{
    for (auto used = m_used.constBegin(); used != m_used.constEnd(); ++used)
        use(used.key(), used.value());
    for (const auto &[language, texts] : m_texts) {
        for (const QDomElement &text : texts)
            translation(language, text);
        endless(language, texts);
    }
    if (!m_table.isNull() && !hasLanguage(QStringLiteral("ru")))
        m_problems.warning(
            m_table, CheckText::tr("There is no translation into \"ru\", which is the language as long as "
                                   "the recorder names none"));
}

void TextCheck::use(const QString &id, const QDomElement &at)
{
    const qsizetype known = m_known.value(id);
    if (known == 0)
        m_problems.error(at, CheckText::tr("The text \"@%1\" has no translation%2").arg(id, advice(id)));
    if (known == 0 || known == m_languages.size())
        return;
    m_problems.error(at, CheckText::tr("The text \"@%1\" has no translation into %2")
                             .arg(id, missingLanguages(id).join(QStringLiteral(", "))));
}

QString TextCheck::advice(const QString &id) const
{
    qsizetype end = id.size();
    while (end > 0 && id.at(end - 1).isPunct())
        --end;
    const QString shorter = id.first(end);
    return m_known.contains(shorter)
               ? CheckText::tr(" (an id ends at a blank; \"@%1\" would have one)").arg(shorter)
               : QString();
}

void TextCheck::translation(const QString &language, const QDomElement &element)
{
    const QString text = element.text();
    for (const Reference &reference : references(text)) {
        if (reference.position == 0)
            m_problems.error(element,
                             CheckText::tr("\"@%1\" begins a translation and is shown as it is written there")
                                 .arg(reference.id));
        else if (!isTranslated(language, reference.id) && !m_used.contains(reference.id))
            m_problems.error(
                element,
                CheckText::tr("The text \"@%1\" has no translation into %2").arg(reference.id, language));
    }
    values(element, text);
    markup(element, text, m_places.value(element.tagName()));
    lacking(element);
}

/// Reports languages that lack a text that nothing refers to by its name; use() reports the others.
void TextCheck::lacking(const QDomElement &element)
{
    const QString id = element.tagName();
    if (m_used.contains(id) || element.text().isEmpty() || m_known.value(id) == m_languages.size())
        return;
    m_problems.warning(element, CheckText::tr("The text \"@%1\" has no translation into %2")
                                    .arg(id, missingLanguages(id).join(QStringLiteral(", "))));
}

QStringList TextCheck::missingLanguages(const QString &id) const
{
    constexpr qsizetype Named = 5;
    QStringList missing;
    for (auto language = m_languages.cbegin(); language != m_languages.cend() && missing.size() < Named;
         ++language) {
        if (!isTranslated(*language, id))
            missing.append(*language);
    }
    return missing;
}

/// Reports every translation that leads back to itself. A walk in depth that keeps its own stack: a chain may
/// be as long as the table.
void TextCheck::endless(const QString &language, const Texts &texts)
{
    enum Mark { Unseen, OnTheWay, Done };
    struct Step {
        QString id;
        QList<Reference> references;
        qsizetype next = 0;
    };
    QHash<QString, Mark> marks;
    const auto step = [&](const QString &id) {
        marks[id] = OnTheWay;
        return Step{id, references(texts.value(id).text())};
    };
    for (auto start = texts.constBegin(); start != texts.constEnd(); ++start) {
        if (marks.value(start.key()) != Unseen)
            continue;
        std::vector<Step> way{step(start.key())};
        while (!way.empty()) {
            Step &current = way.back();
            if (current.next == current.references.size()) {
                marks[current.id] = Done;
                way.pop_back();
                continue;
            }
            const Reference reference = current.references.at(current.next++);
            if (reference.position == 0 || !texts.contains(reference.id))
                continue;
            const Mark mark = marks.value(reference.id);
            if (mark == OnTheWay)
                m_problems.error(texts.value(current.id),
                                 CheckText::tr("The translation of \"@%1\" into %2 refers to itself")
                                     .arg(reference.id, language));
            else if (mark == Unseen)
                way.push_back(step(reference.id));
        }
    }
}

} // namespace paravue
