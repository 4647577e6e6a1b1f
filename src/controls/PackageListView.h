#pragma once

#include "controls/SortableListView.h"

namespace paravue
{

/// One software package of a recorder. The priority is a word such as "optional" or "required".
struct Package {
    QString name;
    QString version;
    QString description;
    QString priority;
};

/// The software packages of a recorder, one per row: name, version, description and priority.
///
/// It shows these keys below one prefix, file/section, of the configuration:
///
///     PACKAGES               the number of packages, decimal
///     PACKAGE_NAME_i         the name of package i
///     PACKAGE_VER_i          its version
///     PACKAGE_DESC_i         what it is
///     PACKAGE_PRIORITY_i     how much the recorder needs it
///
/// i counts from 0 when PACKAGE_NAME_0 has a value and from 1 otherwise. The list is read-only.
class PackageListView : public SortableListView
{
    Q_OBJECT

public:
    explicit PackageListView(QWidget *parent = nullptr);

    /// Shows these packages and emits nothing. Returns false when they are shown already.
    bool setPackages(const QList<Package> &packages);
    const QList<Package> &packages() const { return m_packages; }

private:
    QList<Package> m_packages;
};

} // namespace paravue
