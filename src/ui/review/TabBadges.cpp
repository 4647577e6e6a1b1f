#include "ui/review/TabBadges.h"

#include "controls/ReadablePalette.h"
#include "ui/accessibility/ControlName.h"
#include "ui/base/WindowStyle.h"
#include "ui/review/ChangePlaces.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>

namespace paravue
{

namespace
{

/// A count with a sign in front, in the outline that the fields have.
class ProblemCount : public QLabel
{
public:
    explicit ProblemCount(QWidget *parent) : QLabel(parent)
    {
        setContentsMargins(SpacingStep, 0, SpacingStep, 0);
        takeColor();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(problemColor(palette()), 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
        QLabel::paintEvent(event);
    }

    void changeEvent(QEvent *event) override
    {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            takeColor();
    }

private:
    void takeColor()
    {
        QPalette colors = palette();
        const QColor color = problemColor(colors);
        if (colors.color(QPalette::WindowText) == color)
            return;
        colors.setColor(QPalette::WindowText, color);
        setPalette(colors);
    }
};

} // namespace

class TabBadge : public QWidget
{
public:
    explicit TabBadge(QTabBar *bar)
        : QWidget(bar), m_changes(new QLabel(this)), m_problems(new ProblemCount(this))
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        m_changes->setObjectName(QStringLiteral("changeCount"));
        m_problems->setObjectName(QStringLiteral("problemCount"));
        auto *layout = new QHBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(SpacingStep);
        layout->addWidget(m_changes);
        layout->addWidget(m_problems);
    }

    /// True when the badge needs other room now.
    bool setCounts(int changes, int problems)
    {
        const QSize before = size();
        m_changes->setVisible(changes > 0);
        m_changes->setText(QString::number(changes));
        m_problems->setVisible(problems > 0);
        m_problems->setText(u'!' + QString::number(problems));
        adjustSize();
        return size() != before;
    }

private:
    QLabel *m_changes;
    QLabel *m_problems;
};

namespace
{

/// A tab bar goes on using the button of a tab that is deleted.
void removeBadge(TabBadge *badge)
{
    auto *bar = badge ? qobject_cast<QTabBar *>(badge->parentWidget()) : nullptr;
    for (int index = 0; bar && index < bar->count(); ++index) {
        if (bar->tabButton(index, QTabBar::RightSide) == badge)
            bar->setTabButton(index, QTabBar::RightSide, nullptr);
    }
    delete badge;
}

} // namespace

TabBadges::~TabBadges()
{
    for (const Page &page : std::as_const(m_pages))
        removeBadge(page.badge);
}

void TabBadges::add(Kind kind, QWidget &widget, int difference)
{
    visitPages(widget, [&](QTabWidget &tabs, int index) {
        QWidget *const widgetOfPage = tabs.widget(index);
        const bool isNew = !m_pages.contains(widgetOfPage);
        Page &page = m_pages[widgetOfPage];
        if (isNew) {
            page.tabs = &tabs;
            connect(widgetOfPage, &QObject::destroyed, this,
                    [this, widgetOfPage] { removeBadge(m_pages.take(widgetOfPage).badge); });
        }
        page.counts[kind] += difference;
        show(*widgetOfPage, page);
    });
}

void TabBadges::show(QWidget &widget, Page &page)
{
    const auto [changes, problems] = page.counts;
    if (changes == 0 && problems == 0) {
        removeBadge(page.badge);
    } else {
        QTabBar *bar = page.tabs->tabBar();
        const bool isNew = !page.badge;
        if (isNew)
            page.badge = new TabBadge(bar);
        if (page.badge->setCounts(changes, problems) || isNew) {
            // The bar measures a button when it gets one, and hides the one that it had.
            const int index = page.tabs->indexOf(&widget);
            bar->setTabButton(index, QTabBar::RightSide, nullptr);
            bar->setTabButton(index, QTabBar::RightSide, page.badge);
        }
    }
    updateName(widget, page);
}

void TabBadges::updateName(const QWidget &widget, const Page &page)
{
    const int index = page.tabs ? page.tabs->indexOf(&widget) : -1;
    if (index < 0)
        return;
    const auto [changes, problems] = page.counts;
    QStringList parts;
    if (changes > 0)
        parts << changesText(changes);
    if (problems > 0)
        parts << problemsText(problems);
    if (!parts.isEmpty())
        parts.prepend(withoutAccessKey(page.tabs->tabText(index)));
    page.tabs->tabBar()->setAccessibleTabName(index, parts.join(QStringLiteral(", ")));
}

void TabBadges::updateNames()
{
    for (auto page = m_pages.cbegin(); page != m_pages.cend(); ++page)
        updateName(*page.key(), *page);
}

QString TabBadges::changesText(qsizetype count)
{
    return count == 1 ? tr("1 change") : tr("%n changes", nullptr, int(count));
}

QString TabBadges::problemsText(qsizetype count)
{
    return count == 1 ? tr("1 problem") : tr("%n problems", nullptr, int(count));
}

} // namespace paravue
