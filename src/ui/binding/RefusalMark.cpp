#include "ui/binding/RefusalMark.h"

#include "controls/ReadablePalette.h"
#include "ui/base/WindowStyle.h"

#include <QEvent>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int Margin = SpacingStep;
constexpr int BubbleGap = 4; // leaves the ring of the focus free

} // namespace

RefusalMark::RefusalMark(QLineEdit &field) : QLabel(field.parentWidget()), m_field(field)
{
    setObjectName(QStringLiteral("refusalMark"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    field.installEventFilter(this);
    connect(&field, &QLineEdit::textChanged, this, &RefusalMark::place);
    connect(&field, &QObject::destroyed, this, &QObject::deleteLater);
}

void RefusalMark::setReason(const QString &reason)
{
    m_reason = reason;
    place();
}

RefusalMark::Form RefusalMark::form() const
{
    const int typed = m_field.fontMetrics().horizontalAdvance(m_field.displayText());
    const int wanted = fontMetrics().horizontalAdvance(m_reason);
    if (typed + wanted + 4 * Margin <= m_field.width())
        return Form::Inside;
    return m_field.hasFocus() || m_field.underMouse() ? Form::Below : Form::Sign;
}

void RefusalMark::place()
{
    setVisible(!m_reason.isEmpty() && !m_field.isHidden());
    if (isHidden())
        return;
    const Form now = form();
    m_isBelow = now == Form::Below;
    setText(now == Form::Sign ? QStringLiteral("!") : m_reason);
    QPalette colors = m_field.palette();
    colors.setColor(QPalette::WindowText, problemColor(colors));
    setPalette(colors);
    const QRect field = m_field.geometry();
    const int width = fontMetrics().horizontalAdvance(text()) + 2 * Margin;
    if (m_isBelow) {
        const int left = std::clamp(field.left(), 0, std::max(0, parentWidget()->width() - width));
        setGeometry(left, field.bottom() + BubbleGap, width, fontMetrics().height() + Margin);
    } else {
        const bool isMirrored = m_field.layoutDirection() == Qt::RightToLeft;
        const int left = isMirrored ? field.left() + Margin / 2 : field.right() - width - Margin / 2;
        setGeometry(left, field.top() + Margin, width, field.height() - 2 * Margin);
    }
    raise();
    update();
}

bool RefusalMark::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::PaletteChange:
        place();
        break;
    default:
        break;
    }
    return QLabel::eventFilter(watched, event);
}

void RefusalMark::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    if (m_isBelow) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(problemColor(palette()));
        painter.setBrush(palette().base());
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    } else {
        painter.fillRect(rect(), palette().base());
    }
    painter.end();
    QLabel::paintEvent(event);
}

} // namespace paravue
