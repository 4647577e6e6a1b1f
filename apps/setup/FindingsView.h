#pragma once

#include "check/DescriptionCheck.h"

#include <QListWidget>

namespace paravue
{

/// The problems of a description beside the window that shows it. A click on one, or Enter, jumps to the
/// control of the window that it is about, for which it may open a dialog.
class FindingsView : public QListWidget
{
    Q_OBJECT

public:
    /// A window of its own, which belongs to \a window and goes with it.
    explicit FindingsView(QWidget *window);

    void show(const QList<DescriptionProblem> &problems, const QString &fileName);

private:
    void jump(const QListWidgetItem &item);
    void placeBeside(const QWidget &window);
};

/// Brings the control number \a control of \a window, which is the setup window or a dialog, to the front and
/// marks it for a moment (DescriptionProblem::control). Nothing happens when there is none.
void jumpToControl(QWidget &window, int control);

} // namespace paravue
