#include "ui/review/ReviewDialog.h"

#include "changes/ShownValue.h"
#include "controls/DialogIcons.h"
#include "controls/WindowLook.h"
#include "ui/base/DialogParts.h"
#include "ui/base/WindowStyle.h"
#include "ui/review/TabBadges.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace paravue
{

using namespace dialogparts;

namespace
{

constexpr int PathRole = Qt::UserRole;
constexpr int IsShownRole = Qt::UserRole + 1;
constexpr int IsEditRole = Qt::UserRole + 2;
constexpr int ControlRole = Qt::UserRole; ///< of a problem
constexpr QSize ReviewSize(760, 400);
constexpr int SettingWidth = 270;
constexpr int ValueWidth = 140;

} // namespace

ReviewDialog::ReviewDialog(Changes changes, Problems problems, QWidget *parent)
    : QDialog(parent), m_changes(std::move(changes)), m_problems(std::move(problems)),
      m_list(makeList({tr("Setting"), tr("Recorder"), tr("New"), tr("Address")},
                      {SettingWidth, ValueWidth, ValueWidth}, tr("Changes that were not sent yet"), this)),
      m_problemsTitle(new QLabel(this)),
      m_problemList(makeList({tr("Setting"), tr("Problem")}, {SettingWidth}, tr("Problems"), this)),
      m_takeBack(makeButton(tr("Take back"), tr("Set the selected values to those of the recorder (Delete)"),
                            "takeBack", this)),
      m_takeAllBack(makeButton(tr("Take all back"), tr("Set all values to those of the recorder"),
                               "takeAllBack", this)),
      m_goTo(makeButton(tr("Go there"), tr("Show where the value is edited (Enter)"), "goTo", this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Close, this))
{
    setWindowTitle(tr("Changes"));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_problemList->setObjectName(QStringLiteral("problems"));

    auto *bottom = new QHBoxLayout;
    for (QToolButton *button : {m_takeBack, m_takeAllBack, m_goTo})
        bottom->addWidget(button);
    bottom->addStretch();
    bottom->addWidget(m_buttons);
    QVBoxLayout *layout = makeLayout(*this);
    layout->addWidget(m_problemsTitle);
    layout->addWidget(m_problemList);
    layout->addWidget(m_list, 1);
    layout->addLayout(bottom);
    resize(ReviewSize);

    setTabOrder(m_problemList, m_list);
    connect(m_takeBack, &QToolButton::clicked, this, [this] { takeBack(selectedPaths()); });
    connect(m_takeAllBack, &QToolButton::clicked, this, [this] {
        QStringList paths;
        for (const ReviewedChange &reviewed : m_changes()) {
            if (reviewed.isEdit)
                paths << reviewed.change.path;
        }
        takeBack(paths);
    });
    connect(m_goTo, &QToolButton::clicked, this, &ReviewDialog::goTo);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &ReviewDialog::goTo);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &ReviewDialog::updateButtons);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_problemList, &QTreeWidget::itemDoubleClicked, this, &ReviewDialog::goToProblem);
    m_problemList->installEventFilter(this);
    m_list->installEventFilter(this);
    fill();
    const bool hasProblemsOnly = m_list->topLevelItemCount() == 0 && m_problemList->topLevelItemCount() > 0;
    (hasProblemsOnly ? m_problemList : m_list)->setFocus();
    finish(*this);
}

void ReviewDialog::offerSending()
{
    QPushButton *send = m_buttons->addButton(tr("Send"), QDialogButtonBox::AcceptRole);
    send->setDefault(true);
    WindowLook::styleControls(*send);
    setOwnIcons(*m_buttons);
    m_offersSending = true;
    ignoreSecondEnter(*this);
    m_goTo->setToolTip(tr("Show where the value is edited"));
    m_buttons->button(QDialogButtonBox::Close)->setText(tr("Go on editing"));
}

void ReviewDialog::fill()
{
    QList<QTreeWidgetItem *> rows;
    for (const ReviewedChange &reviewed : m_changes()) {
        const Change &change = reviewed.change;
        QTreeWidgetItem *row = makeRow({reviewed.caption.isEmpty() ? change.path : reviewed.caption,
                                        shownValue(change.oldValue, change.isSecret),
                                        shownValue(change.newValue, change.isSecret), change.path});
        row->setData(0, PathRole, change.path);
        row->setData(0, IsShownRole, reviewed.isShown);
        row->setData(0, IsEditRole, reviewed.isEdit);
        rows << row;
    }
    setRows(*m_list, rows);
    fillProblems();
    updateButtons();
}

void ReviewDialog::fillProblems()
{
    m_problemList->clear();
    const QList<ReviewedProblem> problems = m_problems();
    for (const ReviewedProblem &problem : problems) {
        QTreeWidgetItem *row = makeRow({problem.caption, problem.text});
        row->setData(0, ControlRole, problem.control);
        m_problemList->addTopLevelItem(row);
    }
    // Without a selection, which belongs to the list that has the focus.
    m_problemList->setCurrentItem(m_problemList->topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    m_problemsTitle->setText(TabBadges::problemsText(problems.size()));
    m_problemsTitle->setVisible(!problems.isEmpty());
    m_problemList->setVisible(!problems.isEmpty());
    constexpr int MostRows = 4; // without scrolling
    const int rows = int(qMin<qsizetype>(problems.size(), MostRows));
    m_problemList->setFixedHeight(m_problemList->header()->sizeHint().height() +
                                  rows * m_problemList->sizeHintForRow(0) + 2 * m_problemList->frameWidth() +
                                  2 * SpacingStep);
}

void ReviewDialog::updateButtons()
{
    const QList<QTreeWidgetItem *> selected = m_list->selectedItems();
    m_takeBack->setEnabled(!selectedPaths().isEmpty());
    m_takeAllBack->setEnabled(m_list->topLevelItemCount() > 0);
    m_goTo->setEnabled(selected.size() == 1 && selected.constFirst()->data(0, IsShownRole).toBool());
}

QStringList ReviewDialog::selectedPaths() const
{
    QStringList paths;
    for (const QTreeWidgetItem *row : m_list->selectedItems()) {
        if (row->data(0, IsEditRole).toBool())
            paths << row->data(0, PathRole).toString();
    }
    return paths;
}

void ReviewDialog::takeBack(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    Q_EMIT takeBackRequested(paths);
    fill();
}

void ReviewDialog::goTo()
{
    if (!m_goTo->isEnabled())
        return;
    m_chosenPath = selectedPaths().constFirst();
    reject();
}

void ReviewDialog::goToProblem()
{
    const QTreeWidgetItem *row = m_problemList->currentItem();
    if (!row)
        return;
    m_chosenControl = row->data(0, ControlRole).toInt();
    reject();
}

bool ReviewDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_problemList && event->type() == QEvent::FocusIn)
        m_problemList->setCurrentItem(m_problemList->currentItem());
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (watched == m_problemList) {
        if (!isEnter)
            return QDialog::eventFilter(watched, event);
        goToProblem();
    } else if (key == Qt::Key_Delete)
        takeBack(selectedPaths());
    else if (isEnter && !m_offersSending)
        goTo();
    else
        return QDialog::eventFilter(watched, event);
    return true;
}

} // namespace paravue
