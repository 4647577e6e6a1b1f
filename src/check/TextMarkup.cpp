#include "check/TextMarkup.h"

#include "check/CheckText.h"
#include "ui/base/SafeText.h"

#include <QRegularExpression>
#include <QSet>
#include <QTextDocument>

#include <vector>

namespace paravue
{
namespace
{

/// Tags that Qt's rich text knows (https://doc.qt.io/qt-6/richtext-html-subset.html).
bool isMarkup(const QString &tag)
{
    static const QSet<QString> tags{
        "a",      "address", "b",   "big",   "blockquote", "body", "br",    "center", "cite",  "code",
        "dd",     "dfn",     "div", "dl",    "dt",         "em",   "font",  "h1",     "h2",    "h3",
        "h4",     "h5",      "h6",  "head",  "hr",         "html", "i",     "img",    "kbd",   "li",
        "meta",   "nobr",    "ol",  "p",     "pre",        "qt",   "s",     "samp",   "small", "span",
        "strong", "sub",     "sup", "table", "tbody",      "td",   "tfoot", "th",     "thead", "title",
        "tr",     "tt",      "u",   "ul",    "var",        "style"};
    return tags.contains(tag.toLower());
}

QStringList tagsIn(const QString &text)
{
    static const QRegularExpression tag(QStringLiteral("<\\s*/?\\s*([A-Za-z][A-Za-z0-9]*)[^<>]*>"));
    QStringList names;
    for (auto matches = tag.globalMatch(text); matches.hasNext();)
        names.append(matches.next().captured(1));
    return names;
}

QStringList ofCaption(const QString &text)
{
    for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at + 2)) {
        const QChar next = at + 1 < text.size() ? text.at(at + 1) : QChar();
        if (next != u'&' && !next.isLetterOrNumber())
            return {CheckText::tr("The \"&\" is not shown here; \"&amp;&amp;\" shows one")};
    }
    return {};
}

QStringList ofAmpersands(const QString &text)
{
    static const QRegularExpression key(QStringLiteral("(^|\\s)&[\\w&]"),
                                        QRegularExpression::UseUnicodePropertiesOption);
    if (!key.match(text).hasMatch())
        return {};
    return {CheckText::tr("The \"&\" is shown as it stands: only buttons, check boxes and tabs have keys")};
}

QStringList ofUnreadMarkup(const QString &text, TextPlaces places)
{
    for (const QString &tag : tagsIn(text)) {
        if (!isMarkup(tag))
            continue;
        return {
            places == TextPlace::RichText
                ? CheckText::tr("\"<%1>\" is shown as it stands: the first \"<\" of the text begins no tag")
                      .arg(tag)
                : CheckText::tr("\"<%1>\" is shown as it stands: only labels and tool tips read markup")
                      .arg(tag)};
    }
    return {};
}

QStringList ofEntities(const QString &text)
{
    static const QRegularExpression entity(QStringLiteral("&(lt|gt|amp|quot|nbsp|#\\d+);"));
    const auto match = entity.match(text);
    if (!match.hasMatch())
        return {};
    return {CheckText::tr("\"%1\" is shown as it stands: the text has no markup").arg(match.captured())};
}

QStringList ofRichText(const QString &text)
{
    if (safeTextFormat(text) == Qt::PlainText)
        return {CheckText::tr("The markup is shown as it stands, since it refers to something outside")};
    for (const QString &tag : tagsIn(text)) {
        if (!isMarkup(tag))
            return {CheckText::tr("\"<%1>\" counts as markup and is not shown; \"&amp;lt;\" shows a \"<\"")
                        .arg(tag)};
    }
    return {};
}

} // namespace

QStringList unintendedMarkup(const QString &text, TextPlaces places)
{
    const bool isRich = places.testFlag(TextPlace::RichText) && Qt::mightBeRichText(text);
    if (isRich)
        return ofRichText(text);
    QStringList found;
    if (places.testFlag(TextPlace::Caption))
        found += ofCaption(text);
    else if (places)
        found += ofEntities(text).isEmpty() ? ofAmpersands(text) : ofEntities(text);
    return places ? found + ofUnreadMarkup(text, places) : found;
}

QChar mnemonicOf(const QString &caption)
{
    for (qsizetype at = caption.indexOf(u'&'); at >= 0 && at + 1 < caption.size();
         at = caption.indexOf(u'&', at + 2)) {
        if (caption.at(at + 1) != u'&')
            return caption.at(at + 1).toUpper();
    }
    return {};
}

QString unmatchedBraces(const QString &text)
{
    QString unmatched;
    std::vector<qsizetype> open; // where in `unmatched`
    for (const QChar c : text) {
        if (c == u'{') {
            open.push_back(unmatched.size());
            unmatched += c;
        } else if (c == u'}' && !open.empty()) {
            unmatched.remove(open.back(), 1);
            open.pop_back();
        } else if (c == u'}') {
            unmatched += c;
        }
    }
    return unmatched;
}

} // namespace paravue
