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

constexpr QSize FindSize(860, 440);
constexpr int FoundWidths[] = {190, 160, 140, 130};
/// More rows are not read, and making them would take longer than the search.
constexpr qsizetype MostRows = 200;

bool isForTheList(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

FindDialog::FindDialog(const FindIndex &index, Ways ways, QWidget *parent)
    : QDialog(parent), m_index(index), m_ways(std::move(ways)), m_query(new QLineEdit(this)),
      m_changedOnly(new QCheckBox(tr("Changed only"), this)),
      m_withProblems(new QCheckBox(tr("With problems"), this)), m_list(new QTreeWidget(this)),
      m_count(new QLabel(this)), m_way(new QLabel(this))
{
    setWindowTitle(tr("Find"));
    m_query->setPlaceholderText(tr("Caption, choice, value or address"));
    m_query->setAccessibleName(tr("Find"));
    m_query->setClearButtonEnabled(true);
    m_list->setHeaderLabels({tr("Setting"), tr("Place"), tr("Group"), tr("Value"), tr("Address")});
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
    layout->addWidget(m_way);
    m_way->setWordWrap(true);
    m_way->setTextFormat(Qt::PlainText);
    resize(FindSize);

    connect(m_query, &QLineEdit::textChanged, this, &FindDialog::search);
    connect(m_changedOnly, &QCheckBox::toggled, this, &FindDialog::search);
    connect(m_withProblems, &QCheckBox::toggled, this, &FindDialog::search);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &FindDialog::choose);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &FindDialog::showWay);
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
    m_list->clear(); // its rows tell the number of what was found
    m_found = m_index.find(m_query->text(), filters);
    QList<QTreeWidgetItem *> rows;
    for (const FindIndex::Entry *entry : m_found.first(qMin(m_found.size(), MostRows))) {
        auto *row =
            new QTreeWidgetItem({entry->caption, entry->place, entry->group, entry->value, entry->address});
        for (int column = 0; column < m_list->columnCount(); ++column)
            row->setToolTip(column, row->text(column));
        rows << row;
    }
    m_list->addTopLevelItems(rows);
    if (!rows.isEmpty())
        m_list->setCurrentItem(rows.constFirst());
    showWay();
    m_count->setText(m_found.size() > MostRows ? tr("The first %1 of %2").arg(MostRows).arg(m_found.size())
                                               : QString::number(m_found.size()));
}

const FindIndex::Entry *FindDialog::current() const
{
    return m_found.value(m_list->indexOfTopLevelItem(m_list->currentItem()), nullptr);
}

void FindDialog::showWay()
{
    const FindIndex::Entry *entry = current();
    const QString text = entry ? m_ways(*entry).text : QString();
    m_way->setText(text);
    m_list->setAccessibleDescription(text);
}

void FindDialog::choose()
{
    const FindIndex::Entry *entry = current();
    if (!entry || !m_ways(*entry).exists)
        return;
    m_chosen = entry;
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
