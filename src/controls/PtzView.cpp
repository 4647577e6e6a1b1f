#include "controls/PtzView.h"

#include <QLocale>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int LineGap = 4;
/// A camera that has not moved for that long stands still. In milliseconds.
constexpr int ShortestRest = 500;
/// Positions come with the pictures, of which some cameras send one every few seconds.
constexpr int LongestRest = 5'000;
/// Until the first position of a camera that was told to turn, and until the second one at all: only
/// positions that differ come.
constexpr int AnswerTime = 3'000;

} // namespace

PtzView::PtzView(QWidget *parent) : PictureView(parent)
{
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, [this] {
        if (!m_isCertain)
            return;
        m_expectsTurn = false;
        Q_EMIT cameraAtRest();
    });
}

void PtzView::setCertain(bool isCertain)
{
    // A command that was given meanwhile may reach the camera only now.
    if (isCertain && !m_isCertain)
        m_rest.start(std::max(m_rest.remainingTime(), m_expectsTurn ? AnswerTime : ShortestRest));
    m_isCertain = isCertain;
}

void PtzView::expectTurn()
{
    if (!m_position)
        return;
    m_expectsTurn = true;
    m_rest.start(std::max(m_rest.remainingTime(), AnswerTime));
}

void PtzView::follow(const PtzView &original)
{
    const auto take = [this, &original] { setPosition(original.position()); };
    connect(&original, &PtzView::positionChanged, this, take);
    take();
}

QString PtzView::valueText() const
{
    return withNotice(positionText());
}

void PtzView::slot_Set_PTZ_pos(const QString &position)
{
    setPosition(parsePtzPosition(position));
}

void PtzView::slot_Set_PTZ_pos(double pan, double tilt, double zoom)
{
    const QString text = QStringLiteral("%1,%2,%3");
    setPosition(parsePtzPosition(text.arg(pan).arg(tilt).arg(zoom)));
}

void PtzView::setPosition(const std::optional<PtzPosition> &position)
{
    const bool isFirst = !m_position && position;
    const bool hasMoved = m_position && position && *m_position != *position;
    // A camera that turns has sent two positions by then.
    const qint64 pause = m_lastPosition.isValid() ? 2 * m_lastPosition.elapsed() : 0;
    m_lastPosition.start();
    m_position = position;
    if (!position || (hasMoved && m_isCertain))
        m_expectsTurn = false;
    if (hasMoved)
        m_rest.start(int(std::clamp<qint64>(pause, ShortestRest, LongestRest)));
    else if (isFirst)
        m_rest.start(AnswerTime);
    else if (!position)
        m_rest.stop();
    stateChanged();
    Q_EMIT positionChanged();
    if (!position)
        Q_EMIT cameraAtRest();
}

QString PtzView::positionText() const
{
    return m_position ? textOf(*m_position, locale()) : tr("Camera position not known");
}

QString PtzView::textOf(const PtzPosition &position, const QLocale &locale)
{
    const auto number = [&](double value) { return locale.toString(value, 'f', 2); };
    const QString direction = tr("Pan %1, tilt %2").arg(number(position.pan), number(position.tilt));
    return position.zoom ? tr("%1, zoom %2").arg(direction, number(*position.zoom)) : direction;
}

int PtzView::footerHeight(int width) const
{
    const int flags = Qt::TextWordWrap;
    // The longest text decides, so that the picture does not jump when the position becomes known.
    const QString longest = tr("%1, zoom %2").arg(tr("Pan %1, tilt %2").arg("-0.00", "-0.00"), "0.00");
    const QRect room(0, 0, width, 1000);
    const int known = fontMetrics().boundingRect(room, flags, longest).height();
    const int unknown = fontMetrics().boundingRect(room, flags, tr("Camera position not known")).height();
    return LineGap + std::max(known, unknown);
}

void PtzView::paintFooter(QPainter &painter)
{
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(footerRect().adjusted(0, LineGap, 0, 0),
                     int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop)) |
                         Qt::TextWordWrap,
                     positionText());
}

} // namespace paravue
