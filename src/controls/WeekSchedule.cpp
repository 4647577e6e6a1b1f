#include "controls/WeekSchedule.h"

#include "controls/ScheduleGrid.h"

#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace paravue
{
namespace
{

constexpr int Spacing = 8;
constexpr int WorkingDays = 5;

QStringList completed(QStringList captions, int count, const std::function<QString(int)> &usual)
{
    captions = captions.mid(0, count);
    while (captions.size() < count)
        captions.append(usual(int(captions.size())));
    return captions;
}

/// A text in which "&" marks no access key.
QString literal(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

QPushButton *menuButton(QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setAutoDefault(false); // Enter in an input field does not press it
    button->setMenu(new QMenu(button));
    return button;
}

} // namespace

WeekSchedule::WeekSchedule(QWidget *parent)
    : QWidget(parent), m_grid(new ScheduleGrid(this)), m_tools(new QVBoxLayout),
      m_kindButtons(new QButtonGroup(this)), m_copy(menuButton(this)), m_clear(menuButton(this))
{
    setFocusProxy(m_grid);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_tools->setSpacing(Spacing / 2);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Spacing);
    layout->addWidget(m_grid);
    layout->addLayout(m_tools);

    connect(m_grid, &ScheduleGrid::edited, this, &WeekSchedule::valueChanged);
    connect(m_grid, &ScheduleGrid::currentDayChanged, this, &WeekSchedule::showCurrentDay);
    connect(m_grid, &ScheduleGrid::kindChosen, this,
            [this](int number) { m_kindButtons->button(number)->setChecked(true); });
    connect(m_kindButtons, &QButtonGroup::idClicked, m_grid, &ScheduleGrid::setKind);
    connect(m_kindButtons, &QButtonGroup::buttonToggled, this, &WeekSchedule::keepTabStop);
    connect(m_copy->menu(), &QMenu::aboutToShow, this, &WeekSchedule::fillCopyMenu);
    connect(m_clear->menu(), &QMenu::aboutToShow, this, &WeekSchedule::fillClearMenu);
    setCaptions({}, {});
    buildLegend();
}

bool WeekSchedule::setCaptions(const QStringList &days, const QStringList &hours, const QList<int> &widths)
{
    const QLocale locale;
    const QStringList allDays = completed(days, WeekPlan::Days, [&](int day) {
        return locale.standaloneDayName(day + 1, QLocale::ShortFormat);
    });
    const QStringList allHours =
        completed(hours, WeekPlan::Hours, [](int hour) { return QString::number(hour); });
    if (!m_grid->setCaptions(allDays, allHours, widths))
        return false;
    showCurrentDay();
    arrangeTools();
    return true;
}

bool WeekSchedule::setKinds(const ScheduleKinds &kinds)
{
    const ScheduleKinds offered = kinds.isEmpty() ? usualScheduleKinds() : kinds.mid(0, MaxScheduleKinds);
    if (offered == m_grid->kinds())
        return false;
    m_grid->setKinds(offered);
    buildLegend();
    return true;
}

bool WeekSchedule::setResolution(int minutes)
{
    const int slots = minutes > 0 && 60 % minutes == 0 ? 60 / minutes : 1;
    WeekPlan plan = m_grid->plan();
    plan.setLeastSlotsPerHour(WeekPlan::isSlotsPerHour(slots) ? slots : 1);
    return setPlan(plan);
}

QStringList WeekSchedule::days() const
{
    return m_grid->plan().texts();
}

bool WeekSchedule::setDays(const QStringList &days)
{
    WeekPlan plan = m_grid->plan();
    plan.setTexts(days);
    return setPlan(plan);
}

bool WeekSchedule::setPlan(const WeekPlan &plan)
{
    if (plan == m_grid->plan())
        return false;
    const int width = m_grid->sizeHint().width();
    m_grid->setPlan(plan);
    if (m_grid->sizeHint().width() != width) // of other slots
        arrangeTools();
    return true;
}

HistoryMove WeekSchedule::historyMove() const
{
    return m_grid->historyMove();
}

void WeekSchedule::clear()
{
    m_grid->clearWeek();
}

void WeekSchedule::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showKindIcons();
    else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        arrangeTools();
}

/// A key goes from the grid or the button that has the focus to this widget, unless they use it.
bool WeekSchedule::event(QEvent *event)
{
    return claimKey([this] { return m_grid->undoActions(); }, *event) || QWidget::event(event);
}

/// Keys that the grid and the buttons have left. Escape would close the window and Enter press its OK.
void WeekSchedule::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (auto *button = qobject_cast<QAbstractButton *>(focusWidget()))
            button->click();
    } else if (event->key() != Qt::Key_Escape && !performByKey(m_grid->undoActions(), *event)) {
        QWidget::keyPressEvent(event);
    }
}

void WeekSchedule::buildLegend()
{
    for (QAbstractButton *button : m_kindButtons->buttons())
        delete button;
    const ScheduleKinds &kinds = m_grid->kinds();
    QWidget *before = m_grid;
    for (int number = 0; number < kinds.size(); ++number) {
        auto *button = new QToolButton(this);
        button->setCheckable(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setText(literal(kinds[number].name));
        button->setToolTip(tr("Paint with this kind (key %1)").arg(number));
        m_kindButtons->addButton(button, number);
        setTabOrder(before, button);
        before = button;
    }
    setTabOrder(before, m_copy);
    setTabOrder(m_copy, m_clear);
    // Last, as widgets without a tab stop take no place in the order.
    m_kindButtons->button(m_grid->kind())->setChecked(true);
    keepTabStop();
    showKindIcons();
    arrangeTools();
}

/// Rows of buttons that are no wider than the grid, however long the names of the kinds are.
void WeekSchedule::arrangeTools()
{
    while (QLayoutItem *row = m_tools->takeAt(0))
        delete row;
    QHBoxLayout *row = nullptr;
    int room = 0;
    const auto takeRoom = [&](int width) {
        if (!row || width > room) {
            if (row)
                row->addStretch();
            row = new QHBoxLayout;
            row->setSpacing(Spacing / 2);
            m_tools->addLayout(row);
            room = m_grid->sizeHint().width();
        }
        room -= width + row->spacing();
    };
    for (QAbstractButton *button : m_kindButtons->buttons()) {
        takeRoom(button->sizeHint().width());
        row->addWidget(button);
    }
    takeRoom(widestCopyButton() + Spacing + m_clear->sizeHint().width());
    row->addStretch();
    row->addWidget(m_copy);
    row->addWidget(m_clear);
}

int WeekSchedule::widestCopyButton() const
{
    int widest = 0;
    for (const QString &day : m_grid->dayNames())
        widest = std::max(widest, fontMetrics().horizontalAdvance(day));
    return m_copy->sizeHint().width() - fontMetrics().horizontalAdvance(currentDayName()) + widest;
}

/// The Tab key goes to the chosen kind only; the arrow keys choose another one.
void WeekSchedule::keepTabStop()
{
    for (QAbstractButton *button : m_kindButtons->buttons())
        button->setFocusPolicy(button->isChecked() ? Qt::TabFocus : Qt::NoFocus);
}

void WeekSchedule::showKindIcons()
{
    for (QAbstractButton *button : m_kindButtons->buttons())
        button->setIcon(kindIcon(m_kindButtons->id(button), palette()));
}

QString WeekSchedule::currentDayName() const
{
    return literal(m_grid->dayNames().value(m_grid->current().day));
}

void WeekSchedule::showCurrentDay()
{
    m_copy->setText(tr("Copy %1 to").arg(currentDayName()));
    m_clear->setText(tr("Clear"));
}

void WeekSchedule::fillClearMenu()
{
    QMenu *menu = m_clear->menu();
    menu->clear();
    const bool isUnderstood = m_grid->plan().isUnderstood(m_grid->current().day);
    menu->addAction(isUnderstood ? currentDayName() : literal(m_grid->clearDayText()), m_grid,
                    &ScheduleGrid::clearDay);
    menu->addAction(tr("Whole week"), this, &WeekSchedule::clear);
}

void WeekSchedule::fillCopyMenu()
{
    QMenu *menu = m_copy->menu();
    menu->clear();
    menu->addAction(tr("Whole week"), this, [this] { m_grid->copyDayTo(0, WeekPlan::Days - 1); });
    menu->addAction(tr("Working days"), this, [this] { m_grid->copyDayTo(0, WorkingDays - 1); });
    menu->addAction(tr("Weekend"), this, [this] { m_grid->copyDayTo(WorkingDays, WeekPlan::Days - 1); });
    menu->addSeparator();
    for (int day = 0; day < WeekPlan::Days; ++day) {
        if (day != m_grid->current().day)
            menu->addAction(literal(m_grid->dayNames().value(day)), this,
                            [this, day] { m_grid->copyDayTo(day, day); });
    }
}

} // namespace paravue
