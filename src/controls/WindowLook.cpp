#include "controls/WindowLook.h"

#include "controls/ControlStyle.h"
#include "controls/DialogIcons.h"
#include "controls/ReadableColors.h"
#include "controls/ReadablePalette.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFocusFrame>
#include <QLineEdit>
#include <QProgressBar>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTabWidget>
#include <QTextCharFormat>

namespace paravue
{

namespace
{

const QString LookName = QStringLiteral("paravueWindowLook");

bool isStyled(const QWidget *widget)
{
    // Style sheets say all of how a widget is drawn.
    if (const auto *bar = qobject_cast<const QProgressBar *>(widget))
        return bar->styleSheet().isEmpty();
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QTabBar *>(widget) || qobject_cast<const QTabWidget *>(widget) ||
           qobject_cast<const QAbstractScrollArea *>(widget);
}

/// Keeps the news of another style from a drop-down. It would make the window of its list at once, which
/// takes several times longer than all the rest of it, and does not need to know before it has one.
class StyleChangeFilter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override { return event->type() == QEvent::StyleChange; }
};

void setControlStyle(QWidget &widget)
{
    StyleChangeFilter filter;
    if (qobject_cast<QComboBox *>(&widget))
        widget.installEventFilter(&filter);
    widget.setStyle(controlStyle());
}

void styleControl(QWidget *widget)
{
    // A style of its own has a slider, for example.
    if (isStyled(widget) && !widget->testAttribute(Qt::WA_SetStyle))
        setControlStyle(*widget);
    // The arrows of a bar with many tabs: its own keys show every tab.
    if (qobject_cast<const QTabBar *>(widget->parentWidget()))
        widget->setFocusPolicy(Qt::NoFocus);
}

/// Qt writes weekends in pure red, with a contrast of 4 on white and on dark grounds.
void makeWeekendsReadable(QCalendarWidget &calendar)
{
    for (const Qt::DayOfWeek day :
         {Qt::Monday, Qt::Tuesday, Qt::Wednesday, Qt::Thursday, Qt::Friday, Qt::Saturday, Qt::Sunday}) {
        QTextCharFormat format = calendar.weekdayTextFormat(day);
        if (format.foreground().color() != Qt::red)
            continue;
        format.setForeground(readableVersion(Qt::red, calendar.palette().color(QPalette::Base)));
        calendar.setWeekdayTextFormat(day, format);
    }
}

/// The list of a drop-down or a calendar: a window of its own, with the palette of the application.
void adaptPopup(QWidget &popup)
{
    popup.setStyle(controlStyle());
    popup.setPalette(readablePalette(popup.palette()));
    for (QCalendarWidget *calendar : popup.findChildren<QCalendarWidget *>())
        makeWeekendsReadable(*calendar);
}

/// What the host has set explicitly for the widget, without what it has from its parent or the application.
QPalette givenPalette(const QWidget &window)
{
    return window.testAttribute(Qt::WA_SetPalette) ? window.palette() : QPalette();
}

} // namespace

void WindowLook::apply(QWidget &window)
{
    if (!window.findChild<QObject *>(LookName, Qt::FindDirectChildrenOnly))
        new WindowLook(window);
}

void WindowLook::styleControls(QWidget &root)
{
    styleControl(&root);
    for (QWidget *widget : root.findChildren<QWidget *>())
        styleControl(widget);
}

/// Some desktops put coloured pictures of their own on OK, Cancel and so on.
void WindowLook::replaceThemeIcons()
{
    for (const QDialogButtonBox *box : m_window.findChildren<QDialogButtonBox *>())
        setOwnIcons(*box);
}

WindowLook::WindowLook(QWidget &window) : QObject(&window), m_window(window), m_given(givenPalette(window))
{
    setObjectName(LookName);
    applyPalette();
    styleControls(window);
    replaceThemeIcons();
    window.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { showFocus(now); });
    showFocus(QApplication::focusWidget());
}

bool WindowLook::eventFilter(QObject *, QEvent *event)
{
    const bool isNewPalette =
        event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange;
    if (isNewPalette && !m_isApplying)
        applyPalette();
    return false;
}

void WindowLook::applyPalette()
{
    const QScopedValueRollback applying(m_isApplying, true);
    m_window.setPalette(m_given); // what was mended before hides the desktop's colours
    m_window.setPalette(readablePalette(m_window.palette()));
}

bool WindowLook::ownsPopup(const QWidget &popup) const
{
    if (popup.windowType() != Qt::Popup)
        return false;
    const QWidget *owner = popup.parentWidget();
    return owner && (owner == &m_window || m_window.isAncestorOf(owner));
}

void WindowLook::showFocus(QWidget *focused)
{
    if (focused && ownsPopup(*focused->window()))
        adaptPopup(*focused->window());
    // The bar of tabs spans the window; its style marks the current tab.
    const bool hasRing = focused && m_window.isAncestorOf(focused) && !qobject_cast<QTabBar *>(focused);
    if (!hasRing) {
        if (m_ring)
            m_ring->setWidget(nullptr);
        return;
    }
    if (!m_ring) { // it is deleted together with the page that it was shown on
        m_ring = new QFocusFrame(&m_window);
        m_ring->setStyle(controlStyle());
    }
    m_ring->setWidget(focused);
}

} // namespace paravue
