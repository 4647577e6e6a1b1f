#include "ui/page/TabCaptions.h"

#include "ui/base/PageTabs.h"

#include <QDomElement>

#include <optional>

namespace paravue
{

bool showTabCaptions(const QDomElement &container, PageTabs &tabs,
                     const std::function<QString(const QString &)> &visible)
{
    const QString tag = QStringLiteral("tab");
    int page = 0;
    std::optional<PageTabs::Changes> changes;
    for (QDomElement tab = container.firstChildElement(tag); !tab.isNull() && page < tabs.count();
         tab = tab.nextSiblingElement(tag), ++page) {
        const QString text = visible(tab.firstChildElement(QStringLiteral("name")).text());
        if (tabs.tabText(page) == text)
            continue;
        if (!changes)
            changes.emplace(tabs);
        tabs.setTabText(page, text);
    }
    return changes.has_value();
}

} // namespace paravue
