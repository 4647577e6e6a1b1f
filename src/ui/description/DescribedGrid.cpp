#include "ui/description/DescribedGrid.h"

#include "ui/description/ElementAttributes.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextReferences.h"

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int ToTheEdge = -1;

int spanOf(const ElementAttributes &item, QLatin1StringView name)
{
    const int span = item.number(name);
    return span == 0 ? 1 : std::max(span, ToTheEdge);
}

} // namespace

CellPlace CellPlace::of(const ElementAttributes &item)
{
    return {item.number(QLatin1StringView("row")), item.number(QLatin1StringView("column")),
            spanOf(item, QLatin1StringView("rowSpan")), spanOf(item, QLatin1StringView("columnSpan"))};
}

bool DescribedCell::isLine() const
{
    return type == QLatin1StringView("separator") &&
           element.attribute(QStringLiteral("orientation")) == QLatin1StringView("horizontal");
}

bool DescribedCell::showsOnlyAValue() const
{
    if (!element.firstChildElement(QStringLiteral("value")).isNull())
        return true;
    const QString text = ownText(element.firstChildElement(QStringLiteral("text")));
    const auto hasLetters = [&text](qsizetype begin, qsizetype end) {
        return std::any_of(text.begin() + begin, text.begin() + end, [](QChar c) { return c.isLetter(); });
    };
    qsizetype end = 0;
    while (const auto address = findBracedAddress(text, end)) {
        if (hasLetters(end, address->begin))
            return false;
        end = address->end;
    }
    return end > 0 && !hasLetters(end, text.size());
}

DescribedGrid::DescribedGrid(const QDomElement &item)
{
    const QString itemTag = QStringLiteral("item");
    for (QDomElement child = item.firstChildElement(itemTag); !child.isNull();
         child = child.nextSiblingElement(itemTag)) {
        const ElementAttributes attributes(child);
        const DescribedCell cell{child, CellPlace::of(attributes),
                                 attributes.text(QLatin1StringView("type"))};
        if (cell.isLabel() && !cell.showsOnlyAValue()) {
            m_rightOf.insert({cell.place.row, cell.place.columnEnd()}, child);
            m_below.insert({cell.place.row + std::max(cell.place.rowSpan, 1), cell.place.column}, child);
        }
        m_rows[cell.place.row].append(int(m_cells.size()));
        m_cells.push_back(cell);
    }
    for (const DescribedCell &cell : m_cells) {
        if (cell.isLine())
            addHeadings(cell);
    }
    std::stable_sort(m_headings.begin(), m_headings.end(),
                     [](const Heading &a, const Heading &b) { return a.row < b.row; });
}

QDomElement DescribedGrid::heading(const DescribedCell &cell) const
{
    for (auto heading = m_headings.rbegin(); heading != m_headings.rend(); ++heading) {
        if (heading->row < cell.place.row && heading->column < cell.place.columnEnd() &&
            cell.place.column < heading->columnEnd)
            return heading->label;
    }
    return {};
}

QDomElement DescribedGrid::labelOf(const DescribedCell &cell) const
{
    const QDomElement left = m_rightOf.value({cell.place.row, cell.place.column});
    return left.isNull() && !cell.isLabel() ? m_below.value({cell.place.row, cell.place.column}) : left;
}

QList<int> DescribedGrid::cellsIn(int row, const DescribedCell &line) const
{
    QList<int> found = m_rows.value(row);
    found.removeIf([&](int index) {
        const int column = m_cells[size_t(index)].place.column;
        return column < line.place.column || column >= line.place.columnEnd();
    });
    return found;
}

/// As the page shows it: what stands right above a line is the heading of what stands below, a label of
/// its own or the row of labels that a table begins with.
void DescribedGrid::addHeadings(const DescribedCell &line)
{
    const QList<int> above = cellsIn(line.place.row - 1, line);
    const bool areLabels = std::all_of(above.begin(), above.end(),
                                       [this](int index) { return m_cells[size_t(index)].isLabel(); });
    if (!areLabels || (above.size() > 1 && !cellsIn(line.place.row - 2, line).isEmpty()))
        return;
    for (const int index : above) {
        const DescribedCell &label = m_cells[size_t(index)];
        const CellPlace &of = above.size() > 1 ? label.place : line.place;
        m_headings.push_back({line.place.row, of.column, of.columnEnd(), label.element});
    }
}

} // namespace paravue
