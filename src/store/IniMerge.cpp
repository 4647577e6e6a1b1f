#include "store/IniMerge.h"

#include "store/IniGrammar.h"

#include <algorithm>

namespace paravue
{

namespace
{

/// Between neighbours of the text there is room for many new lines, most of which come one behind the other.
constexpr quint64 RankGap = quint64(1) << 30;
constexpr quint64 RankStep = quint64(1) << 12;

} // namespace

quint32 IniMerge::Kin::number(QByteArrayView name) const
{
    return numbers.value(QByteArray::fromRawData(name.data(), name.size()), None);
}

quint32 IniMerge::Kin::addName(const QByteArray &name)
{
    const auto found = numbers.constFind(name);
    if (found != numbers.cend())
        return *found;
    lines.emplace_back();
    return *numbers.insert(name, quint32(lines.size() - 1));
}

const LinePositions &IniMerge::Kin::named(QByteArrayView name) const
{
    static const LinePositions nothing;
    const quint32 found = number(name);
    return found == None ? nothing : lines[found];
}

IniMerge::IniMerge(const IniText &text, bool sectioned)
    : m_text(text), m_sectioned(sectioned), m_end(Line(text.marks().size())), m_last(m_end),
      m_lines(text.marks().size() + 1), m_ranks(text.marks().size() + 1)
{
    for (Line line = 0; line < m_end; ++line) {
        const IniText::Mark &mark = text.marks()[line];
        const QByteArrayView name = text.name(mark);
        LineState &state = m_lines[line];
        state.next = line + 1;
        state.kind = mark.isSection ? Kind::Section : Kind::Key;
        Kin &kindred = kin(state.kind);
        state.name = kindred.addName(QByteArray::fromRawData(name.data(), name.size()));
        m_highestRank = m_ranks[line] = (line + 1) * RankGap;
        kindred.all.append(line);
        kindred.lines[state.name].append(line);
    }
}

QByteArrayView IniMerge::bytesOf(Line line) const
{
    if (m_lines[line].written != None)
        return m_written[m_lines[line].written].bytes;
    const IniText::Mark &mark = m_text.marks()[line];
    return m_text.slice(mark.begin, mark.end);
}

bool IniMerge::isLastLine(Line line) const
{
    if (line == m_last)
        return true;
    const qsizetype markedEnd = m_end == 0 ? 0 : m_text.marks()[m_end - 1].end;
    return m_lines[line].next == m_end && m_end == m_last && markedEnd == m_text.bytes().size();
}

void IniMerge::setText(Line line, const QString &text)
{
    Written written{IniText::fileForm(text), {}};
    const bool marked = IniText::mark(text, written.mark);
    LineState &state = m_lines[line];
    const Kind kind = !marked ? Kind::Other : written.mark.isSection ? Kind::Section : Kind::Key;
    quint32 name = None;
    if (marked) {
        const IniText::Mark &mark = written.mark;
        name = kin(kind).addName(written.bytes.sliced(mark.nameBegin, mark.nameEnd - mark.nameBegin));
    }
    if (state.kind != kind || state.name != name) {
        if (state.kind != Kind::Other) {
            kin(state.kind).all.remove(line, m_ranks);
            kin(state.kind).lines[state.name].remove(line, m_ranks);
        }
        state.kind = kind;
        state.name = name;
        if (marked) {
            kin(kind).all.insert(line, m_ranks);
            kin(kind).lines[name].insert(line, m_ranks);
        }
    }
    if (state.written == None) {
        state.written = quint32(m_written.size());
        m_written.push_back(std::move(written));
    } else {
        m_written[state.written] = std::move(written);
    }
}

void IniMerge::rewrite(Line line, const QString &text)
{
    if (bytesOf(line) != IniText::fileForm(text))
        setText(line, text);
}

IniMerge::Line IniMerge::addLine(Line after)
{
    const Line line = Line(m_lines.size());
    m_lines.push_back({m_lines[after].next, None, None, Kind::Other});
    m_lines[after].next = line;
    if (after == m_last)
        m_last = line;
    return line;
}

void IniMerge::insert(Line after, const QString &text)
{
    const quint64 rank = rankBehind(after);
    const Line line = addLine(after);
    m_ranks.push_back(rank);
    setText(line, text);
}

void IniMerge::append(const QString &text)
{
    const Line line = addLine(m_last);
    m_highestRank += RankGap;
    m_ranks.push_back(m_highestRank);
    setText(line, text);
}

quint64 IniMerge::rankBehind(Line line)
{
    for (;;) {
        quint64 next = m_ranks[line] + 2 * RankGap;
        for (const LinePositions *positions : {&m_keys.all, &m_sections.all}) {
            const Line follower = positions->firstAfter(line, m_ranks);
            if (follower != None)
                next = std::min(next, m_ranks[follower]);
        }
        const quint64 room = next - m_ranks[line];
        if (room >= 2) {
            const quint64 rank = m_ranks[line] + std::min(room / 2, RankStep);
            m_highestRank = std::max(m_highestRank, rank);
            return rank;
        }
        renumber();
    }
}

void IniMerge::renumber()
{
    m_highestRank = 0;
    for (Line line = 0; line != None; line = m_lines[line].next) {
        m_highestRank += RankGap;
        m_ranks[line] = m_highestRank;
    }
}

void IniMerge::put(QByteArrayView section, QByteArrayView name, QStringView value, bool inFile)
{
    const QString text = iniKeyLine(QString::fromUtf8(name), value, EmptyValue::IsKey);
    if (m_sectioned && inFile) {
        replaceInSections(section, name, text);
    } else if (m_sectioned) {
        insertInSection(section, text);
    } else if (inFile) {
        const Line line = m_keys.named(name).first();
        if (line != None)
            rewrite(line, text);
    } else {
        append(text);
    }
}

void IniMerge::replaceInSections(QByteArrayView section, QByteArrayView name, const QString &text)
{
    const quint32 sectionNumber = m_sections.number(section);
    const quint32 nameNumber = m_keys.number(name);
    if (sectionNumber == None || nameNumber == None)
        return;
    Line header = m_sections.lines[sectionNumber].first();
    while (header != None) {
        const Line line = m_keys.lines[nameNumber].firstAfter(header, m_ranks);
        if (line == None)
            return;
        rewrite(line, text);
        // More headers before the same line would find the same line; unless it is no such key any more.
        const LineState &state = m_lines[line];
        const bool found = state.kind == Kind::Key && state.name == nameNumber;
        header = m_sections.lines[sectionNumber].firstAfter(found ? line : header, m_ranks);
    }
}

void IniMerge::insertInSection(QByteArrayView section, const QString &text)
{
    const Line header = m_sections.named(section).first();
    if (header == None || isLastLine(header)) {
        append(iniSectionLine(QString::fromUtf8(section)));
        append(text);
        return;
    }
    const Line firstKey = m_keys.all.firstAfter(header, m_ranks);
    const Line nextSection = firstKey == None ? None : m_sections.all.firstAfter(firstKey, m_ranks);
    if (nextSection == None)
        append(text);
    else
        insert(m_keys.all.lastBefore(nextSection, m_ranks), text);
}

IniText IniMerge::result() const
{
    if (m_written.empty())
        return m_text;
    QByteArray bytes;
    std::vector<IniText::Mark> marks;
    bytes.reserve(m_text.bytes().size() + qsizetype(m_written.size()) * 32);
    marks.reserve(m_lines.size());
    qsizetype copied = 0;
    for (Line line = 0; line != None; line = m_lines[line].next) {
        const LineState &state = m_lines[line];
        if (line <= m_end) { // with the unmarked lines before it
            const qsizetype begin = line == m_end ? m_text.bytes().size() : m_text.marks()[line].begin;
            bytes.append(m_text.slice(copied, begin));
            if (line == m_end)
                continue;
            copied = m_text.marks()[line].end;
        }
        const QByteArrayView lineBytes = bytesOf(line);
        if (state.kind != Kind::Other) {
            const bool isNew = state.written != None;
            IniText::Mark mark = isNew ? m_written[state.written].mark : m_text.marks()[line];
            mark.moveBy(bytes.size() - qsizetype(mark.begin));
            mark.begin = quint32(bytes.size());
            mark.end = quint32(bytes.size() + lineBytes.size());
            marks.push_back(mark);
        }
        bytes.append(lineBytes);
    }
    return {bytes, std::move(marks)};
}

} // namespace paravue
