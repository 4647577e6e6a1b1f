#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace paravue
{

class ControlTable;
class DescribedItems;
struct DialogOpener;

/// How a user comes from the window to the dialogs of its description.
class DialogRoutes
{
public:
    struct Route {
        /// The number of the control of the window where the way begins; -1 when only the window itself opens
        /// the dialog.
        int begin = -1;
        /// That control does nothing but open the dialog, and can be used now. Other things that it does,
        /// such as setting the question of the dialog, would have to come first.
        bool canOpen = false;
    };

    DialogRoutes(const QWidget &window, ControlTable &controls, const DescribedItems &described);

    const Route &to(int dialog) const { return m_routes[dialog]; }

private:
    void begin(const QWidget &window, ControlTable &controls, const DialogOpener &opener, Route &route);

    QList<Route> m_routes; ///< by index of the dialog
};

} // namespace paravue
