#pragma once

#include <QtGlobal>

#include <memory>
#include <set>
#include <vector>

namespace paravue
{

/// Lines of a text, in their order. Appended from the top they are a plain array, which becomes a tree with
/// the first line that is inserted or removed; most files need none.
///
/// A line is known by its number in an array of ranks that all sets of one text share: the rank of a line
/// tells where it stands.
class LinePositions
{
public:
    using Line = quint32;
    using Ranks = std::vector<quint64>;

    static constexpr Line None = ~Line(0);

    void append(Line line) { m_lines.push_back(line); }
    void insert(Line line, const Ranks &ranks);
    void remove(Line line, const Ranks &ranks);

    Line first() const;
    Line firstAfter(Line line, const Ranks &ranks) const;
    Line lastBefore(Line line, const Ranks &ranks) const;

private:
    struct ByRank {
        const Ranks *ranks;
        bool operator()(Line a, Line b) const { return (*ranks)[a] < (*ranks)[b]; }
    };
    using Tree = std::set<Line, ByRank>;

    Tree &tree(const Ranks &ranks);

    std::vector<Line> m_lines;
    std::unique_ptr<Tree> m_tree; ///< in place of the array once something was added or removed
};

} // namespace paravue
