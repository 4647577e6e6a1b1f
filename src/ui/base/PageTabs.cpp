#include "ui/base/PageTabs.h"

#include "controls/MessageText.h"

#include <QTabBar>

#include <algorithm>

namespace paravue
{

constexpr int CaptionLetters = 32; // of average width, in a caption

class PageTabBar : public QTabBar
{
public:
    using QTabBar::QTabBar;

    void beginChanges() { ++m_changes; }
    void endChanges()
    {
        if (--m_changes == 0)
            setElideMode(elideMode()); // lays the tabs out again
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        if (m_changes > 0)
            return {1, 1};
        return limited(QTabBar::tabSizeHint(index));
    }

    /// By itself every tab would shrink to three letters before the first one is scrolled away.
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }

    void tabLayoutChange() override
    {
        for (int index = 0; m_changes == 0 && index < count(); ++index) {
            const QSize size = QTabBar::tabSizeHint(index);
            const bool isCut = size != limited(size);
            const QString toolTip = isCut ? literalToolTip(shortenedMessage(tabText(index))) : QString();
            if (tabToolTip(index) != toolTip)
                setTabToolTip(index, toolTip);
        }
    }

private:
    QSize limited(const QSize &size) const
    {
        return isUpright() ? QSize(size.width(), std::min(size.height(), longest()))
                           : QSize(std::min(size.width(), longest()), size.height());
    }
    bool isUpright() const
    {
        return shape() == RoundedWest || shape() == RoundedEast || shape() == TriangularWest ||
               shape() == TriangularEast;
    }
    int longest() const { return CaptionLetters * fontMetrics().averageCharWidth(); }

    int m_changes = 0; ///< that have begun and not ended
};

PageTabs::Changes::Changes(PageTabs &tabs) : m_tabs(tabs)
{
    m_tabs.m_bar->beginChanges();
}

PageTabs::Changes::~Changes()
{
    m_tabs.m_bar->endChanges();
}

PageTabs::PageTabs(QWidget *parent) : QTabWidget(parent), m_bar(new PageTabBar(this))
{
    setTabBar(m_bar);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
}

} // namespace paravue
