#include "ui/commands/PackageListEditor.h"

#include "controls/PackageListView.h"
#include "ui/base/WindowText.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/DialogTags.h"

#include <utility>

namespace paravue
{
namespace
{

const QString packageListTag = QStringLiteral("softlist");

bool isRemovable(const Package &package)
{
    static const QStringList needed{"required", "important", "essential"};
    return !needed.contains(package.priority.trimmed(), Qt::CaseInsensitive);
}

} // namespace

PackageListEditor::PackageListEditor(ControlContext &context, Bindings &bindings,
                                     std::function<void(const QString &)> showDialog)
    : m_context(context), m_bindings(bindings), m_showDialog(std::move(showDialog))
{
}

void PackageListEditor::run(const QString &tag)
{
    if (tag == QLatin1String("remove"))
        removeSelected();
    else
        m_context.report(
            WindowText::tr("Unknown %1 tag \"%2\"").arg(QStringLiteral("CWinMain::softListSlot"), tag));
}

void PackageListEditor::removeSelected()
{
    const auto *packages = m_context.description().firstWidget<PackageListView>(packageListTag);
    if (!packages)
        m_context.report(WindowText::tr("No list of packages has the tag \"%1\"").arg(packageListTag));
    if (!packages || packages->selectedRow() < 0)
        return;
    const Package &package = packages->packages().at(packages->selectedRow());
    if (!isRemovable(package)) {
        m_showDialog(dialogtags::PackageNeeded);
        return;
    }
    m_bindings.write({{QStringLiteral("general/remove_package/name"), package.name}});
    m_showDialog(dialogtags::RemovePackage);
}

} // namespace paravue
