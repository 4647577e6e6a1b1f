#include "ui/tasks/PictureActions.h"

#include "controls/CellGridEditor.h"
#include "controls/LiveView.h"
#include "controls/PictureView.h"
#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "ui/accessibility/ControlAccessibility.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

QPixmap pictureOf(const QWidget &control)
{
    if (const auto *view = qobject_cast<const LiveView *>(&control))
        return view->pixmap();
    if (const auto *label = qobject_cast<const QLabel *>(&control))
        return label->pixmap(Qt::ReturnByValue);
    const auto *view = qobject_cast<const PictureView *>(&control);
    return view ? view->pixmap() : QPixmap();
}

bool hasPicture(const QWidget &control)
{
    if (const auto *view = qobject_cast<const LiveView *>(&control))
        return view->hasPicture();
    if (const auto *view = qobject_cast<const PictureView *>(&control))
        return view->hasPicture();
    return !pictureOf(control).isNull();
}

/// What the user sees as the name of a control.
QString nameOf(QWidget &control)
{
    const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&control);
    return interface ? interface->text(QAccessible::Name) : QString();
}

/// Whether the control is for changing something, so that the mouse and some keys are taken.
bool isEditor(const QWidget &control)
{
    return qobject_cast<const CellGridEditor *>(&control) || qobject_cast<const PtzCalibrator *>(&control);
}

/// The window of \a control among \a windows, if it has one.
bool raiseWindowOf(const QWidget &control, const QList<QPointer<QWidget>> &windows)
{
    for (const QPointer<QWidget> &window : windows) {
        if (!window || window->parentWidget() != &control)
            continue;
        window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
        window->raise();
        window->activateWindow();
        return true;
    }
    return false;
}

/// A view of the same kind. Like its window it ends with \a control.
PictureView *enlargedView(QWidget &control)
{
    if (auto *camera = qobject_cast<PtzVideoInput *>(&control)) {
        auto *view = new PtzVideoInput(&control);
        view->steering().follow(camera->steering());
        return view;
    }
    if (auto *cross = qobject_cast<PtzCrossView *>(&control)) {
        auto *view = new PtzCrossView(&control);
        view->follow(*cross);
        view->steering().follow(cross->steering());
        return view;
    }
    return new PictureView(&control);
}

/// A name of a file, from what a description calls a picture.
QString fileNameOf(const QString &name, const QDateTime &time)
{
    QString text = name;
    for (QChar &character : text) {
        if (!character.isLetterOrNumber() && character != u'-')
            character = u' ';
    }
    constexpr qsizetype Longest = 60;
    return (text.simplified().left(Longest) + time.toString(QStringLiteral(" yyyy-MM-dd HH-mm-ss")))
        .trimmed();
}

} // namespace

PictureActions::PictureActions(PictureKind kind, std::shared_ptr<PictureAudience> audience,
                               const PictureSaver &save)
    : m_kind(kind), m_audience(std::move(audience)), m_save(save)
{
}

PictureActions::~PictureActions()
{
    for (const QList<QPointer<QWidget>> &windows :
         {std::exchange(m_enlarged, {}), std::exchange(m_details, {})}) {
        for (const QPointer<QWidget> &window : windows) {
            if (window)
                window->deleteLater();
        }
    }
}

void PictureActions::add(QWidget &control)
{
    if (m_controls.contains(&control) ||
        (!dynamic_cast<PictureNotice *>(&control) && !qobject_cast<QLabel *>(&control)))
        return;
    m_controls.removeAll(nullptr);
    m_controls.append(&control);
    if (isEditor(control)) { // has a menu of its own
        auto *editor = static_cast<PictureView *>(&control);
        editor->setPictureActions([self = QPointer<PictureActions>(this), editor] {
            return self ? self->actionsFor(*editor) : EditActions();
        });
    } else {
        control.installEventFilter(this);
    }
    if (m_source)
        letFocusIn(control);
}

void PictureActions::setSource(PictureSource *source)
{
    if (m_source) {
        ++(m_source->pictures() > 0 ? m_connections : m_attempts);
        m_shown += m_source->pictures();
        if (const auto figures = m_source->figures())
            m_earlier += *figures;
    }
    m_source = source;
    if (!source)
        return;
    for (const QPointer<QWidget> &control : std::as_const(m_controls)) {
        if (control)
            letFocusIn(*control);
    }
    connect(source, &PictureSource::pixmapReady, this, &PictureActions::pictureCame);
}

void PictureActions::letFocusIn(QWidget &control)
{
    if (control.focusPolicy() == Qt::NoFocus)
        control.setFocusPolicy(Qt::TabFocus);
}

void PictureActions::pictureCame()
{
    m_notice.clear(); // as the controls do
    if (m_kind == PictureKind::Still) {
        const QDateTime taken = m_source ? m_source->pictureTime() : QDateTime();
        m_time = taken.isValid() ? taken.toLocalTime() : QDateTime::currentDateTime();
        // With the date, as a picture may stay for days.
        const QString time = m_time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        m_caption = taken.isValid() ? tr("Picture taken %1").arg(time) : tr("Picture fetched %1").arg(time);
    }
    for (const QPointer<QWidget> &control : std::as_const(m_controls)) {
        if (!control)
            continue;
        letFocusIn(*control);
        auto *notice = dynamic_cast<PictureNotice *>(control.data());
        if (m_kind != PictureKind::Still)
            continue;
        if (notice)
            notice->setCaption(m_caption);
        else
            control->setAccessibleDescription(m_caption);
    }
}

bool PictureActions::takeFetchRequest()
{
    return std::exchange(m_isFetchRequested, false);
}

bool PictureActions::eventFilter(QObject *watched, QEvent *event)
{
    auto &control = *static_cast<QWidget *>(watched);
    const auto actions = [&] { return actionsFor(control); };
    if (claimKey(actions, *event))
        return true;
    if (event->type() == QEvent::KeyPress) {
        const auto &press = *static_cast<QKeyEvent *>(event);
        if (performByKey(actions(), press))
            return true;
        if (isMenuKey(press)) {
            showMenu(control, actions(), control.mapToGlobal(control.rect().center()));
            return true;
        }
    } else if (event->type() == QEvent::MouseButtonDblClick) {
        if (doubleClick(control, *static_cast<QMouseEvent *>(event)))
            return true;
    } else if (event->type() == QEvent::ContextMenu) {
        showMenu(control, actions(), static_cast<QContextMenuEvent *>(event)->globalPos());
        return true;
    } else if (event->type() == QEvent::ToolTip) {
        if (showCaption(control, static_cast<QHelpEvent *>(event)->globalPos()))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

EditActions PictureActions::actionsFor(QWidget &control)
{
    // A menu may stay open longer than the task or the control.
    const auto call = [this, &control](void (PictureActions::*action)(QWidget &)) {
        return [self = QPointer<PictureActions>(this), shown = QPointer<QWidget>(&control), action] {
            if (self && shown)
                (self->*action)(*shown);
        };
    };
    auto *steered = dynamic_cast<SteeredView *>(&control);
    const auto copyKeys =
        isEditor(control) ? QList<QKeySequence>() : keysFor(QKeySequence::Copy, Qt::CTRL | Qt::Key_C);
    EditActions actions;
    if (control.isWindow())
        actions.append({tr("Close"),
                        {Qt::Key_Escape, Qt::Key_F11},
                        call(&PictureActions::enlarge),
                        !steered || !steered->steering().isInGesture()});
    else
        actions.append({tr("Enlarge"), {Qt::Key_F11}, call(&PictureActions::enlarge)});
    actions.append({tr("Save picture…"), keysFor(QKeySequence::Save, Qt::CTRL | Qt::Key_S),
                    call(&PictureActions::save), hasPicture(control)});
    actions.append({tr("Copy picture"), copyKeys, call(&PictureActions::copy), hasPicture(control)});
    if (m_kind == PictureKind::Still)
        actions.append({tr("Fetch a picture now"), {Qt::Key_F5}, call(&PictureActions::requestFetch)});
    actions.append({tr("Stream details"), letterKeys(Qt::Key_I), call(&PictureActions::showDetails)});
    return actions;
}

bool PictureActions::doubleClick(QWidget &control, const QMouseEvent &event)
{
    auto *steered = dynamic_cast<SteeredView *>(&control);
    const bool isSteered = steered && steered->steering().isSteerable();
    if (event.button() != Qt::LeftButton || isSteered)
        return false;
    enlarge(control);
    return true;
}

/// A plain label has no place for it but its tool tip. It is no property, as the tool tip may name a control.
bool PictureActions::showCaption(QWidget &control, const QPoint &place)
{
    if (m_caption.isEmpty() || dynamic_cast<PictureNotice *>(&control))
        return false;
    QStringList lines{control.toolTip(), m_caption};
    lines.removeAll(QString());
    QToolTip::showText(place, lines.join(u'\n'), &control);
    return true;
}

/// Once more it closes the larger picture.
void PictureActions::enlarge(QWidget &control)
{
    if (control.isWindow()) {
        control.close();
        return;
    }
    if (raiseWindowOf(control, m_enlarged))
        return;
    PictureView *view = enlargedView(control);
    view->setWindowFlag(Qt::Window);
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->setAlignment(Qt::AlignCenter);
    view->setFocusPolicy(Qt::StrongFocus);
    const QString name = nameOf(control);
    view->setWindowTitle(name.isEmpty() ? tr("Picture") : name);
    view->setAccessibleName(view->windowTitle());
    describeToScreenReaders(view);
    view->setPixmap(pictureOf(control));
    view->setNotice(m_notice);
    view->setRemark(m_remark);
    view->setCaption(m_caption);
    add(*view);
    m_enlarged.removeAll(nullptr);
    m_enlarged.append(view);
    m_audience->controls.append(view);
    if (m_source)
        connect(m_source, &PictureSource::pixmapReady, view, &PictureView::setPixmap);
    const QRect room = control.screen()->availableGeometry();
    view->setGeometry(
        QRect(room.topLeft(), room.size() * 4 / 5).translated(QPoint(room.width(), room.height()) / 10));
    view->showMaximized();
    view->setFocus();
}

void PictureActions::save(QWidget &control)
{
    const QPixmap picture = pictureOf(control);
    const QDateTime time = m_time.isValid() ? m_time : QDateTime::currentDateTime();
    if (!picture.isNull() && m_save)
        m_save(picture, fileNameOf(nameOf(control), time), control);
}

void PictureActions::copy(QWidget &control)
{
    QGuiApplication::clipboard()->setPixmap(pictureOf(control));
}

void PictureActions::requestFetch(QWidget &)
{
    m_isFetchRequested = true;
}

void PictureActions::showDetails(QWidget &control)
{
    if (raiseWindowOf(control, m_details))
        return;
    auto *window =
        new StreamDetails([this, shown = QPointer<QWidget>(&control)] { return details(shown); }, &control);
    m_details.removeAll(nullptr);
    m_details.append(window);
    window->show();
}

PictureDetails PictureActions::details(const QPointer<QWidget> &control) const
{
    PictureDetails details;
    details.kind = m_kind;
    if (control) {
        details.name = nameOf(*control);
        details.size = pictureOf(*control).size();
    }
    details.state = m_notice.isEmpty() ? m_remark : m_notice;
    details.shown = m_shown;
    details.caption = m_caption;
    details.reconnections = m_connections;
    details.attempts = m_attempts;
    if (m_source) {
        details.figures = m_source->figures();
        if (details.figures)
            *details.figures += m_earlier;
        details.shown += m_source->pictures();
        if (m_source->pictures() == 0 && m_connections > 0)
            --details.reconnections;
    }
    return details;
}

} // namespace paravue
