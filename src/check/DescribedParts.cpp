#include "check/DescribedParts.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/CWinMain.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlType.h"
#include "ui/description/InterfaceDocument.h"

namespace paravue
{
namespace
{

const QString itemTag = QStringLiteral("item");
const QString tabTag = QStringLiteral("tab");

template <typename Visit>
void forEachChild(const QDomElement &element, Visit visit)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        visit(child);
}

bool isWithinGrid(int index, int span)
{
    return index >= 0 && index < limits::GridIndex && span <= limits::GridIndex - index;
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
        const bool isColumn = stretch.hasAttribute(QStringLiteral("column"));
        const QString name = isColumn ? QStringLiteral("column") : QStringLiteral("row");
        if (!stretch.hasAttribute(name))
            m_problems.error(stretch, CheckText::tr("A stretch needs a \"column\" or a \"row\""));
        else if (!isWithinGrid(intAttribute(stretch, name), 1))
            m_problems.error(stretch, CheckText::tr("This row or column is beyond the limits of a grid"));
    }

    void cell(const QDomElement &item)
    {
        const QString name = item.attribute(QStringLiteral("type"));
        const GridItemType *type = gridItemType(name);
        if (!isWithinGrid(intAttribute(item, QStringLiteral("row")),
                          intAttribute(item, QStringLiteral("rowSpan"))) ||
            !isWithinGrid(intAttribute(item, QStringLiteral("column")),
                          intAttribute(item, QStringLiteral("columnSpan"))))
            m_problems.error(item, CheckText::tr("This row or column is beyond the limits of a grid"));
        if (!type)
            m_problems.error(item, CheckText::tr("Unknown control type \"%1\"").arg(name));
        else if (name == QLatin1String("gridlayout"))
            grid(item);
        else if (const auto *control = dynamic_cast<const ControlType *>(type))
            this->control(item, name, *control);
    }

    void control(const QDomElement &item, const QString &name, const ControlType &type)
    {
        m_parts.controls.append({item, &type});
        m_parts.targets.insert(elementId(item), {ActionTarget::Kind::Control, &type, &type.widgetClass(),
                                                 CheckText::tr("A control of the type \"%1\"").arg(name)});
        if (name == QLatin1String("tabwidget")) {
            tabs(item);
            return;
        }
        forEachChild(item, [&](const QDomElement &child) {
            if (child.tagName() == itemTag)
                m_problems.warning(
                    child, CheckText::tr("A control of the type \"%1\" holds no other one").arg(name));
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
