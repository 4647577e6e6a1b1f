#include "check/SourcePositions.h"

#include <QStringConverter>

#include <vector>

namespace paravue
{
namespace
{

QString decoded(const QByteArray &text)
{
    QStringDecoder decoder(QStringConverter::encodingForData(text, u'<').value_or(QStringConverter::Utf8));
    const QString characters = decoder(text);
    // All other encodings that are read have one byte for each character.
    return decoder.hasError() ? QString::fromLatin1(text) : characters;
}

/// Walks over well-formed markup and notes where each start tag begins. A "<" stands nowhere else than at the
/// beginning of markup, but for comments and the like.
class StartTags
{
public:
    explicit StartTags(const QString &text) : m_text(text) {}

    std::vector<SourcePosition> find()
    {
        for (qsizetype at = m_text.indexOf(u'<'); at >= 0; at = m_text.indexOf(u'<', at + 1)) {
            const QStringView rest = QStringView(m_text).sliced(at);
            if (rest.startsWith(u"<!--"))
                at = endOf(u"-->", at + 4);
            else if (rest.startsWith(u"<![CDATA["))
                at = endOf(u"]]>", at + 9);
            else if (rest.startsWith(u"<?"))
                at = endOf(u"?>", at + 2);
            else if (!rest.startsWith(u"<!") && !rest.startsWith(u"</"))
                note(at);
        }
        return m_found;
    }

private:
    qsizetype endOf(QStringView closing, qsizetype from) const
    {
        const qsizetype end = m_text.indexOf(closing, from);
        return end < 0 ? m_text.size() : end;
    }

    void note(qsizetype at)
    {
        for (; m_counted < at; ++m_counted) {
            const QChar c = m_text.at(m_counted);
            if (c == u'\n')
                m_next = {m_next.line + 1, 1};
            else if (!c.isLowSurrogate()) // the second half of a character
                ++m_next.column;
        }
        m_found.push_back(m_next);
    }

    const QString &m_text;
    qsizetype m_counted = 0; ///< up to here m_next is known
    SourcePosition m_next{1, 1};
    std::vector<SourcePosition> m_found;
};

void assign(QHash<ElementId, SourcePosition> &positions, const QDomElement &element,
            const std::vector<SourcePosition> &found, size_t &next)
{
    if (next < found.size())
        positions.insert(elementId(element), found[next++]);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        assign(positions, child, found, next);
}

} // namespace

ElementId elementId(const QDomElement &element)
{
    return {element.lineNumber(), element.columnNumber()};
}

SourcePositions::SourcePositions(const QByteArray &text, const QDomElement &root)
{
    const QString characters = decoded(text);
    const std::vector<SourcePosition> found = StartTags(characters).find();
    size_t next = 0;
    assign(m_positions, root, found, next);
}

SourcePosition SourcePositions::of(const QDomElement &element) const
{
    return m_positions.value(elementId(element));
}

} // namespace paravue
