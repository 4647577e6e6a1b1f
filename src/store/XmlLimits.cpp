#include "store/XmlLimits.h"

#include <QCoreApplication>
#include <QStringConverter>
#include <QXmlStreamReader>

#include <array>

namespace paravue
{

namespace
{

class XmlText
{
    Q_DECLARE_TR_FUNCTIONS(XmlLimits)
};

/// Walks over the markup of an XML text in an encoding that keeps ASCII, and counts.
class MarkupCounter
{
public:
    explicit MarkupCounter(QByteArrayView text) : m_text(text) {}

    std::optional<QString> firstViolation()
    {
        while (!m_violation) {
            m_pos = m_text.indexOf('<', m_pos);
            if (m_pos < 0)
                break;
            readMarkup();
        }
        return m_violation;
    }

private:
    void readMarkup()
    {
        const QByteArrayView rest = m_text.sliced(m_pos);
        if (rest.startsWith("<!--"))
            skipOther(4, "-->");
        else if (rest.startsWith("<![CDATA["))
            skipOther(9, "]]>");
        else if (rest.startsWith("<?"))
            skipOther(2, "?>");
        else if (rest.startsWith("<!"))
            readDeclaration();
        else if (rest.startsWith("</"))
            readEndTag();
        else
            readStartTag();
    }

    void skipOther(qsizetype opening, QByteArrayView closing)
    {
        if (++m_otherNodes > MaxXmlOtherNodes)
            m_violation = XmlText::tr("it has more than %1 comments and instructions").arg(MaxXmlOtherNodes);
        count(XmlNodeBytes::Other);
        const qsizetype end = m_text.indexOf(closing, m_pos + opening);
        m_pos = end < 0 ? m_text.size() : end + closing.size();
    }

    void count(int bytes)
    {
        m_treeBytes += bytes;
        if (m_treeBytes > MaxXmlTreeBytes)
            m_violation = XmlText::tr("it has too many elements with attributes");
    }

    void readDeclaration()
    {
        walkMarkup([this](char c) {
            if (c == '[')
                m_violation = XmlText::tr("it declares entities");
        });
    }

    void readEndTag()
    {
        --m_depth;
        walkMarkup([](char) {});
    }

    void readStartTag()
    {
        if (++m_elements > MaxXmlElements)
            m_violation = XmlText::tr("it has more than %1 elements").arg(MaxXmlElements);
        int attributes = 0;
        char last = 0;
        walkMarkup([&](char c) {
            attributes += c == '=';
            last = c;
        });
        count(XmlNodeBytes::Element);
        if (attributes > 0)
            count(XmlNodeBytes::FirstAttribute + (attributes - 1) * XmlNodeBytes::FurtherAttribute);
        if (attributes > MaxXmlAttributesOfOneElement)
            m_violation =
                XmlText::tr("one element has more than %1 attributes").arg(MaxXmlAttributesOfOneElement);
        if (last != '/' && ++m_depth > MaxXmlNesting)
            m_violation = XmlText::tr("its elements are nested more than %1 levels deep").arg(MaxXmlNesting);
    }

    /// Calls \a visit for every byte up to the closing ">" that is not within quotes.
    template <class Visit>
    void walkMarkup(Visit visit)
    {
        char quote = 0;
        for (++m_pos; m_pos < m_text.size(); ++m_pos) {
            const char c = m_text[m_pos];
            if (quote) {
                if (c == quote)
                    quote = 0;
                continue;
            }
            if (c == '>') {
                ++m_pos;
                return;
            }
            if (c == '"' || c == '\'')
                quote = c;
            visit(c);
        }
    }

    QByteArrayView m_text;
    qsizetype m_pos = 0;
    int m_depth = 0;
    int m_elements = 0;
    int m_otherNodes = 0;
    qsizetype m_treeBytes = 0;
    std::optional<QString> m_violation;
};

bool isWide(QStringConverter::Encoding encoding)
{
    return encoding != QStringConverter::Utf8 && encoding != QStringConverter::Latin1 &&
           encoding != QStringConverter::System;
}

/// Only in these encodings is every "<" of the markup the byte of that letter, and no other byte is.
bool declaresKnownEncoding(const QByteArray &text)
{
    constexpr qsizetype LongestDeclaration = 1024;
    constexpr std::array<QLatin1StringView, 6> Known{
        QLatin1StringView("UTF-8"),     QLatin1StringView("US-ASCII"),    QLatin1StringView("ASCII"),
        QLatin1StringView("ISO-8859-"), QLatin1StringView("WINDOWS-125"), QLatin1StringView("KOI8-")};
    QXmlStreamReader reader;
    reader.addData(text.first(qMin(text.size(), LongestDeclaration)));
    reader.readNext();
    const QString declared = reader.documentEncoding().toString().toUpper();
    return declared.isEmpty() ||
           std::any_of(Known.begin(), Known.end(),
                       [&declared](QLatin1StringView known) { return declared.startsWith(known); });
}

} // namespace

std::optional<QString> xmlLimitViolation(const QByteArray &text)
{
    const auto encoding = QStringConverter::encodingForData(text, u'<');
    if (encoding && isWide(*encoding)) {
        const QByteArray narrow = QString(QStringDecoder(*encoding)(text)).toUtf8();
        return MarkupCounter(narrow).firstViolation();
    }
    if (!declaresKnownEncoding(text))
        return XmlText::tr("its text encoding is not supported");
    return MarkupCounter(text).firstViolation();
}

} // namespace paravue
