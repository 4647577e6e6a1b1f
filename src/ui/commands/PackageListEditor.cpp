#include "ui/commands/PackageListEditor.h"

#include "controls/SoftList.h"
#include "ui/base/WindowText.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <utility>

namespace paravue
{
namespace
{

const QString listTag = QStringLiteral("softlist");

bool isRemovable(const SoftPackage &package)
{
    static const QStringList needed{"required", "important", "essential"};
    return !needed.contains(package.priority.trimmed(), Qt::CaseInsensitive);
}

} // namespace

PackageListEditor::PackageListEditor(const Parts &parts, std::function<void(const QString &)> showDialog)
    : m_parts(parts), m_showDialog(std::move(showDialog))
{
}

void PackageListEditor::run(const QString &tag)
{
    if (tag == QLatin1String("remove"))
        removeSelected();
    else
        m_parts.context.report(
            WindowText::tr("Unknown %1 tag \"%2\"").arg(QStringLiteral("CWinMain::softListSlot"), tag));
}

SoftList *PackageListEditor::list() const
{
    for (const QDomElement &mark : m_parts.document.elements(listTag)) {
        const Control *control = m_parts.table.of(mark.parentNode().toElement());
        if (auto *list = control ? qobject_cast<SoftList *>(control->widget) : nullptr)
            return list;
    }
    m_parts.context.report(WindowText::tr("No list of packages has the tag \"%1\"").arg(listTag));
    return nullptr;
}

void PackageListEditor::removeSelected()
{
    const SoftList *packages = list();
    if (!packages || packages->selectedRow() < 0)
        return;
    const SoftPackage &package = packages->packages().at(packages->selectedRow());
    if (!isRemovable(package)) {
        m_showDialog(QStringLiteral("softcantdelete"));
        return;
    }
    m_parts.bindings.write("general/remove_package/name/" + package.name);
    m_showDialog(QStringLiteral("softdodelete"));
}

} // namespace paravue
