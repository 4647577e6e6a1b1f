#include "store/StateTemplate.h"

#include "store/TextPattern.h"

namespace paravue
{

namespace
{

struct Directive {
    qsizetype start = 0; ///< of the line end before it
    QString pattern;
    QString prefix;
    QString address;
    QString suffix;
};

bool isLineEnd(QChar c)
{
    return c == u'\r' || c == u'\n';
}

qsizetype skipSpace(QStringView text, qsizetype from)
{
    while (from < text.size() && text[from].isSpace())
        ++from;
    return from;
}

/// Where the closing "/" stands: the first one that has nothing but blanks up to the next line end.
qsizetype closingSlash(QStringView text, qsizetype from)
{
    qsizetype slash = text.indexOf(u'/', from);
    while (slash >= 0) {
        qsizetype end = slash + 1;
        while (end < text.size() && text[end].isSpace() && !isLineEnd(text[end]))
            ++end;
        if (end < text.size() && isLineEnd(text[end]))
            break;
        slash = text.indexOf(u'/', end);
    }
    return slash;
}

/// The parts of a directive whose opening "#!s/" ends at \a from. Each part ends at the first fitting
/// character: when the later parts do not fit behind the first one, they do not fit behind a later one
/// either.
std::optional<Directive> readParts(QStringView text, qsizetype from)
{
    const qsizetype patternEnd = text.indexOf(u'/', from);
    const qsizetype prefixEnd = patternEnd < 0 ? -1 : text.indexOf(u'{', patternEnd + 1);
    const qsizetype addressEnd = prefixEnd < 0 ? -1 : text.indexOf(u'}', prefixEnd + 1);
    const qsizetype suffixEnd = addressEnd < 0 ? -1 : closingSlash(text, addressEnd + 1);
    if (suffixEnd < 0)
        return {};
    const auto part = [text](qsizetype begin, qsizetype end) {
        return text.sliced(begin, end - begin).toString();
    };
    return Directive{0, part(from, patternEnd), part(patternEnd + 1, prefixEnd),
                     part(prefixEnd + 1, addressEnd), part(addressEnd + 1, suffixEnd)};
}

/// The first directive whose preceding line end stands at \a from or later. This is the pattern
/// [\r\n]#!\s*s/(.*)/(.*)\{(.*)\}(.*)/\s*[\r\n] with repetitions that take as little as they can, as a
/// scanner: an expression engine needs time in a high power of the text's length when such a line does not
/// end.
std::optional<Directive> findDirective(QStringView text, qsizetype from)
{
    for (qsizetype mark = text.indexOf(u"#!", from); mark >= 0; mark = text.indexOf(u"#!", mark + 1)) {
        const qsizetype command = skipSpace(text, mark + 2);
        if (mark <= from || !isLineEnd(text[mark - 1]) || !text.sliced(command).startsWith(u"s/"))
            continue;
        auto directive = readParts(text, command + 2);
        if (directive)
            directive->start = mark - 1;
        // A directive that has no end behind this opening has none behind a later one either.
        return directive;
    }
    return {};
}

} // namespace

CompiledState applyStateDirectives(const QString &original, const ValueLookup &valueOf,
                                   qsizetype maximumGrowth)
{
    const qsizetype maximumSize = original.size() + maximumGrowth;
    const PatternBudget budget;
    qsizetype work = 0;
    QString text = original;
    for (auto directive = findDirective(text, 0); directive;
         directive = findDirective(text, directive->start + 1)) {
        work += text.size();
        if (work > MaxStateWork)
            return {CompiledState::Fault::TooSlow};
        const std::optional<QString> value = valueOf(directive->address);
        if (!value)
            continue;
        const auto pattern = TextPattern::ofRecorder(directive->pattern, TextPattern::Greed::Minimal);
        const QString replacement = directive->prefix + *value + directive->suffix;
        auto replaced = pattern.replaceAll(text, replacement, maximumSize);
        if (budget.isExhausted())
            return {CompiledState::Fault::TooSlow};
        if (!replaced)
            return {CompiledState::Fault::TooLarge};
        text = *std::move(replaced);
    }
    return {CompiledState::Fault::None, text};
}

} // namespace paravue
