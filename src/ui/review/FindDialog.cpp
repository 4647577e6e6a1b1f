#include "ui/review/FindDialog.h"

#include "ui/base/DialogParts.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
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
const QList<int> FoundWidths{190, 160, 140, 130};
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
      m_withProblems(new QCheckBox(tr("With problems"), this)),
      m_list(dialogparts::makeList({tr("Setting"), tr("Place"), tr("Group"), tr("Value"), tr("Address")},
                                   FoundWidths, tr("Found"), this)),
      m_count(new QLabel(this)), m_way(new QLabel(this))
{
    setWindowTitle(tr("Find"));
    m_query->setPlaceholderText(tr("Caption, choice, value or address"));
    m_query->setAccessibleName(tr("Find"));
    m_query->setClearButtonEnabled(true);

    auto *filters = new QHBoxLayout;
    filters->addWidget(m_changedOnly);
    filters->addWidget(m_withProblems);
    filters->addStretch();
    filters->addWidget(m_count);
    QVBoxLayout *layout = dialogparts::makeLayout(*this);
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
    dialogparts::finish(*this);
}

void FindDialog::search()
{
    FindIndex::Filters filters = FindIndex::Everything;
    filters.setFlag(FindIndex::ChangedOnly, m_changedOnly->isChecked());
    filters.setFlag(FindIndex::WithProblems, m_withProblems->isChecked());
    m_list->clear(); // its rows tell the number of what was found
    m_found = m_index.find(m_query->text(), filters);
    QList<QTreeWidgetItem *> rows;
    for (const FindIndex::Entry *entry : m_found.first(qMin(m_found.size(), MostRows)))
        rows << dialogparts::makeRow(
            {entry->caption, entry->place, entry->group, entry->value, entry->address});
    dialogparts::setRows(*m_list, rows);
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
