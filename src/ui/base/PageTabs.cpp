#include "ui/base/PageTabs.h"

#include "controls/MessageText.h"

#include <QTabBar>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int CaptionLetters = 32; // of average width, in a caption

class PageTabBar : public QTabBar
{
public:
    using QTabBar::QTabBar;

protected:
    QSize tabSizeHint(int index) const override
    {
        const QSize size = QTabBar::tabSizeHint(index);
        return isUpright() ? QSize(size.width(), std::min(size.height(), longest()))
                           : QSize(std::min(size.width(), longest()), size.height());
    }

    /// By itself every tab would shrink to three letters before the first one is scrolled away.
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }

    void tabLayoutChange() override
    {
        for (int index = 0; index < count(); ++index) {
            const bool isCut = QTabBar::tabSizeHint(index) != tabSizeHint(index);
            const QString toolTip = isCut ? literalToolTip(shortenedMessage(tabText(index))) : QString();
            if (tabToolTip(index) != toolTip)
                setTabToolTip(index, toolTip);
        }
    }

private:
    bool isUpright() const
    {
        return shape() == RoundedWest || shape() == RoundedEast || shape() == TriangularWest ||
               shape() == TriangularEast;
    }
    int longest() const { return CaptionLetters * fontMetrics().averageCharWidth(); }
};

} // namespace

PageTabs::PageTabs(QWidget *parent) : QTabWidget(parent)
{
    setTabBar(new PageTabBar(this));
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
}

} // namespace paravue
