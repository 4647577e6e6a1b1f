#pragma once

#include <QStringView>

namespace paravue
{

/// The parts of a configuration address, "file/section/key" with an optional "/rest". It is split once and
/// without copies: every part is a view into the address, which must outlive it. Parts may be empty.
class ConfigAddress
{
public:
    explicit ConfigAddress(QStringView address)
        : m_address(address), m_first(address.size()), m_third(address.size())
    {
        // Parts are short: a plain loop is faster than three searches.
        for (qsizetype i = 0; i < address.size(); ++i) {
            if (address.utf16()[i] != u'/')
                continue;
            if (++m_slashes == 1) {
                m_first = i;
            } else if (m_slashes == 3) {
                m_third = i;
                break;
            }
        }
    }

    bool hasKey() const { return m_slashes >= 2; }
    bool hasRest() const { return m_slashes == 3; }

    QStringView file() const { return m_address.first(m_first); }
    /// "section/key" (just what there is when the address is shorter).
    QStringView entry() const
    {
        const qsizetype begin = qMin(m_first + 1, m_third);
        return m_address.sliced(begin, m_third - begin);
    }
    /// "file/section/key" (the whole address when it is shorter).
    QStringView path() const { return m_address.first(m_third); }
    /// What follows the third "/"; a null view when there is no third one.
    QStringView rest() const { return hasRest() ? m_address.sliced(m_third + 1) : QStringView(); }

private:
    QStringView m_address;
    int m_slashes = 0;     ///< counted up to three
    qsizetype m_first = 0; ///< where the first "/" stands, or the end
    qsizetype m_third = 0; ///< where the third "/" stands, or the end
};

} // namespace paravue
