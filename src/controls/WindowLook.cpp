#include "controls/WindowLook.h"

#include "controls/ControlStyle.h"
#include "controls/ReadablePalette.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFocusFrame>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTabWidget>

namespace paravue
{

namespace
{

const QString LookName = QStringLiteral("paravueWindowLook");

bool isStyled(const QWidget *widget)
{
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QTabBar *>(widget) || qobject_cast<const QTabWidget *>(widget) ||
           qobject_cast<const QAbstractScrollArea *>(widget);
}

void styleControl(QWidget *widget)
{
    // A style of its own has a slider, for example.
    if (isStyled(widget) && !widget->testAttribute(Qt::WA_SetStyle))
        widget->setStyle(controlStyle());
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

WindowLook::WindowLook(QWidget &window) : QObject(&window), m_window(window), m_given(givenPalette(window))
{
    setObjectName(LookName);
    applyPalette();
    styleControls(window);
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

void WindowLook::showFocus(QWidget *focused)
{
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
