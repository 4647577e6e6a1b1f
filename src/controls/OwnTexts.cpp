#include "controls/OwnTexts.h"

#include <QEvent>
#include <QWidget>

namespace paravue
{

namespace
{

class LanguageFilter : public QObject
{
public:
    LanguageFilter(QWidget &widget, const std::function<void()> &setTexts)
        : QObject(&widget), m_setTexts(setTexts)
    {
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange)
            m_setTexts();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_setTexts;
};

} // namespace

void keepTranslated(QWidget &widget, const std::function<void()> &setTexts)
{
    setTexts();
    new LanguageFilter(widget, setTexts);
}

} // namespace paravue
