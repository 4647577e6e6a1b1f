#pragma once

#include <QObject>

class QWidget;

namespace paravue
{

/// Keeps the mouse wheel from changing a field while the user scrolls the page: without the keyboard focus
/// the field leaves wheel events to the page around it. Fields are drop-down lists, date fields and the
/// "scroll" controls; other widgets stay as they are.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards \a control, which owns the guard, when it is such a field.
    static void install(QWidget *control);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit WheelGuard(QWidget *field);
};

} // namespace paravue
