#include "store/ConfigAddress.h"

namespace paravue
{

ConfigAddress::ConfigAddress(QStringView address)
    : m_address(address), m_first(address.size()), m_third(address.size())
{
    qsizetype from = 0;
    for (; m_slashes < 3; ++m_slashes) {
        const qsizetype slash = address.indexOf(u'/', from);
        if (slash < 0)
            break;
        if (m_slashes == 0)
            m_first = slash;
        else if (m_slashes == 2)
            m_third = slash;
        from = slash + 1;
    }
    m_entrySize = m_third - qMin(m_first + 1, m_third);
}

} // namespace paravue
