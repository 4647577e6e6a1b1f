#include "store/IniOwnLines.h"

#include "store/IniGrammar.h"
#include "store/PiecewiseCopy.h"

#include <algorithm>

namespace paravue
{

namespace
{

/// What stands around the value of a key line in its usual form. The name comes from a file, so only the
/// value can make the line something else than a key line.
struct Frame {
    explicit Frame(bool isBare) : equals(isBare ? " = " : " = '"), end(isBare ? "\r\n" : "'\r\n") {}

    /// Whether the line \a mark of \a text has it already.
    bool isAround(const IniText &text, const IniText::Mark &mark) const
    {
        return mark.nameBegin == mark.begin && text.slice(mark.nameEnd, mark.valueBegin) == equals &&
               text.slice(mark.valueEnd, mark.end) == end;
    }
    /// Where the parts of a line at \a begin are.
    IniText::Mark mark(qsizetype begin, QByteArrayView name, QByteArrayView value) const
    {
        IniText::Mark result;
        result.begin = result.nameBegin = quint32(begin);
        result.nameEnd = result.nameBegin + quint32(name.size());
        result.valueBegin = result.nameEnd + quint32(equals.size());
        result.valueEnd = result.valueBegin + quint32(value.size());
        result.end = result.valueEnd + quint32(end.size());
        return result;
    }

    QByteArrayView equals;
    QByteArrayView end;
};

} // namespace

bool everyKeyOwnsOneLine(const IniText &text, qsizetype keysInFile, bool sectioned)
{
    if (text.marks().empty())
        return keysInFile == 0;
    if (sectioned && !text.marks().front().isSection)
        return false; // keys before the first header have none of their own
    std::vector<QByteArrayView> sections;
    qsizetype keys = 0;
    for (const IniText::Mark &mark : text.marks()) {
        if (!mark.isSection) {
            ++keys;
            continue;
        }
        // The section of a key ends at its first "/", so no key is put behind such a header.
        if (text.name(mark).contains('/'))
            return false;
        sections.push_back(text.name(mark));
    }
    std::sort(sections.begin(), sections.end());
    return keys == keysInFile && std::adjacent_find(sections.begin(), sections.end()) == sections.end();
}

std::optional<OwnLines> rewriteOwnLines(const IniText &text, const EntriesOfLines &entriesOfLines,
                                        const IniEntries &entries, bool hasNewKeys)
{
    OwnLines result;
    PiecewiseCopy copy(text.bytes());
    std::vector<IniText::Mark> marks;
    marks.reserve(text.marks().size());
    QByteArray changed;
    for (size_t i = 0; i < text.marks().size(); ++i) {
        const IniText::Mark &old = text.marks()[i];
        const qsizetype begin = copy.position(old.begin);
        marks.push_back(old);
        marks.back().moveBy(begin - qsizetype(old.begin));
        if (old.isSection)
            continue;
        const IniEntries::Entry &entry = entries[entriesOfLines[i]];
        QByteArrayView value = text.value(old);
        if (entry.edited)
            value = changed = entry.value(text).toUtf8();
        const bool bare = value.isEmpty() || isPlainInteger(value);
        const bool isSpoiling = !bare && (value.contains('\'') || value.contains('\n'));
        if (isSpoiling && text.name(old).startsWith('['))
            return {};
        if (isSpoiling)
            result.spoiling.push_back(&entry);
        if (isSpoiling && hasNewKeys)
            continue;
        const Frame frame(bare);
        if (frame.isAround(text, old) && value == text.value(old))
            continue;
        const QByteArrayView name = text.name(old);
        if (isSpoiling) {
            marks.pop_back();
            value = changed = value.toByteArray().replace('\n', "\r\n");
        } else {
            marks.back() = frame.mark(begin, name, value);
        }
        copy.replace(old.begin, old.end, {name, frame.equals, value, frame.end});
    }
    result.text = IniText(copy.result(), std::move(marks));
    return result;
}

bool mayDisturb(const IniEntries::Entry &entry, const IniText &text)
{
    IniText::Mark mark;
    const QString keyLine = iniKeyLine(QString::fromUtf8(entry.name()), entry.value(text), EmptyValue::IsKey);
    if (IniText::mark(keyLine, mark) && mark.isSection)
        return true;
    const QString section = QString::fromUtf8(entry.section());
    const QString header = iniSectionLine(section);
    const auto scanned = scanIniLine(QStringView(header), EmptyValue::IsKey);
    return scanned.kind != IniLine<QStringView>::Section || scanned.name != section;
}

} // namespace paravue
