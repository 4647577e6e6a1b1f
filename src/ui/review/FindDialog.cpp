#include "ui/review/FindDialog.h"

#include "controls/DialogFrame.h"
#include "controls/WindowLook.h"
#include "ui/base/WindowStyle.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace paravue
{

namespace
{

constexpr QSize FindSize(720, 420);
constexpr int FoundWidths[] = {320, 180};
/// More rows are not read, and making them would take longer than the search.
constexpr qsizetype MostRows = 200;

bool isForTheList(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

FindDialog::FindDialog(const FindIndex &index, QWidget *parent)
    : QDialog(parent), m_index(index), m_query(new QLineEdit(this)),
      m_changedOnly(new QCheckBox(tr("Changed only"), this)),
      m_withProblems(new QCheckBox(tr("With problems"), this)), m_list(new QTreeWidget(this)),
      m_count(new QLabel(this))
{
    setWindowTitle(tr("Find"));
    m_query->setPlaceholderText(tr("Caption, choice, value or address"));
    m_query->setAccessibleName(tr("Find"));
    m_query->setClearButtonEnabled(true);
    m_list->setHeaderLabels({tr("Setting"), tr("Value"), tr("Address")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setAccessibleName(tr("Found"));
    for (int column = 0; column < int(std::size(FoundWidths)); ++column)
        m_list->header()->resizeSection(column, FoundWidths[column]);

    auto *filters = new QHBoxLayout;
    filters->addWidget(m_changedOnly);
    filters->addWidget(m_withProblems);
    filters->addStretch();
    filters->addWidget(m_count);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(GridSpacing);
    layout->addWidget(m_query);
    layout->addLayout(filters);
    layout->addWidget(m_list, 1);
    resize(FindSize);

    connect(m_query, &QLineEdit::textChanged, this, &FindDialog::search);
    connect(m_changedOnly, &QCheckBox::toggled, this, &FindDialog::search);
    connect(m_withProblems, &QCheckBox::toggled, this, &FindDialog::search);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &FindDialog::choose);
    m_query->installEventFilter(this);
    m_list->installEventFilter(this);
    m_query->setFocus();
    search();
    WindowLook::apply(*this);
    DialogFrame::give(*this, DialogFrame::Size::OfTheUser);
}

void FindDialog::search()
{
    FindIndex::Filters filters = FindIndex::Everything;
    filters.setFlag(FindIndex::ChangedOnly, m_changedOnly->isChecked());
    filters.setFlag(FindIndex::WithProblems, m_withProblems->isChecked());
    const auto found = m_index.find(m_query->text(), filters);
    QList<QTreeWidgetItem *> rows;
    for (const FindIndex::Entry *entry : found.first(qMin(found.size(), MostRows))) {
        auto *row = new QTreeWidgetItem({entry->caption, entry->value, entry->address});
        for (int column = 0; column < m_list->columnCount(); ++column)
            row->setToolTip(column, row->text(column));
        row->setData(0, Qt::UserRole, entry->control);
        rows << row;
    }
    m_list->clear();
    m_list->addTopLevelItems(rows);
    if (!rows.isEmpty())
        m_list->setCurrentItem(rows.constFirst());
    m_count->setText(found.size() > MostRows ? tr("The first %1 of %2").arg(MostRows).arg(found.size())
                                             : QString::number(found.size()));
}

void FindDialog::choose()
{
    const QTreeWidgetItem *row = m_list->currentItem();
    if (!row)
        return;
    m_chosen = row->data(0, Qt::UserRole).toInt();
    accept();
}

/// The query keeps the focus while the arrow keys walk through what was found.
bool FindDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        choose();
        return true;
    }
    if (watched == m_query && isForTheList(key)) {
        QCoreApplication::sendEvent(m_list, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace paravue
