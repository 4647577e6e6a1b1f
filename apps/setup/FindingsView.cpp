#include "FindingsView.h"

#include <QApplication>
#include <QRegularExpression>
#include <QRubberBand>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <map>

namespace paravue
{

namespace
{

constexpr int MarkMs = 1'500;
constexpr int MarkMargin = 3;
constexpr QSize UsualSize(420, 320);
constexpr int ControlRole = Qt::UserRole;
constexpr int DialogRole = Qt::UserRole + 1;

QString lineOf(const DescriptionProblem &problem)
{
    const QString text = problem.severity == DescriptionProblem::Severity::Error
                             ? FindingsView::tr("Error: %1").arg(problem.text)
                             : FindingsView::tr("Warning: %1").arg(problem.text);
    return problem.line > 0 ? QStringLiteral("%1:%2  %3").arg(problem.line).arg(problem.column).arg(text)
                            : text;
}

/// The controls of a window in the order in which they were built, which is that of the description. Dialogs
/// are windows of their own.
QList<QWidget *> controlsOf(const QWidget &window)
{
    static const QRegularExpression name(QStringLiteral("^link(\\d+)$"));
    std::map<int, QWidget *> byNumber;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        const auto match = name.match(widget->accessibleName());
        if (match.hasMatch() && widget->window() == &window && !widget->isWindow())
            byNumber.emplace(match.captured(1).toInt(), widget);
    }
    QList<QWidget *> controls;
    for (const auto &[number, widget] : byNumber)
        controls.append(widget);
    return controls;
}

void reveal(QWidget &control)
{
    for (QWidget *inner = &control; inner; inner = inner->parentWidget()) {
        for (QWidget *outer = inner->parentWidget(); outer; outer = outer->parentWidget()) {
            if (auto *tabs = qobject_cast<QTabWidget *>(outer); tabs && tabs->indexOf(inner) >= 0)
                tabs->setCurrentWidget(inner);
        }
    }
    for (QWidget *outer = control.parentWidget(); outer; outer = outer->parentWidget()) {
        if (auto *area = qobject_cast<QScrollArea *>(outer))
            area->ensureWidgetVisible(&control);
    }
}

void mark(QWidget &control)
{
    auto *frame = new QRubberBand(QRubberBand::Rectangle, control.parentWidget());
    frame->setGeometry(control.geometry().adjusted(-MarkMargin, -MarkMargin, MarkMargin, MarkMargin));
    frame->show();
    QTimer::singleShot(MarkMs, frame, &QObject::deleteLater);
}

} // namespace

void jumpToControl(QWidget &window, int control)
{
    QWidget *widget = controlsOf(window).value(control);
    if (!widget)
        return;
    reveal(*widget);
    window.activateWindow();
    widget->setFocus(Qt::OtherFocusReason);
    mark(*widget);
}

FindingsView::FindingsView(QWidget *window) : QListWidget(window)
{
    // A child of the modal window takes input; other windows do not.
    setWindowFlags(Qt::Tool);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWordWrap(true);
    setAlternatingRowColors(true);
    resize(UsualSize);
    placeBeside(*window);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { jump(*item); });
    connect(this, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) { jump(*item); });
}

void FindingsView::show(const QList<DescriptionProblem> &problems, const QString &fileName)
{
    clear();
    for (const DescriptionProblem &problem : problems) {
        auto *item = new QListWidgetItem(lineOf(problem), this);
        item->setData(ControlRole, problem.control);
        item->setData(DialogRole, problem.dialog);
        item->setToolTip(problem.control < 0 ? tr("This is about no control.") : tr("Shows the control."));
    }
    if (problems.isEmpty())
        (new QListWidgetItem(tr("No problems were found."), this))->setData(ControlRole, -1);
    setWindowTitle(tr("Findings in %1: %2").arg(fileName).arg(problems.size()));
    QListWidget::show();
}

void FindingsView::jump(const QListWidgetItem &item)
{
    const int control = item.data(ControlRole).toInt();
    const QString dialog = item.data(DialogRole).toString();
    if (dialog.isEmpty())
        return jumpToControl(*parentWidget(), control);
    // The dialog runs in the call that opens it.
    QTimer::singleShot(0, this, [this, control] {
        QWidget *opened = QApplication::activeModalWidget();
        if (opened && opened != parentWidget())
            jumpToControl(*opened, control);
    });
    QMetaObject::invokeMethod(parentWidget(), "showDialog", Q_ARG(QString, dialog));
}

/// Right of the window where there is room, else over its lower right corner.
void FindingsView::placeBeside(const QWidget &window)
{
    const QRect screen = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    const int x = std::min(frame.right() + 1, screen.right() + 1 - width());
    const bool isBeside = x > frame.right();
    move(x, isBeside ? frame.top() : std::min(frame.bottom(), screen.bottom()) + 1 - height());
}

} // namespace paravue
