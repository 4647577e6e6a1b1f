#include "ui/review/ChangeMarks.h"

#include "controls/ReadablePalette.h"
#include "ui/binding/ControlTable.h"
#include "ui/review/ChangePlaces.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QTabBar>
#include <QTabWidget>

namespace paravue
{

namespace
{

constexpr int BarWidth = 3;
constexpr int BarGap = 2; ///< between the bar and its control

/// A bar at the left edge of a control, which it follows.
class ChangeBar : public QWidget
{
public:
    explicit ChangeBar(QWidget &marked) : QWidget(marked.parentWidget()), m_marked(marked)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        marked.installEventFilter(this);
        follow();
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
            follow();
            break;
        default:
            break;
        }
        return false;
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), markColor(palette())); }

private:
    void follow()
    {
        const QRect place = m_marked.geometry();
        const int left = m_marked.layoutDirection() == Qt::RightToLeft ? place.right() + 1 + BarGap
                                                                       : place.left() - BarGap - BarWidth;
        setGeometry(qMax(0, left), place.top(), BarWidth, place.height());
        setVisible(!m_marked.isHidden());
        raise();
    }

    QWidget &m_marked;
};

/// A tab bar goes on using the button of a tab that is deleted.
void removeBadge(QLabel *badge)
{
    auto *bar = badge ? qobject_cast<QTabBar *>(badge->parentWidget()) : nullptr;
    for (int index = 0; bar && index < bar->count(); ++index) {
        if (bar->tabButton(index, QTabBar::RightSide) == badge)
            bar->setTabButton(index, QTabBar::RightSide, nullptr);
    }
    delete badge;
}

} // namespace

ChangeMarks::~ChangeMarks()
{
    clear();
}

void ChangeMarks::set(const Control &control, const QString &path, bool isChanged)
{
    const auto found = m_controls.find(control.number);
    if (found == m_controls.end()) {
        if (!isChanged)
            return;
        QWidget &widget = *control.widget;
        m_controls.insert(control.number, {{path}, new ChangeBar(widget), &widget});
        count(widget, 1);
        return;
    }
    if (isChanged) {
        found->paths.insert(path);
    } else if (found->paths.remove(path) && found->paths.isEmpty()) {
        delete found->bar;
        if (found->widget)
            count(*found->widget, -1);
        m_controls.erase(found);
    }
}

void ChangeMarks::clear()
{
    for (const Marked &marked : std::as_const(m_controls))
        delete marked.bar;
    for (const QPointer<QLabel> &badge : std::as_const(m_badges))
        removeBadge(badge);
    m_controls.clear();
    m_counts.clear();
    m_badges.clear();
}

void ChangeMarks::count(QWidget &widget, int difference)
{
    visitPages(widget, [&](QTabWidget &tabs, int index) {
        QWidget &page = *tabs.widget(index);
        m_counts[&page] += difference;
        showCount(tabs, page);
    });
}

void ChangeMarks::showCount(QTabWidget &tabs, QWidget &page)
{
    const int number = m_counts.value(&page);
    QPointer<QLabel> &badge = m_badges[&page];
    if (number == 0) {
        removeBadge(badge);
        return;
    }
    if (!badge) {
        badge = new QLabel(tabs.tabBar());
        badge->setObjectName(QStringLiteral("changeCount"));
        badge->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    badge->setText(QString::number(number));
    badge->setAccessibleName(number == 1 ? tr("1 change") : tr("%1 changes").arg(number));
    badge->adjustSize();
    // The bar measures a button when it gets one, and hides the one that it had.
    const int index = tabs.indexOf(&page);
    tabs.tabBar()->setTabButton(index, QTabBar::RightSide, nullptr);
    tabs.tabBar()->setTabButton(index, QTabBar::RightSide, badge);
}

} // namespace paravue
