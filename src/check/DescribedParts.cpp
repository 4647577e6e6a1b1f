#include "check/DescribedParts.h"

#include "check/CheckText.h"
#include "check/ElementNames.h"
#include "check/GridOverlap.h"
#include "check/ProblemList.h"
#include "ui/CWinMain.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/ElementAttributes.h"
#include "ui/page/GridCell.h"
#include "ui/types/ControlTypes.h"

namespace paravue
{
namespace
{

const QString tabTag = QStringLiteral("tab");

template <typename Visit>
void forEachChild(const QDomElement &element, Visit visit)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        visit(child);
}

class PartFinder
{
public:
    explicit PartFinder(ProblemList &problems) : m_problems(problems) {}

    DescribedParts find(const QDomElement &root)
    {
        forEachChild(root, [&](const QDomElement &child) {
            const QString tag = child.tagName();
            if (tag == QLatin1String("translations") || tag == QLatin1String("di"))
                return;
            if (tag != QLatin1String("tabwidget") && tag != QLatin1String("window")) {
                lookForDialogs(child);
            } else if (root.firstChildElement(tag) != child) {
                m_problems.warning(child, CheckText::tr("Only the first \"%1\" counts").arg(tag));
            } else if (tag == QLatin1String("tabwidget")) {
                tabs(child);
            } else {
                m_parts.targets.insert(elementId(child),
                                       {ActionTarget::Kind::Window, nullptr, &CWinMain::staticMetaObject,
                                        CheckText::tr("The window")});
                forEachChild(child, [this](const QDomElement &inner) { lookForDialogs(inner); });
            }
        });
        return m_parts;
    }

private:
    /// Elements that have a page but are neither tabs nor parts of one, anywhere.
    void lookForDialogs(const QDomElement &element)
    {
        if (!element.firstChildElement(itemTag).isNull()) {
            m_parts.dialogs.append(element);
            m_parts.targets.insert(
                elementId(element),
                {ActionTarget::Kind::Dialog, nullptr, &QDialog::staticMetaObject, CheckText::tr("A dialog")});
            page(element);
        } else {
            forEachChild(element, [this](const QDomElement &child) { lookForDialogs(child); });
        }
    }

    void tabs(const QDomElement &container)
    {
        int count = 0;
        forEachChild(container, [&](const QDomElement &child) {
            if (child.tagName() == tabTag) {
                ++count;
                page(child);
            } else {
                lookForDialogs(child);
            }
        });
        const QDomElement selection = container.firstChildElement(QStringLiteral("selection"));
        const int selected = selection.text().toInt();
        if (!selection.isNull() && (selected < 0 || selected >= count))
            m_problems.warning(selection, CheckText::tr("There is no page %1; the first one has the number 0")
                                              .arg(selection.text().trimmed()));
    }

    void page(const QDomElement &container)
    {
        forEachChild(container, [this](const QDomElement &child) {
            const QString type = child.attribute(QStringLiteral("type"));
            if (child.tagName() != itemTag)
                lookForDialogs(child);
            else if (type != QLatin1String("gridlayout"))
                m_problems.error(
                    child,
                    CheckText::tr("Unknown node type \"%1\": a page holds grids, and a control stands in "
                                  "one of them")
                        .arg(type));
            else
                grid(child);
        });
    }

    void grid(const QDomElement &item)
    {
        checkOverlaps(item, m_problems);
        forEachChild(item, [this](const QDomElement &child) {
            if (child.tagName() == itemTag)
                cell(child);
            else if (child.tagName() == QLatin1String("stretch"))
                stretch(child);
            else
                lookForDialogs(child);
        });
    }

    void stretch(const QDomElement &stretch)
    {
        const GridLine line = GridLine::of(stretch);
        if (line.kind == GridLine::None)
            m_problems.error(stretch, CheckText::tr("A stretch needs a \"column\" or a \"row\""));
        else if (!line.isWithinLimits())
            m_problems.error(stretch, CheckText::tr("This row or column is beyond the limits of a grid"));
    }

    void cell(const QDomElement &item)
    {
        const QString type = item.attribute(QStringLiteral("type"));
        const LayoutItem layout = layoutItem(type);
        const ControlAdapter *adapter = adapterOfType(type);
        if (!GridCell::of(ElementAttributes(item)).isWithinLimits())
            m_problems.error(item, CheckText::tr("This row or column is beyond the limits of a grid"));
        if (layout == LayoutItem::Grid)
            grid(item);
        else if (adapter)
            control(item, type, *adapter);
        else if (layout == LayoutItem::None)
            m_problems.error(item, CheckText::tr("Unknown control type \"%1\"").arg(type));
    }

    void control(const QDomElement &item, const QString &type, const ControlAdapter &adapter)
    {
        const QString name = CheckText::tr("A control of the type \"%1\"").arg(type);
        m_parts.controls.append({item, &adapter});
        m_parts.targets.insert(elementId(item),
                               {ActionTarget::Kind::Control, &adapter, &adapter.widgetClass(), name});
        if (adapter.traits().hasPages) {
            tabs(item);
            return;
        }
        forEachChild(item, [&](const QDomElement &child) {
            if (child.tagName() == itemTag)
                m_problems.warning(
                    child, CheckText::tr("A control of the type \"%1\" holds no other one").arg(type));
            else
                lookForDialogs(child);
        });
    }

    ProblemList &m_problems;
    DescribedParts m_parts;
};

} // namespace

DescribedParts findParts(const QDomElement &root, ProblemList &problems)
{
    return PartFinder(problems).find(root);
}

} // namespace paravue
