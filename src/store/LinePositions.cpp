#include "store/LinePositions.h"

#include <algorithm>

namespace paravue
{

LinePositions::Tree &LinePositions::tree(const Ranks &ranks)
{
    if (!m_tree) {
        m_tree = std::make_unique<Tree>(m_lines.cbegin(), m_lines.cend(), ByRank{&ranks});
        m_lines = {};
    }
    return *m_tree;
}

void LinePositions::insert(Line line, const Ranks &ranks)
{
    tree(ranks).insert(line);
}

void LinePositions::remove(Line line, const Ranks &ranks)
{
    tree(ranks).erase(line);
}

LinePositions::Line LinePositions::first() const
{
    if (m_tree)
        return m_tree->empty() ? None : *m_tree->cbegin();
    return m_lines.empty() ? None : m_lines.front();
}

LinePositions::Line LinePositions::firstAfter(Line line, const Ranks &ranks) const
{
    if (m_tree) {
        const auto found = m_tree->upper_bound(line);
        return found == m_tree->cend() ? None : *found;
    }
    const auto found = std::upper_bound(m_lines.cbegin(), m_lines.cend(), line, ByRank{&ranks});
    return found == m_lines.cend() ? None : *found;
}

LinePositions::Line LinePositions::lastBefore(Line line, const Ranks &ranks) const
{
    if (m_tree) {
        const auto found = m_tree->lower_bound(line);
        return found == m_tree->cbegin() ? None : *std::prev(found);
    }
    const auto found = std::lower_bound(m_lines.cbegin(), m_lines.cend(), line, ByRank{&ranks});
    return found == m_lines.cbegin() ? None : *std::prev(found);
}

} // namespace paravue
