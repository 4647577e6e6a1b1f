#include "ui/review/DescribedItems.h"

#include "store/OrbSetup.h"
#include "ui/accessibility/ControlName.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/DescribedGrid.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

const QString itemTag = QStringLiteral("item");
const QString actionTag = QStringLiteral("action");
const QString tabTag = QStringLiteral("tab");
const QString typeName = QStringLiteral("type");
const QString separator = QStringLiteral(" › ");
const QString textTag = QStringLiteral("text");

} // namespace

/// Walks through a description as the window does when it builds it.
class DescribedItems::Reader
{
public:
    Reader(ControlContext &context, AdapterLookup adapterOf, DescribedItems &found)
        : m_context(context), m_adapterOf(adapterOf), m_found(found)
    {
    }

    void read(const QDomElement &root)
    {
        const QDomElement pages = root.firstChildElement(QStringLiteral("tabwidget"));
        for (QDomElement child = root.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (child == pages)
                readTabs(child, {}, {});
            else if (child.tagName() != QLatin1String("translations"))
                readDialogs(child);
        }
    }

    void attachOpeners(const QHash<QString, int> &dialogs)
    {
        for (const auto &[param, opener] : m_openers) {
            const auto found = dialogs.constFind(m_context.text(param));
            if (found != dialogs.constEnd())
                m_found.m_dialogs[*found].openers.append(opener);
        }
    }

private:
    QString shown(const QDomElement &text) const { return plainText(m_context.text(ownText(text))); }

    /// Any element with a page that is no tab is a dialog.
    void readDialogs(const QDomElement &element)
    {
        if (element.firstChildElement(itemTag).isNull()) {
            for (QDomElement child = element.firstChildElement(); !child.isNull();
                 child = child.nextSiblingElement())
                readDialogs(child);
            return;
        }
        const int outer = std::exchange(m_dialog, int(m_found.m_dialogs.size()));
        const QDomElement title = element.firstChildElement(QStringLiteral("title"));
        m_found.m_dialogs.append({element, shown(title), {}});
        readPage(element, {}, {});
        m_dialog = outer;
    }

    void readTabs(const QDomElement &container, const QStringList &pages, const QString &group)
    {
        for (QDomElement child = container.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (child.tagName() != tabTag) {
                readDialogs(child);
                continue;
            }
            const QString name = m_context.text(child.firstChildElement(QStringLiteral("name")).text());
            readPage(child, pages + QStringList{withoutAccessKey(name)}, group);
        }
    }

    void readPage(const QDomElement &container, const QStringList &pages, const QString &group)
    {
        for (QDomElement child = container.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (child.tagName() == itemTag)
                readGrid(child, pages, group);
            else
                readDialogs(child);
        }
    }

    void readGrid(const QDomElement &item, const QStringList &pages, const QString &outerGroup)
    {
        const DescribedGrid grid(item);
        for (const DescribedCell &cell : grid.cells()) {
            const QDomElement heading = grid.heading(cell);
            const QString group = heading.isNull() ? outerGroup : headingText(heading);
            const LayoutItem layout = layoutItem(cell.type);
            if (layout == LayoutItem::Grid)
                readGrid(cell.element, pages, group);
            else if (const ControlAdapter *adapter =
                         layout == LayoutItem::None ? m_adapterOf(cell.type) : nullptr)
                addItem(cell, *adapter, grid, pages, group);
        }
    }

    void addItem(const DescribedCell &cell, const ControlAdapter &adapter, const DescribedGrid &grid,
                 const QStringList &pages, const QString &group)
    {
        const bool isBuilt = m_dialog < 0 && !cell.isLabel();
        const QString caption = isBuilt ? QString() : captionOf(cell, adapter, grid);
        m_found.m_items.push_back({cell.element, &adapter, m_dialog, pages, group, caption});
        collectOpeners(cell.element, adapter);
        if (adapter.traits().hasPages)
            readTabs(cell.element, pages, group);
    }

    void collectOpeners(const QDomElement &item, const ControlAdapter &adapter)
    {
        const QDomElement first = item.firstChildElement(actionTag);
        const bool isAlone = first.nextSiblingElement(actionTag).isNull();
        const bool isButton = adapter.widgetClass().inherits(&QPushButton::staticMetaObject);
        for (QDomElement action = first; !action.isNull(); action = action.nextSiblingElement(actionTag)) {
            if (action.attribute(QStringLiteral("slot")) == QLatin1String("showDialog"))
                m_openers.emplace_back(action.attribute(QStringLiteral("param")),
                                       DialogOpener{item, m_dialog, isAlone && isButton});
        }
    }

    QString captionOf(const DescribedCell &cell, const ControlAdapter &adapter,
                      const DescribedGrid &grid) const
    {
        const QDomElement own = cell.element.firstChildElement(textTag);
        QString caption;
        if (adapter.widgetClass().inherits(&QAbstractButton::staticMetaObject))
            caption = withoutAccessKey(m_context.text(ownText(own)));
        if (caption.isEmpty())
            caption = shown(grid.labelOf(cell).firstChildElement(textTag));
        if (caption.isEmpty() && cell.isLabel() && !cell.showsOnlyAValue())
            caption = shown(own);
        return caption.isEmpty() ? shown(cell.element.firstChildElement(QStringLiteral("tooltip"))) : caption;
    }

    /// The same heading is asked for by all cells below it.
    QString headingText(const QDomElement &label)
    {
        if (m_heading != label) {
            m_heading = label;
            m_headingText = shown(label.firstChildElement(textTag));
        }
        return m_headingText;
    }

    ControlContext &m_context;
    AdapterLookup m_adapterOf;
    DescribedItems &m_found;
    int m_dialog = -1;
    QDomElement m_heading;
    QString m_headingText;
    std::vector<std::pair<QString, DialogOpener>> m_openers; ///< with the parameter that names the dialog
};

QString DescribedItem::place(const QList<DescribedDialog> &dialogs) const
{
    QStringList parts = pages;
    if (dialog >= 0)
        parts.prepend(dialogs[dialog].title);
    parts.removeAll(QString());
    return parts.join(separator);
}

QString DescribedItem::fullCaption(const QList<DescribedDialog> &dialogs, const QString &valueName) const
{
    QStringList parts{place(dialogs), valueName.isEmpty() ? caption : valueName};
    parts.removeAll(QString());
    return parts.join(separator);
}

DescribedItems::DescribedItems(ControlContext &context, AdapterLookup adapterOf)
{
    // A dialog may show values of a file that is only fetched when it opens.
    const QSignalBlocker silent(context.store());
    const InterfaceDocument &document = context.description().document();
    Reader reader(context, adapterOf, *this);
    reader.read(document.root());
    reader.attachOpeners(findTags(document));
    for (int index = 0; index < int(m_items.size()); ++index) {
        const DescribedItem &item = m_items[index];
        if (item.dialog < 0 || item.adapter->traits().changes.isEmpty())
            continue;
        for (const DescribedAddress &address : describedAddresses(item.element, *item.adapter)) {
            if (const QString path = address.path(); path.isEmpty())
                m_listEditors.emplace_back(address, index);
            else if (!m_editors.contains(path))
                m_editors.insert(path, index);
        }
    }
}

/// The dialogs by the tags that open them: of several elements with one tag the first counts.
QHash<QString, int> DescribedItems::findTags(const InterfaceDocument &document)
{
    QHash<QString, int> dialogs;
    for (int index = 0; index < m_dialogs.size(); ++index) {
        for (QDomElement tag = m_dialogs[index].element.firstChildElement(); !tag.isNull();
             tag = tag.nextSiblingElement()) {
            if (tag.hasChildNodes() || document.first(tag.tagName()) != tag)
                continue;
            dialogs.insert(tag.tagName(), index);
            if (m_dialogs[index].tag.isEmpty())
                m_dialogs[index].tag = tag.tagName();
        }
    }
    return dialogs;
}

const DescribedItem *DescribedItems::editorInDialog(const QString &path) const
{
    const auto found = m_editors.constFind(path);
    if (found != m_editors.constEnd())
        return &m_items[*found];
    for (const auto &[address, index] : m_listEditors) {
        if (address.covers(path))
            return &m_items[index];
    }
    return nullptr;
}

} // namespace paravue
