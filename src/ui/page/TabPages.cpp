#include "ui/page/TabPages.h"

#include <QDomElement>
#include <QTabWidget>

namespace paravue
{

bool showTabCaptions(const QDomElement &container, QTabWidget &tabs,
                     const std::function<QString(const QString &)> &visible)
{
    const QString tag = QStringLiteral("tab");
    bool changed = false;
    int page = 0;
    for (QDomElement tab = container.firstChildElement(tag); !tab.isNull() && page < tabs.count();
         tab = tab.nextSiblingElement(tag), ++page) {
        const QString text = visible(tab.firstChildElement(QStringLiteral("name")).text());
        if (tabs.tabText(page) == text)
            continue;
        tabs.setTabText(page, text);
        changed = true;
    }
    return changed;
}

} // namespace paravue
