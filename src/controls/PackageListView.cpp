#include "controls/PackageListView.h"

#include "controls/OwnTexts.h"

namespace paravue
{

PackageListView::PackageListView(QWidget *parent) : SortableListView(parent)
{
    keepTranslated(*this, [this] { setPlaceholder(tr("No packages")); });
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
