#include "ui/review/DialogRoutes.h"

#include "ui/binding/ControlTable.h"
#include "ui/review/ChangePlaces.h"
#include "ui/review/DescribedItems.h"

namespace paravue
{

DialogRoutes::DialogRoutes(const QWidget &window, ControlTable &controls, const DescribedItems &described)
    : m_routes(described.dialogs().size())
{
    QList<QList<int>> openedFrom(m_routes.size()); // the dialogs that each dialog opens
    QList<int> reached;
    for (int dialog = 0; dialog < m_routes.size(); ++dialog) {
        for (const DialogOpener &opener : described.dialogs()[dialog].openers) {
            if (opener.dialog < 0)
                begin(window, controls, opener, m_routes[dialog]);
            else
                openedFrom[opener.dialog].append(dialog);
        }
        if (m_routes[dialog].begin >= 0)
            reached.append(dialog);
    }
    for (qsizetype next = 0; next < reached.size(); ++next) {
        for (const int dialog : std::as_const(openedFrom[reached[next]])) {
            if (m_routes[dialog].begin >= 0)
                continue;
            m_routes[dialog].begin = m_routes[reached[next]].begin;
            reached.append(dialog);
        }
    }
}

void DialogRoutes::begin(const QWidget &window, ControlTable &controls, const DialogOpener &opener,
                         Route &route)
{
    const Control *control = controls.of(opener.element);
    if (route.canOpen || !control || !control->widget || control->widget->window() != window.window())
        return;
    route.canOpen = opener.opensOnly && canBeUsed(*control->widget);
    if (route.begin < 0 || route.canOpen)
        route.begin = control->number;
}

} // namespace paravue
