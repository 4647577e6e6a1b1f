#include "controls/DialogFrame.h"

#include "controls/DialogIcons.h"
#include "controls/DialogPlace.h"
#include "controls/OwnTexts.h"
#include "controls/ReadableColors.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QWindow>

namespace paravue
{
namespace
{

constexpr int FrameEdge = 1;
constexpr int TitleMargin = 12;
constexpr int TitleSpacing = 8;

QColor frameEdgeColor(const QPalette &palette)
{
    return mixedColor(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.3);
}

} // namespace

void DialogFrame::give(QDialog &dialog, Size size)
{
    dialog.setWindowFlag(Qt::FramelessWindowHint);
    dialog.setSizeGripEnabled(size == Size::OfTheUser);
    auto *frame = new DialogFrame(dialog);
    frame->fitFont();
    frame->applyIcons();
    DialogPlace::keepCentred(dialog);
}

DialogFrame::DialogFrame(QDialog &dialog) : QWidget(&dialog), m_dialog(dialog), m_close(new QToolButton(this))
{
    m_close->setAutoRaise(true);
    m_close->setFocusPolicy(Qt::NoFocus);
    keepTranslated(*m_close, [this] {
        m_close->setToolTip(tr("Close"));
        m_close->setAccessibleName(tr("Close"));
    });
    connect(m_close, &QToolButton::clicked, &dialog, &QWidget::close);
    dialog.installEventFilter(this);
}

void DialogFrame::fitFont()
{
    QFont bold = m_dialog.font();
    bold.setWeight(QFont::DemiBold);
    setFont(bold);
    m_dialog.setContentsMargins(FrameEdge, FrameEdge + fontMetrics().height() + 2 * TitleSpacing, FrameEdge,
                                FrameEdge);
    fitWidth();
}

void DialogFrame::fitWidth()
{
    const int height = m_dialog.contentsMargins().top() - FrameEdge;
    setGeometry(FrameEdge, FrameEdge, m_dialog.width() - 2 * FrameEdge, height);
    constexpr int Gap = 3;
    const QRect cross(width() - height + Gap, Gap, height - 2 * Gap, height - 2 * Gap);
    m_close->setGeometry(QStyle::visualRect(layoutDirection(), rect(), cross));
}

void DialogFrame::applyIcons()
{
    m_close->setIcon(closeIcon(m_dialog.palette()));
    if (const auto *buttons = m_dialog.findChild<QDialogButtonBox *>())
        setOwnIcons(*buttons);
    const auto *box = qobject_cast<QMessageBox *>(&m_dialog);
    auto *picture = m_dialog.findChild<QLabel *>(QStringLiteral("qt_msgboxex_icon_label"));
    if (!box || !picture || box->icon() == QMessageBox::NoIcon)
        return;
    // QMessageBox::setIconPixmap() would make it forget which icon it has.
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, box);
    picture->setPixmap(
        messageIcon(box->icon(), m_dialog.palette()).pixmap(QSize(size, size), devicePixelRatioF()));
}

bool DialogFrame::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
        fitWidth();
        break;
    case QEvent::FontChange:
        fitFont();
        break;
    case QEvent::PaletteChange:
        applyIcons();
        break;
    case QEvent::WindowTitleChange:
        update();
        break;
    case QEvent::Paint:
        paintEdge();
        break;
    default:
        break;
    }
    return false;
}

void DialogFrame::paintEdge() const
{
    QPainter painter(&m_dialog);
    painter.setPen(frameEdgeColor(m_dialog.palette()));
    painter.drawRect(m_dialog.rect().adjusted(0, 0, -1, -1));
}

void DialogFrame::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(
        rect(), mixedColor(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.08));
    painter.fillRect(0, height() - FrameEdge, width(), FrameEdge, frameEdgeColor(palette()));
    const QRect room(TitleMargin, 0, width() - height() - TitleMargin - TitleSpacing, height());
    const QString title = fontMetrics().elidedText(m_dialog.windowTitle(), Qt::ElideRight, room.width());
    style()->drawItemText(&painter, QStyle::visualRect(layoutDirection(), rect(), room),
                          int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter)),
                          palette(), true, title, QPalette::WindowText);
}

void DialogFrame::mousePressEvent(QMouseEvent *event)
{
    QWindow *window = m_dialog.windowHandle();
    m_isMoving = event->button() == Qt::LeftButton && !(window && window->startSystemMove());
    m_grabbedAt = event->globalPosition().toPoint() - m_dialog.pos();
}

void DialogFrame::mouseMoveEvent(QMouseEvent *event)
{
    if (m_isMoving && event->buttons().testFlag(Qt::LeftButton))
        m_dialog.move(event->globalPosition().toPoint() - m_grabbedAt);
}

} // namespace paravue
