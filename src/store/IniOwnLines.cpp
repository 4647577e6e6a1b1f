#include "store/IniOwnLines.h"

#include "store/IniGrammar.h"
#include "store/PiecewiseCopy.h"

#include <QSet>

#include <algorithm>

namespace paravue
{

namespace
{

/// The same question as isPlainInteger() for UTF-8.
bool isPlainInteger(QByteArrayView value)
{
    return paravue::isPlainInteger(QString::fromLatin1(value.first(std::min<qsizetype>(value.size(), 12))));
}

/// Is the line in the form that it would be written in, with the value that it has?
bool hasUsualForm(const IniText &text, const IniText::Mark &mark)
{
    const QByteArrayView line = text.slice(mark.begin, mark.end);
    const QByteArrayView value = text.value(mark);
    const bool digit = !value.isEmpty() && uchar(value.back() - '0') < 10;
    const bool bare = value.isEmpty() || (digit && isPlainInteger(value));
    if (!bare && value.contains('\''))
        return false; // it ceases to be a key line
    const qsizetype quote = bare ? 0 : 1;
    const qsizetype nameSize = mark.nameEnd - mark.nameBegin;
    const QByteArrayView behindName = line.sliced(mark.nameEnd - mark.begin);
    return mark.nameBegin == mark.begin && line.size() == nameSize + 3 + value.size() + 2 * quote + 2 &&
           behindName.startsWith(bare ? " = " : " = '") && line.endsWith(bare ? "\r\n" : "'\r\n");
}

} // namespace

bool everyKeyOwnsOneLine(const IniText &text, qsizetype keysInFile, bool sectioned)
{
    if (text.marks().empty())
        return keysInFile == 0;
    if (sectioned && !text.marks().front().isSection)
        return false; // keys before the first header have none of their own
    QSet<QByteArrayView> sections;
    qsizetype keys = 0;
    for (const IniText::Mark &mark : text.marks()) {
        if (!mark.isSection) {
            ++keys;
            continue;
        }
        const qsizetype known = sections.size();
        sections.insert(text.name(mark));
        if (sections.size() == known)
            return false;
    }
    return keys == keysInFile;
}

std::optional<IniText> rewriteOwnLines(const IniText &text, const EntriesOfLines &entriesOfLines,
                                       const IniEntries &entries)
{
    PiecewiseCopy copy(text.bytes());
    std::vector<IniText::Mark> marks = text.marks();
    for (size_t line = 0; line < marks.size(); ++line) {
        const IniText::Mark old = marks[line];
        const qsizetype begin = copy.position(old.begin);
        if (old.isSection || (!entries[entriesOfLines[line]].edited && hasUsualForm(text, old))) {
            marks[line].moveBy(begin - qsizetype(old.begin));
            continue;
        }
        const IniEntries::Entry &entry = entries[entriesOfLines[line]];
        const QString keyLine = iniKeyLine(entry.name(), entry.value, EmptyValue::IsKey);
        const QByteArray bytes = IniText::fileForm(keyLine);
        IniText::Mark &mark = marks[line];
        if (!IniText::mark(keyLine, mark) || mark.isSection)
            return {};
        const QByteArrayView name =
            QByteArrayView(bytes).sliced(mark.nameBegin, mark.nameEnd - mark.nameBegin);
        if (name != text.name(old))
            return {};
        copy.replace(old.begin, old.end, bytes);
        mark.moveBy(begin);
        mark.begin = quint32(begin);
        mark.end = quint32(copy.position(old.end));
    }
    return IniText(copy.result(), std::move(marks));
}

bool mayDisturb(const IniEntries::Entry &entry)
{
    IniText::Mark mark;
    const QString keyLine = iniKeyLine(entry.name(), entry.value, EmptyValue::IsKey);
    if (IniText::mark(keyLine, mark) && mark.isSection)
        return true;
    const QString header = iniSectionLine(entry.section());
    const auto scanned = scanIniLine(QStringView(header), EmptyValue::IsKey);
    return scanned.kind != IniLine<QStringView>::Section || scanned.name != entry.section();
}

} // namespace paravue
