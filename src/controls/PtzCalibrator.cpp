#include "controls/PtzCalibrator.h"

#include "controls/CalibrationPoint.h"
#include "controls/CellFrame.h"
#include "controls/NameEdit.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

constexpr double ArmLength = 9;
constexpr double Reach = 10; // how near to a point a press has to be
constexpr double Step = 0.01;
constexpr double FinePointStep = 0.001;
constexpr int ShownName = 16; // characters in the strip

QPointF intoPicture(const QPointF &fraction)
{
    return {std::clamp(fraction.x(), 0.0, 1.0), std::clamp(fraction.y(), 0.0, 1.0)};
}

QList<QLineF> armsAround(const QPointF &position, double length)
{
    const QPointF across(length, 0);
    const QPointF down(0, length);
    return {{position - across, position + across}, {position - down, position + down}};
}

QString listOf(const QList<int> &numbers, const QLocale &locale)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return locale.createSeparatedList(texts);
}

} // namespace

PtzCalibrator::PtzCalibrator(int points, QWidget *parent)
    : PtzView(parent), m_strip(*this), m_gesture(*this, EditGesture::Interruption::Cancels)
{
    setFocusPolicy(Qt::StrongFocus);
    m_points.resize(std::max(points, 1));
    connect(this, &PtzView::cameraAtRest, this, &PtzCalibrator::setDeferred);
    pointsChanged();
}

QString PtzCalibrator::titleOf(int number) const
{
    const QString name = nameOfPoint(m_points.value(number - 1));
    return name.isEmpty() ? QString::number(number) : tr("%1 %2").arg(QString::number(number), name);
}

void PtzCalibrator::pointsChanged()
{
    QStringList titles;
    for (int number = 1; number <= m_points.size(); ++number) {
        QString title = titleOf(number);
        if (title.size() > ShownName)
            title = title.left(ShownName - 1) + u'…';
        titles.append(title);
    }
    if (titles != m_strip.texts()) {
        m_strip.setTexts(titles);
        updateGeometry();
    }
    stateChanged();
}

void PtzCalibrator::setCaption(const QString &text)
{
    setAccessibleDescription(text);
    if (m_strip.setNote(text, footerRect().width()))
        updateGeometry();
    update();
}

bool PtzCalibrator::setPoints(const QStringList &points)
{
    QStringList fitting = points.mid(0, m_points.size());
    fitting.resize(m_points.size());
    if (fitting == m_points)
        return false;
    const QStringList before = std::exchange(m_points, fitting);
    QList<int> replaced;
    for (int number = 1; number <= m_points.size(); ++number) {
        if (before.at(number - 1) != m_points.at(number - 1) && m_deferred.remove(number) > 0)
            replaced.append(number);
    }
    if (!replaced.isEmpty())
        m_loss =
            replaced.size() == 1
                ? tr("Point %1 was not set, as it has got another value.").arg(listOf(replaced, locale()))
                : tr("Points %1 were not set, as they have got other values.")
                      .arg(listOf(replaced, locale()));
    m_gesture.textsReplaced();
    pointsChanged();
    if (!replaced.isEmpty())
        Q_EMIT deferralChanged();
    for (int number = 1; number <= before.size(); ++number) {
        if (before.at(number - 1) != fitting.at(number - 1))
            Q_EMIT pointReplaced(number);
    }
    return true;
}

bool PtzCalibrator::setGotoPoint(int number)
{
    const int fitting = number >= 1 && number <= m_points.size() ? number : 0;
    if (fitting == m_goto)
        return false;
    m_goto = fitting;
    stateChanged();
    return true;
}

std::optional<QPointF> PtzCalibrator::placeOf(int number) const
{
    if (m_gesture.isDragging() && number == m_current)
        return m_held.place;
    const auto deferred = m_deferred.constFind(number);
    return deferred != m_deferred.cend() ? *deferred : placeOfPoint(m_points.value(number - 1));
}

QString PtzCalibrator::valueText() const
{
    const QString point = tr("Point %1 of %2").arg(titleOf(m_current), QString::number(m_points.size()));
    const auto place = placeOf(m_current);
    const auto percent = [this](double share) { return locale().toString(100 * share, 'f', 1); };
    const QString state =
        place ? tr("%1% from the left, %2% from the top").arg(percent(place->x()), percent(place->y()))
              : tr("not set");
    const QString remark = pointRemark();
    const QString wait = remark.isEmpty() ? QString() : remark + u' ';
    const QString text = tr("%1: %2. %3").arg(point, state, wait + PtzView::valueText());
    return m_goto == 0 ? text : tr("%1. Gone to point %2").arg(text, QString::number(m_goto));
}

void PtzCalibrator::choose(int number)
{
    if (number < 1 || number > m_points.size() || number == m_current)
        return;
    m_current = number;
    m_loss.clear();
    stateChanged();
}

void PtzCalibrator::chooseNextUnset()
{
    for (int step = 1; step < m_points.size(); ++step) {
        const int number = int((m_current - 1 + step) % m_points.size()) + 1;
        if (!placeOf(number))
            return choose(number);
    }
}

void PtzCalibrator::place(const QPointF &fraction)
{
    m_loss.clear();
    if (isTurning()) {
        m_deferred.insert(m_current, intoPicture(fraction));
        stateChanged();
        Q_EMIT deferralChanged();
        return;
    }
    QString &point = m_points[m_current - 1];
    point = placedPoint(point, intoPicture(fraction), position());
    m_deferred.remove(m_current);
    pointsChanged();
}

void PtzCalibrator::setDeferred()
{
    const QMap<int, QPointF> places = std::exchange(m_deferred, {});
    for (auto each = places.cbegin(); position() && each != places.cend(); ++each) {
        m_gesture.perform([&] {
            QString &point = m_points[each.key() - 1];
            point = placedPoint(point, each.value(), position());
        });
    }
    if (places.isEmpty())
        return;
    if (!position())
        m_loss =
            (places.size() == 1 ? tr("Point %1 was not set, as the camera position is not known any more.")
                                : tr("Points %1 were not set, as the camera position is not known any more."))
                .arg(listOf(places.keys(), locale()));
    pointsChanged();
    Q_EMIT deferralChanged();
}

QString PtzCalibrator::deferral() const
{
    if (m_deferred.isEmpty())
        return {};
    return (m_deferred.size() == 1 ? tr("Point %1 is set as soon as the camera stands still.")
                                   : tr("Points %1 are set as soon as the camera stands still."))
        .arg(listOf(m_deferred.keys(), locale()));
}

QString PtzCalibrator::pointRemark() const
{
    return m_deferred.isEmpty() ? m_loss : deferral();
}

QString PtzCalibrator::shownRemark() const
{
    QStringList remarks{pointRemark(), PtzView::shownRemark()};
    remarks.removeAll(QString());
    remarks.removeDuplicates();
    return remarks.join(u'\n');
}

/// A point without a position of the camera has no place for a name.
bool PtzCalibrator::canRename() const
{
    const QString text = m_points.value(m_current - 1);
    return !m_nameEdit && namedPoint(text, nameOfPoint(text) + u'x') != text;
}

void PtzCalibrator::rename()
{
    const int number = m_current;
    m_nameEdit = new NameEdit(nameOfPoint(m_points.value(number - 1)), this);
    m_nameEdit->setAccessibleName(tr("Name of point %1").arg(QString::number(number)));
    connect(m_nameEdit, &NameEdit::named, this, [this, number](const QString &given) {
        m_gesture.perform([&] {
            QString &point = m_points[number - 1];
            point = namedPoint(point, given);
            pointsChanged();
        });
    });
    placeNameEdit();
    m_nameEdit->show();
    m_nameEdit->setFocus();
}

void PtzCalibrator::placeNameEdit()
{
    if (!m_nameEdit)
        return;
    const int height = m_nameEdit->fontMetrics().height() + 12;
    const QRect picture = pictureRect();
    m_nameEdit->setGeometry(picture.left(), picture.bottom() + 1 - height, picture.width(), height);
}

void PtzCalibrator::resizeEvent(QResizeEvent *event)
{
    PtzView::resizeEvent(event);
    placeNameEdit();
}

void PtzCalibrator::remove(int number)
{
    if (!placeOf(number))
        return;
    const bool hasWaited = m_deferred.remove(number) > 0;
    m_gesture.perform([&] {
        m_points[number - 1].clear();
        pointsChanged();
    });
    if (hasWaited)
        Q_EMIT deferralChanged();
}

/// A gesture changes one point.
void PtzCalibrator::textsEdited(const QStringList &before, const QStringList &after)
{
    const auto changed = std::mismatch(before.cbegin(), before.cend(), after.cbegin()).first;
    Q_EMIT signal_Point_calibrated(int(changed - before.cbegin()) + 1);
}

bool PtzCalibrator::goTo(int number)
{
    if (!placeOf(number) || isDeferred(number))
        return false;
    m_goto = number;
    stateChanged();
    Q_EMIT signal_Goto_point_selected(number);
    return true;
}

QRectF PtzCalibrator::badgeOf(const QPointF &position) const
{
    const QSizeF size(fontMetrics().horizontalAdvance(QStringLiteral("00")) + 4, fontMetrics().height());
    QRectF badge(position + QPointF(5, -5 - size.height()), size);
    const QRectF picture = pictureRect();
    if (badge.right() > picture.right())
        badge.moveRight(position.x() - 5);
    if (badge.top() < picture.top())
        badge.moveTop(position.y() + 5);
    return badge;
}

int PtzCalibrator::pointAt(const QPointF &position) const
{
    int nearest = 0;
    double least = Reach;
    for (int number = 1; number <= m_points.size(); ++number) {
        const auto place = placeOf(number);
        if (!place)
            continue;
        const QPointF point = positionOf(*place);
        const double distance = badgeOf(point).contains(position) ? Reach : QLineF(point, position).length();
        // Of two that are equally near, the one that is drawn on top.
        if (distance < least || (distance <= least && (nearest == 0 || number == m_current))) {
            least = distance;
            nearest = number;
        }
    }
    return nearest;
}

QRect PtzCalibrator::stripRect() const
{
    return footerRect().adjusted(0, PtzView::footerHeight(footerRect().width()), 0, 0);
}

int PtzCalibrator::pointInStrip(const QPoint &position) const
{
    return m_strip.at(position, stripRect()) + 1;
}

void PtzCalibrator::mousePressEvent(QMouseEvent *event)
{
    m_gesture.press(*event);
}

void PtzCalibrator::mouseMoveEvent(QMouseEvent *event)
{
    m_gesture.move(*event);
}

void PtzCalibrator::mouseReleaseEvent(QMouseEvent *event)
{
    m_gesture.release(*event);
}

bool PtzCalibrator::beginDrag(const QMouseEvent &press)
{
    const QPointF position = press.position();
    const bool isInPicture = pictureRect().contains(position.toPoint());
    const int hit = isInPicture ? pointAt(position) : 0;
    if (press.button() == Qt::RightButton)
        return false;
    choose(isInPicture ? hit : pointInStrip(position.toPoint()));
    if (!isInPicture)
        return false;
    const QPointF offset = hit > 0 ? positionOf(*placeOf(hit)) - position : QPointF();
    m_held = {position, offset, intoPicture(fractionAt(position + offset)), hit == 0};
    return true;
}

void PtzCalibrator::dragTo(const QPointF &position)
{
    if (m_held.moved || (position - m_held.start).manhattanLength() >= QApplication::startDragDistance()) {
        m_held.moved = true;
        m_held.place = intoPicture(fractionAt(position + m_held.offset));
    }
    stateChanged();
}

void PtzCalibrator::drop()
{
    stateChanged();
    if (!m_held.moved)
        return;
    const bool isNew = !placeOf(m_current);
    place(m_held.place);
    if (isNew)
        chooseNextUnset();
}

/// The point is back where it was; its text changes only when it is dropped.
void PtzCalibrator::cancelDrag(const QStringList &)
{
    stateChanged();
}

void PtzCalibrator::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = event->position().toPoint();
    const int number = pictureRect().contains(position) ? pointAt(event->position()) : pointInStrip(position);
    choose(number);
    goTo(number);
}

bool PtzCalibrator::moveByKey(const QKeyEvent &event)
{
    const QPointF step = arrowStep(event.key());
    if (step.isNull())
        return false;
    if (const auto start = placeOf(m_current)) {
        const double length = event.modifiers() & Qt::ShiftModifier ? FinePointStep : Step;
        m_gesture.perform([&] { place(*start + step * length); });
    }
    return true;
}

EditActions PtzCalibrator::editActions()
{
    const QString number = QString::number(m_current);
    const bool isSet = placeOf(m_current).has_value();
    const EditActions actions{
        {tr("Go to point %1").arg(number),
         {Qt::Key_Return, Qt::Key_Enter},
         [this] { goTo(m_current); },
         isSet && !isDeferred(m_current)},
        {tr("Set point %1").arg(number),
         {Qt::Key_Space},
         [this] { m_gesture.perform([&] { place(placeOf(m_current).value_or(QPointF(0.5, 0.5))); }); }},
        {tr("Name point %1…").arg(number), {Qt::Key_F2}, [this] { rename(); }, canRename()},
        {tr("Remove point %1").arg(number),
         {Qt::Key_Delete, Qt::Key_Backspace},
         [this] { remove(m_current); },
         isSet}};
    return groupedActions({actions, pictureActions()});
}

void PtzCalibrator::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_gesture.isDragging())
        return;
    if (event->reason() == QContextMenuEvent::Keyboard)
        return showMenuAtPoint();
    choose(pictureRect().contains(event->pos()) ? pointAt(event->pos()) : pointInStrip(event->pos()));
    showMenu(*this, editActions(), event->globalPos());
}

void PtzCalibrator::showMenuAtPoint()
{
    const QPointF position = positionOf(placeOf(m_current).value_or(QPointF(0.5, 0.5)));
    showMenu(*this, editActions(), mapToGlobal(position.toPoint()));
}

bool PtzCalibrator::event(QEvent *event)
{
    return claimKey([this] { return editActions(); }, *event) || PtzView::event(event);
}

void PtzCalibrator::keyPressEvent(QKeyEvent *event)
{
    if (!m_gesture.isDragging() && performByKey(editActions(), *event))
        return;
    const int key = event->key();
    const bool isPlain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (m_gesture.takeKey(*event))
        return;
    if (isMenuKey(*event)) {
        showMenuAtPoint();
    } else if (!isPlain) {
        PtzView::keyPressEvent(event);
    } else if (moveByKey(*event)) {
        return;
    } else if (key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
        choose(m_current + (key == Qt::Key_PageUp ? -1 : 1));
    } else if (key >= Qt::Key_1 && key <= Qt::Key_9) {
        choose(key - Qt::Key_0);
    } else {
        PtzView::keyPressEvent(event);
    }
}

void PtzCalibrator::focusOutEvent(QFocusEvent *event)
{
    PtzView::focusOutEvent(event);
    m_gesture.interrupt();
}

int PtzCalibrator::footerHeight(int width) const
{
    return PtzView::footerHeight(width) + m_strip.height(width);
}

void PtzCalibrator::paintFooter(QPainter &painter)
{
    PtzView::paintFooter(painter);
    m_strip.paint(painter, stripRect(), {m_current - 1}, [&](const QRect &place, int chip) {
        painter.fillRect(place, Qt::gray);
        if (placeOf(chip + 1))
            drawOnPicture(painter, armsAround(QRectF(place).center(), place.width() / 2.0 - 3), 1);
    });
}

void PtzCalibrator::paintPoint(QPainter &painter, int number, const QPointF &position)
{
    const bool isCurrent = number == m_current;
    drawOnPicture(painter, armsAround(position, ArmLength), isCurrent ? 2 : 1);
    if (number == m_goto) {
        painter.setBrush(Qt::NoBrush);
        for (const auto &[color, width] : {std::pair(Qt::black, 3), std::pair(Qt::white, 1)}) {
            painter.setPen(QPen(color, width));
            painter.drawEllipse(position, ArmLength, ArmLength);
        }
    }
    const QRectF badge = badgeOf(position);
    painter.setPen(Qt::white);
    painter.setBrush(isCurrent ? palette().color(QPalette::Highlight) : QColor(Qt::black));
    painter.drawRoundedRect(badge, 3, 3);
    painter.setPen(isCurrent ? palette().color(QPalette::HighlightedText) : QColor(Qt::white));
    painter.drawText(badge, Qt::AlignCenter, QString::number(number));
}

void PtzCalibrator::paintOver(QPainter &painter, const QRect &dirty)
{
    PtzView::paintOver(painter, dirty);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int number = 1; number <= m_points.size(); ++number) {
        const auto place = placeOf(number);
        if (place && number != m_current)
            paintPoint(painter, number, positionOf(*place));
    }
    if (const auto place = placeOf(m_current))
        paintPoint(painter, m_current, positionOf(*place));
}

} // namespace paravue
