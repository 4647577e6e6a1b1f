#include "ui/base/DialogParts.h"

#include "controls/DialogFrame.h"
#include "controls/ListColumns.h"
#include "controls/MessageText.h"
#include "controls/WindowLook.h"
#include "ui/base/WindowStyle.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHash>
#include <QKeyEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyleHints>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace paravue::dialogparts
{

namespace
{

bool isEnter(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

class SecondEnterFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && watched == parent())
            m_shown.start();
        return isSecondEnter(*event, m_shown);
    }

private:
    QElapsedTimer m_shown;
};

} // namespace

QTreeWidget *makeList(const QStringList &headings, const QList<int> &widths, const QString &name,
                      QWidget *parent)
{
    auto *list = new QTreeWidget(parent);
    list->setHeaderLabels(headings);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    setRoomyRows(*list);
    list->setAllColumnsShowFocus(true);
    list->setAccessibleName(name);
    setColumnWidths(*list, {widths.constData(), std::size_t(widths.size())});
    return list;
}

QString rowToolTip(const QString &text)
{
    return literalToolTip(shortenedMessage(text));
}

QTreeWidgetItem *makeRow(const QStringList &texts)
{
    auto *row = new QTreeWidgetItem(texts);
    for (int column = 0; column < texts.size(); ++column)
        row->setToolTip(column, rowToolTip(texts[column]));
    return row;
}

void setRows(QTreeWidget &list, const QList<QTreeWidgetItem *> &rows)
{
    list.clear();
    list.addTopLevelItems(rows);
    if (!rows.isEmpty())
        list.setCurrentItem(rows.constFirst(), 0,
                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

bool toggleWithSpace(const QTreeWidget &list, int column, const QEvent &event)
{
    const QList<QTreeWidgetItem *> selected = list.selectedItems();
    if (event.type() != QEvent::KeyPress || static_cast<const QKeyEvent &>(event).key() != Qt::Key_Space ||
        selected.isEmpty())
        return false;
    const bool isChecked = selected.constFirst()->checkState(column) == Qt::Checked;
    for (QTreeWidgetItem *row : selected) {
        if (!row->data(column, Qt::CheckStateRole).isNull())
            row->setCheckState(column, isChecked ? Qt::Unchecked : Qt::Checked);
    }
    return true;
}

void checkTogether(QTreeWidget &list, int column, const QStringList &groups)
{
    QHash<const QTreeWidgetItem *, QString> groupOf;
    QMultiHash<QString, QTreeWidgetItem *> rowsOf;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = list.topLevelItem(i);
        if (groups[i].isEmpty() || row->data(column, Qt::CheckStateRole).isNull())
            continue;
        groupOf.insert(row, groups[i]);
        rowsOf.insert(groups[i], row);
    }
    const auto follow = [&list, column, groupOf, rowsOf](const QTreeWidgetItem *changed, int changedColumn) {
        const auto group = groupOf.constFind(changed);
        if (changedColumn != column || group == groupOf.constEnd())
            return;
        const QSignalBlocker once(list);
        const Qt::CheckState state = changed->checkState(column);
        for (QTreeWidgetItem *row : rowsOf.values(*group))
            row->setCheckState(column, state);
    };
    QObject::connect(&list, &QTreeWidget::itemChanged, &list, follow);
}

QToolButton *makeButton(const QString &text, const QString &toolTip, const char *name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setObjectName(QLatin1StringView(name));
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

bool isSecondEnter(const QEvent &event, const QElapsedTimer &shown)
{
    if (!isEnter(event))
        return false;
    const bool isSoon =
        shown.isValid() && shown.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval();
    return isSoon || static_cast<const QKeyEvent &>(event).isAutoRepeat();
}

void ignoreSecondEnter(QDialog &dialog)
{
    auto *filter = new SecondEnterFilter(&dialog);
    dialog.installEventFilter(filter);
    for (QPushButton *button : dialog.findChildren<QPushButton *>())
        button->installEventFilter(filter);
}

QVBoxLayout *makeLayout(QDialog &dialog)
{
    auto *layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(GridSpacing);
    return layout;
}

void finish(QDialog &dialog)
{
    WindowLook::apply(dialog);
    DialogFrame::give(dialog, DialogFrame::Size::OfTheUser);
}

} // namespace paravue::dialogparts
