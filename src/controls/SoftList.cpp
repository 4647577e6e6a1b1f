#include "controls/SoftList.h"

namespace paravue
{

SoftList::SoftList(QWidget *parent) : RowListView(parent)
{
    setPlaceholder(tr("No packages"));
}

bool SoftList::setPackages(const QList<SoftPackage> &packages)
{
    m_packages = packages;
    QList<QStringList> rows;
    rows.reserve(packages.size());
    for (const SoftPackage &package : packages)
        rows.append({package.name, package.version, package.description, package.priority});
    return setRows(rows);
}

} // namespace paravue
