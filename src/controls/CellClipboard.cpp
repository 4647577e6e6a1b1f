#include "controls/CellClipboard.h"

#include "controls/CellRows.h"
#include "controls/EditClipboard.h"

#include <QRegularExpression>

namespace paravue
{
namespace
{

const QLatin1String CellsMimeType("application/x-paravue-cells");

} // namespace

void copyCells(const CellRows &cells)
{
    QStringList rows;
    for (int y = 0; y < cells.size().height(); ++y) {
        QString row;
        for (int x = 0; x < cells.size().width(); ++x)
            row += QChar(u'0' + cells.mark({x, y}));
        rows.append(row);
    }
    QStringList readable = rows;
    copyLines(CellsMimeType, rows, readable.replaceInStrings(QStringLiteral("0"), QStringLiteral(".")));
}

std::optional<QStringList> copiedCells()
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9.]+\\z"));
    QStringList rows = copiedLines(CellsMimeType);
    for (QString &row : rows) {
        row = row.trimmed();
        if (row.size() != rows[0].size() || !form.match(row).hasMatch())
            return {};
    }
    if (rows.isEmpty())
        return {};
    return rows.replaceInStrings(QStringLiteral("."), QStringLiteral("0"));
}

} // namespace paravue
