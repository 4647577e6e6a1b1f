#include "ui/review/ChangeMarks.h"

#include "controls/ReadablePalette.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/FieldNotes.h"
#include "ui/review/TabBadges.h"

#include <QEvent>
#include <QPainter>

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
        m_badges.add(TabBadges::Changes, widget, 1);
        FieldNotes::have(control).setChanged(true);
        return;
    }
    if (isChanged) {
        found->paths.insert(path);
    } else if (found->paths.remove(path) && found->paths.isEmpty()) {
        remove(*found);
        m_controls.erase(found);
    }
}

void ChangeMarks::clear()
{
    for (const Marked &marked : std::as_const(m_controls))
        remove(marked);
    m_controls.clear();
}

void ChangeMarks::remove(const Marked &marked)
{
    delete marked.bar;
    if (!marked.widget)
        return;
    m_badges.add(TabBadges::Changes, *marked.widget, -1);
    if (FieldNotes *notes = FieldNotes::of(marked.widget))
        notes->setChanged(false);
}

} // namespace paravue
