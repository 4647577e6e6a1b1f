#include "store/IniOwnLines.h"

#include "store/IniGrammar.h"
#include "store/PiecewiseCopy.h"

#include <QSet>

#include <algorithm>
#include <string>

namespace paravue
{

namespace
{

/// Appends the line of a key to \a bytes and returns its positions. The name comes from a file, so only the
/// value can make the line something else than a key line.
IniText::Mark appendKeyLine(std::string &bytes, QByteArrayView name, QByteArrayView value, bool bare)
{
    IniText::Mark mark;
    bytes.append(name.data(), size_t(name.size()));
    mark.nameEnd = quint32(bytes.size());
    bytes.append(bare ? " = " : " = '");
    mark.valueBegin = quint32(bytes.size());
    bytes.append(value.data(), size_t(value.size()));
    mark.valueEnd = quint32(bytes.size());
    bytes.append(bare ? "\r\n" : "'\r\n");
    mark.end = quint32(bytes.size());
    return mark;
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
        // The section of a key ends at its first "/", so no key is put behind such a header.
        if (text.name(mark).contains('/'))
            return false;
        const qsizetype known = sections.size();
        sections.insert(text.name(mark));
        if (sections.size() == known)
            return false;
    }
    return keys == keysInFile;
}

std::optional<OwnLines> rewriteOwnLines(const IniText &text, const EntriesOfLines &entriesOfLines,
                                        const IniEntries &entries, bool hasNewKeys)
{
    OwnLines result;
    PiecewiseCopy copy(text.bytes());
    std::vector<IniText::Mark> marks;
    marks.reserve(text.marks().size());
    std::string line;
    QByteArray edited;
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
            value = edited = entry.value(text).toUtf8();
        const bool bare = value.isEmpty() || isPlainInteger(value);
        const bool isSpoiling = !bare && (value.contains('\'') || value.contains('\n'));
        if (isSpoiling && text.name(old).startsWith('['))
            return {};
        if (isSpoiling)
            result.spoiling.push_back(&entry);
        if (isSpoiling && hasNewKeys)
            continue;
        line.clear();
        IniText::Mark mark = appendKeyLine(line, text.name(old), value, bare);
        if (QByteArrayView(line) == text.slice(old.begin, old.end))
            continue;
        if (isSpoiling) {
            marks.pop_back();
            line.erase(line.size() - 2, 1); // the value may hold line ends, too
            line = QByteArray::fromStdString(line).replace('\n', "\r\n").toStdString();
        } else {
            mark.moveBy(begin);
            marks.back() = mark;
        }
        copy.replace(old.begin, old.end, line);
    }
    result.text = IniText(copy.result(), std::move(marks));
    return result;
}

bool mayDisturb(const IniEntries::Entry &entry, const IniText &text)
{
    IniText::Mark mark;
    const QString keyLine = iniKeyLine(entry.name(), entry.value(text), EmptyValue::IsKey);
    if (IniText::mark(keyLine, mark) && mark.isSection)
        return true;
    const QString header = iniSectionLine(entry.section());
    const auto scanned = scanIniLine(QStringView(header), EmptyValue::IsKey);
    return scanned.kind != IniLine<QStringView>::Section || scanned.name != entry.section();
}

} // namespace paravue
