#include "store/ConfigAddress.h"

namespace paravue
{

ConfigAddress::ConfigAddress(QStringView address)
    : m_address(address), m_first(address.size()), m_third(address.size())
{
    // Parts are short: a plain loop is faster than three searches.
    const char16_t *const begin = address.utf16();
    for (qsizetype i = 0; i < address.size() && m_slashes < 3; ++i) {
        if (begin[i] != u'/')
            continue;
        ++m_slashes;
        if (m_slashes == 1)
            m_first = i;
        else if (m_slashes == 3)
            m_third = i;
    }
    m_entrySize = m_third - qMin(m_first + 1, m_third);
}

} // namespace paravue
