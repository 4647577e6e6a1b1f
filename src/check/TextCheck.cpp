#include "check/TextCheck.h"

#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/description/TextReferences.h"

#include <utility>
#include <vector>

namespace paravue
{
namespace
{

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

void TextCheck::visible(const QDomElement &at, const QString &text)
{
    for (const Reference &reference : references(text)) {
        if (!m_used.contains(reference.id))
            m_used.insert(reference.id, at);
    }
    values(at, text);
}

void TextCheck::values(const QDomElement &at, const QString &text)
{
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
    constexpr qsizetype Named = 5;
    const qsizetype known = m_known.value(id);
    if (known == 0)
        m_problems.error(at, CheckText::tr("The text \"@%1\" has no translation%2").arg(id, advice(id)));
    if (known == 0 || known == m_languages.size())
        return;
    QStringList missing;
    for (auto language = m_languages.cbegin(); language != m_languages.cend() && missing.size() < Named;
         ++language) {
        if (!isTranslated(*language, id))
            missing.append(*language);
    }
    m_problems.error(at, CheckText::tr("The text \"@%1\" has no translation into %2")
                             .arg(id, missing.join(QStringLiteral(", "))));
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
