#include "store/IniGrammar.h"

#include <algorithm>
#include <array>
#include <limits>

namespace paravue
{

namespace
{

char16_t codeAt(QStringView text, qsizetype i)
{
    return text.utf16()[i];
}
char16_t codeAt(QLatin1StringView text, qsizetype i)
{
    return uchar(text.data()[i]);
}

enum CodeClass : quint8 { Space = 1, Quote = 2, LineFeed = 4, Semicolon = 8 };

constexpr std::array<quint8, 256> latin1Classes = [] {
    std::array<quint8, 256> classes{};
    for (const uchar c : {0x09, 0x0a, 0x0b, 0x0c, 0x0d, 0x20, 0x85, 0xa0})
        classes[c] = Space;
    classes['\n'] |= LineFeed;
    classes['"'] = classes['\''] = Quote;
    classes[';'] = Semicolon;
    return classes;
}();

/// Whether the character is of one of these \a classes.
bool isAt(QLatin1StringView text, qsizetype i, int classes)
{
    return latin1Classes[uchar(text.data()[i])] & classes;
}
bool isAt(QStringView text, qsizetype i, int classes)
{
    const char16_t code = codeAt(text, i);
    return code < latin1Classes.size() ? latin1Classes[code] & classes
                                       : (classes & Space) && QChar::isSpace(code);
}

template <typename View>
bool isSpaceAt(View text, qsizetype i)
{
    return isAt(text, i, Space);
}

template <typename View>
qsizetype skipSpace(View text, qsizetype from)
{
    while (from < text.size() && isSpaceAt(text, from))
        ++from;
    return from;
}

/// What the end of a line allows as values. A value reaches up to the last character of the line, so whether
/// it is well formed depends on nothing but where it starts: what was found for one "=" of the line answers
/// for the others.
template <typename View>
class ValueEnd
{
public:
    explicit ValueEnd(View line) : m_line(line), m_end(line.size() - 1)
    {
        if (m_end < 1 || !isSpaceAt(line, m_end)) {
            m_possible = false;
            return;
        }
        m_spaceBeforeEnd = isSpaceAt(line, m_end - 1); // only an empty value is possible
        m_last = codeAt(line, m_end - 1);
        m_quoted = isAt(line, m_end - 1, Quote);
        m_border = m_end - (m_quoted ? 2 : 1);
    }

    bool possible() const { return m_possible; }

    /// Reads the value behind the "=" at \a equals into \a value. From one call to the next, \a equals must
    /// not grow.
    bool read(qsizetype equals, EmptyValue emptyValue, View &value)
    {
        const qsizetype start = std::min(skipSpace(m_line, equals + 1), m_end);
        if (start == m_end) {
            value = m_line.mid(m_end, 0);
            return emptyValue == EmptyValue::IsKey;
        }
        if (m_spaceBeforeEnd)
            return false;
        while (m_border >= start && !isBorder())
            --m_border;
        if (m_quoted) {
            if (start != m_border || codeAt(m_line, start) == u'\n')
                return false;
            value = m_line.mid(start + 1, m_end - start - 2);
            return true;
        }
        value = m_line.mid(start, m_end - start);
        return start > m_border;
    }

private:
    bool isBorder() const
    {
        return m_quoted ? codeAt(m_line, m_border) == m_last || codeAt(m_line, m_border) == u'\n'
                        : isAt(m_line, m_border, Quote | LineFeed);
    }

    View m_line;
    qsizetype m_end; ///< of the value, and where the one white space behind it stands
    /// The opening quote of a value that ends in a quote; else the last character that no bare value may
    /// hold. Looked for as far back as values were asked for.
    qsizetype m_border = -1;
    char16_t m_last = 0;
    bool m_possible = true;
    bool m_spaceBeforeEnd = false;
    bool m_quoted = false;
};

template <typename View>
bool readKeyLine(View line, qsizetype start, EmptyValue emptyValue, IniLine<View> &result)
{
    ValueEnd<View> valueEnd(line);
    if (!valueEnd.possible())
        return false;

    qsizetype runEnd = start;
    while (runEnd < line.size() && !isAt(line, runEnd, Space | Semicolon))
        ++runEnd;

    // The name is as long as possible: all of the run when a "=" follows it, else up to the last "=" inside
    // the run that has a value behind it.
    const qsizetype behind = skipSpace(line, runEnd);
    if (runEnd > start && behind < line.size() && codeAt(line, behind) == u'=' &&
        valueEnd.read(behind, emptyValue, result.value)) {
        result.name = line.mid(start, runEnd - start);
        return true;
    }
    for (qsizetype equals = runEnd - 1; equals > start; --equals) {
        if (codeAt(line, equals) == u'=' && valueEnd.read(equals, emptyValue, result.value)) {
            result.name = line.mid(start, equals - start);
            return true;
        }
    }
    return false;
}

template <typename View>
bool readSectionLine(View line, qsizetype start, IniLine<View> &result)
{
    if (start >= line.size() || codeAt(line, start) != u'[')
        return false;
    const qsizetype nameStart = skipSpace(line, start + 1);
    qsizetype nameEnd = nameStart;
    while (nameEnd < line.size() && !isSpaceAt(line, nameEnd))
        ++nameEnd;

    // The name is as long as possible: all of the run when a bracket follows it, else up to the last bracket
    // inside the run.
    const qsizetype behind = skipSpace(line, nameEnd);
    const bool closedBehind = behind < line.size() && codeAt(line, behind) == u']';
    if (!closedBehind) {
        do
            --nameEnd;
        while (nameEnd > nameStart && codeAt(line, nameEnd) != u']');
    }
    if (nameEnd <= nameStart)
        return false;
    result.name = line.mid(nameStart, nameEnd - nameStart);
    return true;
}

template <typename View>
IniLine<View> scan(View line, EmptyValue emptyValue)
{
    IniLine<View> result;
    const qsizetype start = skipSpace(line, 0);
    if (readKeyLine(line, start, emptyValue, result))
        result.kind = IniLine<View>::Key;
    else if (readSectionLine(line, start, result))
        result.kind = IniLine<View>::Section;
    return result;
}

template <typename View>
bool readsBackAsInteger(View value)
{
    constexpr qsizetype longestInteger = 11; // -2147483648
    if (value.isEmpty() || value.size() > longestInteger)
        return false;
    const bool negative = codeAt(value, 0) == u'-';
    const View digits = value.mid(negative ? 1 : 0);
    // Neither leading zeros nor -0.
    if (digits.isEmpty() || (codeAt(digits, 0) == u'0' && (negative || digits.size() > 1)))
        return false;
    qint64 number = 0;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        const int digit = codeAt(digits, i) - u'0';
        if (digit < 0 || digit > 9)
            return false;
        number = 10 * number + digit;
    }
    return number <= std::numeric_limits<int>::max() + qint64(negative ? 1 : 0);
}

} // namespace

IniLine<QStringView> scanIniLine(QStringView line, EmptyValue emptyValue)
{
    return scan(line, emptyValue);
}

IniLine<QLatin1StringView> scanIniLine(QLatin1StringView line, EmptyValue emptyValue)
{
    return scan(line, emptyValue);
}

bool isPlainInteger(QStringView value)
{
    return readsBackAsInteger(value);
}

bool isPlainInteger(QByteArrayView value)
{
    return readsBackAsInteger(QLatin1StringView(value));
}

QString iniKeyLine(QStringView name, QStringView value, EmptyValue emptyValue)
{
    const bool bare = value.isEmpty() ? emptyValue == EmptyValue::IsKey : isPlainInteger(value);
    const QStringView quote = bare ? QStringView() : QStringView(u"'");
    QString line;
    line.reserve(name.size() + value.size() + 6);
    line += name;
    line += QLatin1StringView(" = ");
    line += quote;
    line += value;
    line += quote;
    line += u'\n';
    return line;
}

QString iniSectionLine(QStringView name)
{
    return QLatin1StringView("[ ") + name.toString() + QLatin1StringView(" ]\n");
}

} // namespace paravue
