#pragma once

#include "store/IniText.h"
#include "store/LinePositions.h"

#include <QHash>

#include <vector>

namespace paravue
{

/// Puts values into the lines of a configuration file.
///
/// The rules are old, and recorders' files rely on them:
/// - A key of the file replaces the first line of its name. In a file with sections it replaces the first
///   one behind each header of its section, up to the end of the text.
/// - A new key goes behind the last key line before the next section. When its section has no key line, that
///   of the next section that has one counts; without a next section it is appended.
/// - A new section is appended, without a blank line before it. So is a second header when the first one is
///   the very last line.
/// - A written line counts for the next key at once. One whose value holds a single quote is a key line no
///   longer.
///
/// An index from names to lines makes the cost of a key independent of the size of the file.
class IniMerge
{
public:
    /// \a text must stay as it is until the work is done.
    IniMerge(const IniText &text, bool sectioned);
    Q_DISABLE_COPY_MOVE(IniMerge)

    /// Keys must come in the order of "section/name".
    void put(QByteArrayView section, QByteArrayView name, QStringView value, bool inFile);

    /// The text with all that was put.
    IniText result() const;

private:
    using Line = LinePositions::Line;
    static constexpr Line None = LinePositions::None;
    enum class Kind : quint8 { Other, Key, Section };

    /// Lines are numbered: first the marked ones of the text, then one that stands for the end of the text,
    /// then the new ones.
    struct LineState {
        Line next = None;
        quint32 name = None;    ///< number of its name, among those of its kind
        quint32 written = None; ///< index of the new text
        Kind kind = Kind::Other;
    };
    struct Written {
        QByteArray bytes;
        IniText::Mark mark;
    };
    /// The key lines or the section lines, all of them and by name.
    struct Kin {
        quint32 number(QByteArrayView name) const;
        quint32 addName(const QByteArray &name);
        const LinePositions &named(QByteArrayView name) const;

        LinePositions all;
        QHash<QByteArray, quint32> numbers;
        std::vector<LinePositions> lines; ///< by the number of their name
    };

    Kin &kin(Kind kind) { return kind == Kind::Key ? m_keys : m_sections; }
    QByteArrayView bytesOf(Line line) const;
    bool isLastLine(Line line) const;

    void setText(Line line, const QString &text);
    void rewrite(Line line, const QString &text);
    Line addLine(Line after);
    void insert(Line after, const QString &text);
    void append(const QString &text);
    quint64 rankBehind(Line line);
    void renumber();

    void replaceInSections(QByteArrayView section, QByteArrayView name, const QString &text);
    void insertInSection(QByteArrayView section, const QString &text);

    const IniText &m_text;
    const bool m_sectioned;
    const Line m_end; ///< stands for the end of the text as it was
    Line m_last;      ///< the last line at the moment
    std::vector<LineState> m_lines;
    LinePositions::Ranks m_ranks; ///< by line; of no meaning for lines that are not marked
    quint64 m_highestRank = 0;
    std::vector<Written> m_written;
    Kin m_keys;
    Kin m_sections;
};

} // namespace paravue
