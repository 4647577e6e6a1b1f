#include "ui/description/TextResolver.h"

#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextReferences.h"

#include <algorithm>

namespace paravue
{
namespace
{

/// The text that is still to be searched, stored backwards: removing from its front and inserting a
/// replacement there takes time in proportion to these parts, not to the whole text.
class PendingText
{
public:
    explicit PendingText(const QString &text) { putBack(text); }

    bool isEmpty() const { return m_reversed.isEmpty(); }
    qsizetype size() const { return m_reversed.size(); }

    QChar take()
    {
        const QChar c = m_reversed.back();
        m_reversed.chop(1);
        return c;
    }

    QString takeReference()
    {
        QString id;
        while (!isEmpty() && !endsReference(m_reversed.back()))
            id += take();
        return id;
    }

    void putBack(QStringView text) { std::copy(text.rbegin(), text.rend(), std::back_inserter(m_reversed)); }

private:
    QString m_reversed;
};

} // namespace

const QString TextResolver::LanguagePath = QStringLiteral("streams/common/language");

TextResolver::TextResolver(const InterfaceDocument &document, OrbSetup &store)
    : m_document(document), m_store(store)
{
}

ResolvedText TextResolver::resolve(const QString &raw) const
{
    ResolvedText result{raw, {}, true};
    if (raw.contains(u'@'))
        result.withinLimits = insertTranslations(result.text);
    if (result.withinLimits && result.text.contains(u'{'))
        result.withinLimits = insertValues(result);
    if (!result.withinLimits)
        result.text = raw;
    return result;
}

QString TextResolver::language() const
{
    const QString fallback = QStringLiteral("ru");
    return m_store->fileExists(QStringLiteral("streams")) ? m_store->value(LanguagePath + u'/' + fallback)
                                                          : fallback;
}

bool TextResolver::insertTranslations(QString &text) const
{
    const QString spoken = language();
    PendingText pending(text);
    QString done;
    qsizetype replacements = 0;
    while (!pending.isEmpty()) {
        const QChar c = pending.take();
        if (c != u'@') {
            done += c;
            continue;
        }
        const QString id = pending.takeReference();
        QString replacement = id.isEmpty() ? QString() : m_document.translation(spoken, id);
        if (replacement.isEmpty())
            replacement = c + id;
        else if (++replacements > limits::TextReplacements)
            return false;
        if (done.size() + pending.size() + replacement.size() > limits::TextLength)
            return false;
        // The search goes on one character after the start of the match, so a translation may itself hold
        // references, but not as its first character.
        done += replacement.front();
        pending.putBack(QStringView(replacement).mid(1));
    }
    text = done;
    return true;
}

bool TextResolver::insertValues(ResolvedText &result) const
{
    const QString &text = result.text;
    QString done;
    qsizetype position = 0;
    while (const auto braces = findBracedAddress(text, position)) {
        result.addresses.append(braces->address);
        done += QStringView(text).mid(position, braces->begin - position);
        done += m_store->value(braces->address);
        position = braces->end;
        if (result.addresses.size() > limits::TextReplacements || done.size() > limits::TextLength)
            return false;
    }
    done += QStringView(text).mid(position);
    result.text = done;
    return done.size() <= limits::TextLength;
}

} // namespace paravue
