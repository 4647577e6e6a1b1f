#include "ui/base/SafeText.h"

#include <QSet>
#include <QTextDocument>

namespace paravue
{
namespace
{

bool isSafeAttribute(const QString &name)
{
    static const QSet<QString> names{"align", "bgcolor", "border", "cellpadding", "cellspacing", "class",
                                     "color", "colspan", "dir",    "face",        "height",      "id",
                                     "name",  "rowspan", "size",   "start",       "style",       "title",
                                     "type",  "valign",  "width"};
    return names.contains(name);
}

/// Escapes and comments could hide an url().
bool isSafeStyle(const QString &style)
{
    return !style.contains(u'\\') && !style.contains(QLatin1String("/*")) && !style.contains(u'@') &&
           !style.contains(QLatin1String("url"), Qt::CaseInsensitive);
}

/// Walks over the tags of a text and divides them into words as Qt's reader of rich text does, which puts up
/// with anything: where they differ, one would see a tag that the other takes for a part of a value.
class TagWalk
{
public:
    explicit TagWalk(const QString &text) : m_text(text) {}

    bool findsReference()
    {
        for (m_at = m_text.indexOf(u'<'); m_at >= 0; m_at = m_text.indexOf(u'<', m_at)) {
            ++m_at;
            skipSpace();
            const bool isClosing = current() == u'/';
            if (!isClosing && openingTagRefersOutside())
                return true;
            m_at = m_text.indexOf(u'>', m_at);
            if (m_at < 0)
                return false;
        }
        return false;
    }

private:
    bool isOver() const { return m_at >= m_text.size(); }
    QChar current() const { return isOver() ? QChar() : m_text.at(m_at); }

    void skipSpace()
    {
        while (current().isSpace())
            ++m_at;
    }

    bool openingTagRefersOutside()
    {
        const QString tag = word().toLower();
        if (tag == QLatin1String("style") || tag == QLatin1String("link") || tag.startsWith(u'!') ||
            tag.startsWith(u'?'))
            return true;
        for (;;) {
            skipSpace();
            const QString name = current() == u'/' ? QString() : word().toLower();
            if (name.isEmpty()) // the rest of the tag is ignored
                return false;
            skipSpace();
            QString value;
            if (current() == u'=') {
                ++m_at;
                skipSpace();
                value = word();
            }
            if (!isSafe(name, value))
                return true;
        }
    }

    static bool isSafe(const QString &name, const QString &value)
    {
        // Qt reads \' within single quotes as a part of the value. Entities may stand for any letter.
        const bool isPlain =
            !value.contains(u'\\') && !(name == QLatin1String("style") && value.contains(u'&'));
        return isPlain && isSafeAttribute(name) && (name != QLatin1String("style") || isSafeStyle(value));
    }

    /// The next word, or what the next quotes hold.
    QString word()
    {
        const QChar quote = current();
        const qsizetype begin = m_at;
        if (quote == u'"' || quote == u'\'') {
            const qsizetype closing = m_text.indexOf(quote, begin + 1);
            const qsizetype end = closing < 0 ? m_text.size() : closing;
            m_at = closing < 0 ? end : end + 1;
            return m_text.sliced(begin + 1, end - begin - 1);
        }
        while (!isOver() && !endsWord())
            ++m_at;
        return m_text.sliced(begin, m_at - begin);
    }

    bool endsWord() const
    {
        const QChar c = current();
        const bool isEnd = c == u'/' && m_at + 1 < m_text.size() && m_text.at(m_at + 1) == u'>';
        return isEnd || c == u'>' || c == u'<' || c == u'=' || c.isSpace();
    }

    const QString &m_text;
    qsizetype m_at = 0;
};

bool refersOutside(const QString &text)
{
    return TagWalk(text).findsReference();
}

} // namespace

QString safeRichText(const QString &text)
{
    return Qt::mightBeRichText(text) && refersOutside(text) ? Qt::convertFromPlainText(text) : text;
}

Qt::TextFormat safeTextFormat(const QString &text)
{
    return Qt::mightBeRichText(text) && refersOutside(text) ? Qt::PlainText : Qt::AutoText;
}

} // namespace paravue
