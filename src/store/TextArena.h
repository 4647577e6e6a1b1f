#pragma once

#include <QStringView>

#include <algorithm>
#include <memory>
#include <vector>

namespace paravue
{

/// Keeps many short texts for as long as it lives, without an allocation for each of them.
class TextArena
{
public:
    /// A copy of \a text that stays where it is.
    QStringView keep(QStringView text)
    {
        const size_t size = size_t(text.size());
        if (m_blocks.empty() || m_used + size > m_blockSize) {
            m_blockSize = std::max(size, UsualBlock);
            m_blocks.push_back(std::make_unique_for_overwrite<char16_t[]>(m_blockSize));
            m_used = 0;
        }
        char16_t *const copy = m_blocks.back().get() + m_used;
        std::copy_n(text.utf16(), size, copy);
        m_used += size;
        return {copy, text.size()};
    }

private:
    static constexpr size_t UsualBlock = 2048;

    std::vector<std::unique_ptr<char16_t[]>> m_blocks;
    size_t m_blockSize = 0; ///< of the last one
    size_t m_used = 0;      ///< of the last one
};

} // namespace paravue
