#include "controls/CellRows.h"

namespace paravue
{

CellRows::CellRows(const QSize &size) : m_size(size)
{
    m_texts.resize(size.height());
}

bool CellRows::setTexts(const QStringList &texts)
{
    QStringList fitting = texts.mid(0, m_size.height());
    fitting.resize(m_size.height());
    if (fitting == m_texts)
        return false;
    m_texts = fitting;
    return true;
}

int CellRows::mark(const QPoint &cell) const
{
    if (!contains(cell) || cell.x() >= m_texts[cell.y()].size())
        return 0;
    const QChar text = m_texts[cell.y()][cell.x()];
    return text >= u'1' && text <= u'9' ? text.unicode() - u'0' : 0;
}

bool CellRows::setMark(const QPoint &cell, int mark)
{
    if (!contains(cell) || this->mark(cell) == mark)
        return false;
    QString &row = m_texts[cell.y()];
    if (row.size() <= cell.x())
        row = row.leftJustified(cell.x() + 1, u'0');
    row[cell.x()] = QChar(u'0' + mark);
    return true;
}

} // namespace paravue
