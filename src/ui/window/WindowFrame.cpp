#include "ui/window/WindowFrame.h"

#include "controls/WindowLook.h"
#include "ui/base/PageTabs.h"
#include "ui/base/WindowStyle.h"
#include "ui/base/WindowText.h"
#include "ui/page/ControlItem.h"
#include "ui/window/LoadingView.h"
#include "ui/window/WindowHeader.h"

#include <QDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSizeGrip>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace paravue
{

WindowFrame::WindowFrame(QDialog &window, const QString &recorder)
    : m_window(window), m_recorder(recorder), m_place(window)
{
    createWidgets();
    arrangeWidgets();
    placeWindow();
}

void WindowFrame::createWidgets()
{
    m_header = new WindowHeader(&m_window);
    // The title of a description is put directly behind it.
    m_header->label()->setText((m_recorder.isEmpty() ? m_window.windowTitle() : m_recorder) + u' ');
    m_header->label()->setObjectName(QStringLiteral("labelHeader"));
    m_tabs = new PageTabs(&m_window);
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    m_tabs->hide();
    m_ok = new QPushButton(QIcon(QStringLiteral(":/resources/ok.png")), WindowText::tr("OK"), &m_window);
    m_ok->setDefault(true);
    m_ok->setEnabled(false); // enabled by the description
    m_cancel =
        new QPushButton(QIcon(QStringLiteral(":/resources/cancel.png")), WindowText::tr("Cancel"), &m_window);
    m_ok->setObjectName(QStringLiteral("buttonOK"));
    m_cancel->setObjectName(QStringLiteral("buttonCancel"));
    for (QPushButton *button : {m_ok, m_cancel}) {
        button->setAutoDefault(false);
        button->setMinimumWidth(20 * SpacingStep);
        button->setMinimumHeight(lineHeight(*button));
    }
    m_header->complete();
    m_grip = new QSizeGrip(&m_window);
    m_grip->setVisible(m_window.isWindow());
}

void WindowFrame::arrangeWidgets()
{
    m_buttons = new QGridLayout;
    m_buttons->setContentsMargins(PageMargin, 0, PageMargin, PageMargin);
    m_buttons->setHorizontalSpacing(GridSpacing);
    m_buttons->setColumnStretch(0, 1);
    m_buttons->addWidget(m_ok, 0, 1);
    m_buttons->addWidget(m_cancel, 0, 2);

    m_pages = new QGridLayout;
    m_pages->setContentsMargins(PageMargin, 0, PageMargin, 0);
    m_pages->addWidget(m_tabs, 0, 0);

    auto *layout = new QGridLayout(&m_window);
    layout->setContentsMargins(1, 1, 1, 1); // the window's own border
    layout->setVerticalSpacing(PageMargin);
    layout->addWidget(m_header, 0, 0);
    layout->addLayout(m_pages, 1, 0);
    layout->addLayout(m_buttons, 2, 0);
    layout->setRowStretch(1, 1);
}

void WindowFrame::placeWindow()
{
    const QWidget *parent = m_window.parentWidget();
    const QRect around = parent ? parent->window()->frameGeometry() : m_window.screen()->availableGeometry();
    place(QSize(840, 600), around.center());
}

QPoint WindowFrame::middle() const
{
    return m_place.isNew() ? m_middle : m_window.geometry().center();
}

void WindowFrame::place(const QSize &size, const QPoint &middle)
{
    if (!m_window.isWindow())
        return; // the layout that it stands in decides
    const QWidget *parent = m_window.parentWidget();
    const QScreen *screen = QGuiApplication::screenAt(middle);
    if (!screen)
        screen = parent ? parent->screen() : m_window.screen();
    const QRect ground = screen->availableGeometry();
    m_middle = middle;
    m_window.resize(size.boundedTo(ground.size()));
    QRect window = m_window.rect(); // larger than asked for where a least size wants it
    window.moveCenter(middle);
    const QPoint last = ground.bottomRight() - QPoint(window.width() - 1, window.height() - 1);
    m_place.put(QPoint(std::max(ground.left(), std::min(window.left(), last.x())),
                       std::max(ground.top(), std::min(window.top(), last.y()))));
}

LoadingView &WindowFrame::loadingView()
{
    // A local store has finished loading before the view is visible.
    if (!m_loading) {
        m_loading = new LoadingView(&m_window);
        m_loading->setRecorder(m_recorder);
        m_pages->addWidget(m_loading, 0, 0);
        WindowLook::styleControls(*m_loading);
    }
    return *m_loading;
}

void WindowFrame::showPages()
{
    if (m_loading) {
        m_loading->hide();
        m_loading->deleteLater();
        m_loading = nullptr;
    }
    m_tabs->show();
    m_ok->setEnabled(true);
}

void WindowFrame::addStatusLine(QWidget *line)
{
    m_line = line;
    m_buttons->addWidget(line, 0, 0);
}

void WindowFrame::chainTabOrder()
{
    QList<QWidget *> behind;
    const auto addTools = [&behind, this](const QWidget &place) {
        for (QToolButton *tool : place.findChildren<QToolButton *>()) {
            if (tool != m_header->closeButton())
                behind << tool;
        }
    };
    if (m_line)
        addTools(*m_line);
    behind << m_ok << m_cancel;
    addTools(*m_header);
    behind << m_header->closeButton();
    for (QWidget *next : std::as_const(behind)) {
        // The order is a ring that begins and ends at the window.
        if (QWidget *last = m_window.previousInFocusChain(); last != next)
            QWidget::setTabOrder(last, next);
    }
}

void WindowFrame::placeGrip()
{
    const QRect corner = QStyle::alignedRect(m_window.layoutDirection(), Qt::AlignRight | Qt::AlignBottom,
                                             m_grip->sizeHint(), m_window.rect().adjusted(1, 1, -1, -1));
    m_grip->setGeometry(corner);
}

} // namespace paravue
