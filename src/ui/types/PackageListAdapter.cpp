#include "controls/PackageListView.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/ListRows.h"

#include <memory>

namespace paravue
{
namespace
{

RowKeys packageKeys(const Control &control)
{
    return {firstAddress(control.element), QStringLiteral("/PACKAGES/0"), QStringLiteral("/PACKAGE_NAME_")};
}

/// A list of the software packages; controls/PackageListView.h describes the keys below the address in its
/// "key".
class PackageListAdapter : public TypedAdapter<PackageListView>
{
public:
    PackageListAdapter()
        : TypedAdapter({.changes = {onSignal<&PackageListView::valueChanged>},
                        .children = {{"column", {{"width"}}}},
                        .keys = {{.form = KeyRule::Group, .count = "/PACKAGES"}},
                        .actionStates = rowStates(),
                        .cost = 60})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        auto *list = new PackageListView(parent);
        addColumns(*list, context, control,
                   {WindowText::tr("Package"), WindowText::tr("Version"), WindowText::tr("Description"),
                    WindowText::tr("Priority")});
        return list;
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }

    bool load(ControlContext &context, const Control &control) const override
    {
        PackageListView &list = widget(control);
        const bool newHeaders = list.setHeaders(columnHeaders(context, control));
        const QList<Package> packages = storedRows<Package>(
            list, context, control, packageKeys(control), 4, [](const auto &value, const QString &i) {
                return Package{value("/PACKAGE_NAME_" + i), value("/PACKAGE_VER_" + i),
                               value("/PACKAGE_DESC_" + i), value("/PACKAGE_PRIORITY_" + i)};
            });
        return list.setPackages(packages) || newHeaders;
    }

    QString actionState(const Control &control) const override { return rowState(widget(control)); }
};

} // namespace

std::unique_ptr<const ControlAdapter> makePackageListAdapter()
{
    return std::make_unique<PackageListAdapter>();
}

} // namespace paravue
