#include "controls/PackageListView.h"

namespace paravue
{

PackageListView::PackageListView(QWidget *parent) : SortableListView(parent)
{
    setPlaceholder(tr("No packages"));
}

bool PackageListView::setPackages(const QList<Package> &packages)
{
    m_packages = packages;
    QList<QStringList> rows;
    rows.reserve(packages.size());
    for (const Package &package : packages)
        rows.append({package.name, package.version, package.description, package.priority});
    return setRows(rows);
}

} // namespace paravue
