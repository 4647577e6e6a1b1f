#include "ui/CWinMain.h"

#include "controls/DialogLoop.h"
#include "controls/OrbDlgQuestion.h"
#include "controls/WindowLook.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"
#include "ui/accessibility/ControlAccessibility.h"
#include "ui/base/PageTabs.h"
#include "ui/base/ToolButtonKeys.h"
#include "ui/base/WindowStyle.h"
#include "ui/commands/LiveAdjustments.h"
#include "ui/description/DialogTags.h"
#include "ui/editing/EditingSession.h"
#include "ui/tasks/PictureSources.h"
#include "ui/types/ControlTypes.h"
#include "ui/window/ErrorDisplay.h"
#include "ui/window/FileAccessPrompt.h"
#include "ui/window/FrameBinding.h"
#include "ui/window/FunctionQuestion.h"
#include "ui/window/KeyboardFocus.h"
#include "ui/window/LoadingView.h"
#include "ui/window/StatusLine.h"
#include "ui/window/WindowDrag.h"
#include "ui/window/WindowFrame.h"
#include "ui/window/WindowHeader.h"
#include "ui/window/WindowParts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QLoggingCategory>
#include <QPainter>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSessionManager>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

#include <utility>

using namespace paravue;

namespace
{

const QString descriptionFile = QStringLiteral("interface");
const QString progressFile = QStringLiteral("general");
const QString saveFunction = QStringLiteral("save_settings");
const QString progressAddress = QStringLiteral("general/progress_dialog/progress");
constexpr int TaskTick = 500; // milliseconds
Q_LOGGING_CATEGORY(windowLog, "paravue.window", QtWarningMsg)

/// The host in a store's address. Login and password are not shown, and the port may be in a form that only
/// the connection parses.
QString recorderName(const QString &address)
{
    return address.mid(address.lastIndexOf(u'@') + 1).section(u':', 0, 0);
}

/// Enter presses the push button that has the focus; in any other place, such as the tool buttons of the
/// window itself, it is left to the default button.
bool pressFocusedButton(const QKeyEvent &event)
{
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return false;
    auto *button = qobject_cast<QPushButton *>(QApplication::focusWidget());
    if (button)
        button->click();
    return button != nullptr;
}

} // namespace

class CWinMain::Busy
{
public:
    explicit Busy(CWinMain &window) : m_window(window) { ++m_window.m_busy; }
    ~Busy()
    {
        if (--m_window.m_busy == 0 && m_window.m_isDeletedWhenIdle)
            m_window.deleteLater();
    }
    Q_DISABLE_COPY_MOVE(Busy)

private:
    CWinMain &m_window;
};

CWinMain::CWinMain(OrbSetup *setup, QWidget *parent) : CWinMain(setup, parent, Placement::Window) {}

CWinMain::CWinMain(OrbSetup *setup, QWidget *parent, Placement placement, const WindowOptions &options)
    : QDialog(parent, Qt::Tool | Qt::FramelessWindowHint), m_setup(*setup), m_options(options)
{
    if (placement == Placement::Page)
        setWindowFlags(Qt::Widget); // given to the constructor, it would mean a dialog
    registerPictures();
    setWindowTitle(tr("Paravue Setup"));
    if (isWindow())
        setWindowModality(Qt::ApplicationModal);
    m_errors = std::make_unique<ErrorDisplay>(
        *this, [this](const QString &message) { return m_setup->explanation(message); },
        [this](const QString &message) {
            if (!isBuilt())
                m_frame->loadingView().showFailure(message, m_setup->explanation(message));
        },
        [this](const auto &wait) {
            const Busy busy(*this);
            m_parts->retired.runLoop(wait);
        });
    m_parts = std::make_unique<WindowParts>(
        *setup, *this, adapterOfType,
        WindowServices{[this](const QString &message) { Q_EMIT pseudothrow(message); },
                       [this](const QString &tag) { showDialog(tag); },
                       [this](const auto &wait) { letUserAct(wait); },
                       [this](const QString &path, FileUse use) {
                           bool allowed = false;
                           letUserAct([&] { allowed = askForFileAccess(this, path, use); });
                           return allowed;
                       },
                       [this](const QString &name, const auto &call) { callFunction(name, call); },
                       [this](QWidget *control) { noteChanged(control); }});
    if (!setup->property("offline").toBool())
        m_parts->tasks.setSourceFactory(pictureSources(*this));
    m_frame = std::make_unique<WindowFrame>(*this, recorderName(setup->address()));
    m_described = std::make_unique<FrameBinding>(*this, *m_frame, *m_parts, options.memory);
    wire();
    m_parts->bindings.setLanguageObserver([this] {
        m_described->showTexts();
        m_parts->dialogs.showTitles();
        if (m_editing)
            m_editing->updateTexts();
    });
    m_status = new StatusLine(*setup, this);
    if (options.hasStatusLine)
        m_frame->addStatusLine(m_status);
    else
        m_status->hide();
    connect(m_status, &StatusLine::retryRequested, this, [this] { operate([this] { tryAgain(); }); });
    connect(m_status, &StatusLine::refreshRequested, this, [this] { operate([this] { refresh(); }); });
    if (options.offersRefresh) {
        m_status->offerRefresh();
        connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, m_status,
                &StatusLine::refreshRequested);
    }
    if (options.putsAdjustmentsBack) {
        m_adjustments = new LiveAdjustments(*setup, this);
        connect(this, &QDialog::rejected, m_adjustments, &LiveAdjustments::putBack);
    }
    if (options.tracksChanges)
        startEditing();
    // The keys of a page are for what has the focus in it, not for the whole window of the host.
    for (QShortcut *shortcut : findChildren<QShortcut *>(Qt::FindDirectChildrenOnly))
        shortcut->setContext(isWindow() ? Qt::WindowShortcut : Qt::WidgetWithChildrenShortcut);
    if (isWindow())
        new WindowDrag(this, m_frame->header()->label());
    describeToScreenReaders(this);
    WindowLook::apply(*this);
    show();
    if (isWindow())
        takeKeyboard(*this);
    qCInfo(windowLog) << "opened for" << recorderName(setup->address());
    operate([this] { m_setup->load(); });
    if (!isBuilt())
        m_frame->loadingView();
}

CWinMain::~CWinMain() = default;

void CWinMain::wire()
{
    connect(this, &QDialog::finished, this, [](int result) {
        qCInfo(windowLog) << (result == Accepted ? "closed, accepted" : "closed, rejected");
    });
    // The host of a page has a window of its own to keep open.
    if (isWindow())
        connect(qApp, &QGuiApplication::commitDataRequest, this, &CWinMain::commitData);
    connect(m_frame->okButton(), &QPushButton::clicked, this, &CWinMain::saveSettings);
    connect(m_frame->cancelButton(), &QPushButton::clicked, this, &CWinMain::reject);
    connect(m_frame->header(), &WindowHeader::closeRequested, this, &CWinMain::reject);
    m_taskTimer = new QTimer(this);
    m_taskTimer->setInterval(TaskTick);
    connect(m_taskTimer, &QTimer::timeout, this, &CWinMain::timeout);
    connect(&*m_setup, &OrbSetup::pseudothrow, this, &CWinMain::pseudothrow);
    connect(this, &CWinMain::pseudothrow, this, &CWinMain::slot_onpseudothrow);
    // Without a question: there is nothing left to send to.
    connect(&*m_setup, &QObject::destroyed, this, [this] { QDialog::reject(); });
    connect(&*m_setup, &OrbSetup::loadDone, this, &CWinMain::onLoadDone);
    connect(&ExchangeQueue::of(*m_setup), &ExchangeQueue::answered, this,
            [this](const QString &name, bool isDone) {
                if (isDone && name == saveFunction)
                    m_parts->bindings.setEdited(false);
            });
    connect(&*m_setup, &OrbSetup::progress, this, qOverload<int>(&CWinMain::onSetupProgress));
}

void CWinMain::startEditing()
{
    m_editing = std::make_unique<EditingSession>(
        *this, *m_setup, m_parts->context, m_parts->bindings, adapterOfType, m_options,
        EditingSession::Services{
            [this](const auto &work) { operate(work); }, [this](const auto &wait) { letUserAct(wait); },
            [this](QDialog &dialog) { runDialog(dialog); }, [this] { return isBuilt(); },
            [this](const QString &tag) { showDialog(tag); }, [this](OrbSetup &store) { showStore(store); },
            [this] { saveSettings(); }, [this](const QString &message) { Q_EMIT pseudothrow(message); }});
    for (QToolButton *tool : m_editing->tools())
        m_frame->header()->addTool(tool);
}

void CWinMain::callFunction(const QString &name, const std::function<void()> &call)
{
    m_dangers[name] = dangerOf(m_parts->actions.action(), m_setup->functionUse(name, QString()).danger);
    callGuarded(name, call);
}

void CWinMain::callGuarded(const QString &name, const std::function<void()> &call)
{
    bool goesOn = true;
    operate([&] {
        if (name == saveFunction && m_editing)
            goesOn = m_editing->runSave(call);
        else if ((goesOn = mayCall(name)))
            call();
    });
    if (!goesOn)
        m_parts->actions.abandon();
}

bool CWinMain::mayCall(const QString &name)
{
    const OrbSetup::FunctionDanger danger = m_dangers.value(name);
    if (!m_options.confirmsDangerousFunctions || danger == OrbSetup::FunctionDanger::None)
        return true;
    // A dialog of the description has asked already.
    const QWidget *origin = m_parts->actions.origin();
    bool isAllowed = origin && origin->window() != window();
    if (!isAllowed)
        letUserAct(
            [&] { isAllowed = askForFunction(this, m_frame->header()->label()->text(), name, danger); });
    if (isAllowed && danger == OrbSetup::FunctionDanger::Restart)
        m_status->expectRestartAfter(name);
    return isAllowed;
}

void CWinMain::showStore(OrbSetup &store)
{
    CWinMain window(&store, this, Placement::Window);
    letUserAct([&window] { window.exec(); });
    window.endSession();
}

bool CWinMain::hasChangesToAskAbout() const
{
    return m_editing && m_editing->hasChangesToAskAbout();
}

bool CWinMain::mayClose()
{
    return !m_editing || m_editing->mayClose();
}

void CWinMain::accept()
{
    const Busy busy(*this);
    if (!m_editing || m_editing->mayAccept())
        QDialog::accept();
}

void CWinMain::reject()
{
    const Busy busy(*this);
    if (!mayClose())
        return;
    if (m_editing && m_editing->isSaveOutdated())
        m_setup->abandonSave();
    QDialog::reject();
}

/// Nothing can be sent before the session ends, so changes keep it from ending, and the user is asked.
void CWinMain::commitData(QSessionManager &session)
{
    if (!hasChangesToAskAbout() || !isVisible())
        return;
    session.cancel();
    QMetaObject::invokeMethod(this, &CWinMain::reject, Qt::QueuedConnection);
}

int CWinMain::exec()
{
    if (m_isRunning)
        return result();
    const QScopedValueRollback running(m_isRunning, true);
    setResult(Rejected);
    DialogLoop::run(*this);
    if (m_adjustments)
        m_adjustments->finish();
    return result();
}

void CWinMain::endSession()
{
    hide(); // with the dialogs in which the user acts
    disconnect(&*m_setup, nullptr, this, nullptr);
    m_taskTimer->stop();
    m_parts->tasks.clear();
    m_parts->files.closeDialog();
    m_parts->dialogs.closeAll();
}

void CWinMain::deleteWhenIdle()
{
    if (m_busy == 0) {
        deleteLater();
        return;
    }
    m_isDeletedWhenIdle = true;
    setParent(nullptr);
}

void CWinMain::setTaskClock(const std::function<quint32()> &clock)
{
    m_parts->tasks.setClock(clock);
}

void CWinMain::setPathQuestion(const PathQuestion &ask)
{
    m_parts->paths.setQuestion(ask);
}

void CWinMain::operate(const std::function<void()> &work)
{
    const Busy busy(*this);
    if (!m_errors->isOperating())
        m_parts->context.startOver();
    m_errors->operate(work);
}

void CWinMain::letUserAct(const std::function<void()> &wait)
{
    // No questions after the window was closed.
    if (!isVisible())
        return;
    const UnattendedScope unattended(m_parts->context, false);
    const auto run = [&] { m_parts->retired.runLoop(wait); };
    m_errors->suspend(
        [&] { m_parts->actions.suspend([&] { m_editing ? m_editing->suspendGesture(run) : run(); }); });
}

void CWinMain::runDialog(QDialog &dialog)
{
    const ToolButtonKeys keys(dialog);
    letUserAct([&dialog] { DialogLoop::run(dialog); });
}

void CWinMain::onSetupProgress(int percent)
{
    operate([&] {
        if (!isBuilt() && percent < 100)
            m_frame->loadingView().setProgress(percent, m_setup->activity());
        // A purely local store may have no such file.
        if (m_setup->fileExists(progressFile))
            m_parts->bindings.write({{progressAddress, QString::number(percent)}});
        onSetupProgress();
    });
}

void CWinMain::onSetupProgress()
{
    operate([this] {
        if (!m_setup->fileExists(progressFile))
            return;
        const int percent = m_setup->value(progressAddress).toInt();
        const bool isDone = percent >= 100;
        if (isDone || percent < m_progress)
            m_progressShown = false;
        m_progress = percent;
        if (isDone)
            m_parts->dialogs.close(dialogtags::Progress);
        else if (!m_progressShown && !(m_editing && m_editing->isSaveShown()))
            m_progressShown = m_parts->dialogs.show(dialogtags::Progress);
    });
}

void CWinMain::onCtrlChanged(int)
{
    onCtrlChanged();
}

void CWinMain::onCtrlChanged(const QDateTime &)
{
    onCtrlChanged();
}

void CWinMain::onCtrlChanged(const QString &)
{
    onCtrlChanged();
}

void CWinMain::onCtrlChanged()
{
    // A description may call it during a change.
    auto *control = qobject_cast<QWidget *>(sender());
    noteChanged(control ? control : m_changedControl.data());
}

void CWinMain::noteChanged(QWidget *control)
{
    const QScopedValueRollback changed(m_changedControl, QPointer(control));
    operate([&] { m_parts->bindings.changed(control); });
}

void CWinMain::timeout()
{
    if (isVisible())
        operate([this] { m_parts->tasks.tick(); });
}

void CWinMain::onLoadDone()
{
    operate([this] {
        if (m_adjustments && (m_isRefreshing || !isBuilt()))
            m_adjustments->noteStored();
        noteLoaded();
        readDescription();
        if (m_editing)
            m_editing->offerEdits();
    });
}

void CWinMain::showDialog(const QString &tag)
{
    qCInfo(windowLog) << "dialog" << tag;
    operate([&] {
        // Asked first, as another description may come while the dialog is open.
        const bool takesPasswords = m_parts->users.takesPasswords(tag);
        m_parts->dialogs.run(tag, [this](QDialog &dialog) {
            if (m_editing)
                m_editing->startDialog(dialog);
            letUserAct([&] { DialogLoop::run(dialog); });
        });
        if (takesPasswords)
            m_parts->users.clearPasswords();
    });
}

void CWinMain::accessListSlot(const QString &tag)
{
    operate([&] { m_parts->users.run(tag); });
}

void CWinMain::softListSlot(const QString &tag)
{
    operate([&] { m_parts->packages.run(tag); });
}

void CWinMain::fileDialog(const QString &param)
{
    operate([&] { m_parts->files.chooseFile(param); });
}

void CWinMain::settingsSlot(const QString &param)
{
    operate([&] { m_parts->files.transferSettings(param); });
}

void CWinMain::saveFileAs(const QString &param)
{
    operate([&] { m_parts->files.copyConfigurationFile(param); });
}

void CWinMain::setValue(const QString &assignment)
{
    // Without an action the host program calls.
    const auto origin = m_parts->actions.isRunning() ? ValueOrigin::Description : ValueOrigin::Person;
    operate([&] { m_parts->bindings.write({Assignment::fromText(assignment)}, origin); });
}

void CWinMain::saveSettings()
{
    operate([this] {
        m_parts->actions.runCalls(
            m_parts->description.document().root().firstChildElement(QStringLiteral("buttonOK")));
    });
}

void CWinMain::tryAgain()
{
    m_parts->tasks.retryPictures();
    if (isBuilt()) {
        ExchangeQueue &queue = ExchangeQueue::of(*m_setup);
        if (queue.canRepeat())
            callGuarded(queue.failedName(), [this] { ExchangeQueue::of(*m_setup).repeat(); });
        return;
    }
    m_setup->resetLink();
    m_frame->loadingView().setProgress(0, QString());
    m_setup->load();
}

void CWinMain::refresh()
{
    if (!m_status->canRefresh())
        return;
    const bool losesChanges = m_editing ? m_editing->isLostByFetching() : m_parts->bindings.isEdited();
    bool isAllowed = !losesChanges;
    if (!isAllowed)
        letUserAct([&] {
            isAllowed =
                OrbDlgQuestion::Do(this, QMessageBox::Warning, tr("Paravue Setup"),
                                   tr("There are changes that were not sent to the recorder. Refresh "
                                      "all the same, and lose them?"),
                                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
        });
    // An exchange may have begun meanwhile.
    if (!isAllowed || !m_status->canRefresh())
        return;
    ExchangeQueue::of(*m_setup).forgetFailed();
    m_setup->resetLink();
    m_isRefreshing = true;
    m_setup->load();
}

/// After the end of a fetch, which may also have been that of a report.
void CWinMain::noteLoaded()
{
    if (!std::exchange(m_isRefreshing, false))
        return;
    m_parts->bindings.setEdited(false);
    m_status->noteRefreshed();
}

void CWinMain::slot_onpseudothrow(const QString &s)
{
    if (m_setup->linkStatus().state != LinkStatus::State::Running)
        m_isRefreshing = false;
    // After the end of the window only what it has done itself concerns the user.
    if (!isVisible() && !m_errors->isOperating())
        return;
    m_parts->dialogs.close(dialogtags::Progress);
    m_progressShown = false;
    // A recorder that has refused something may close the connection any time later.
    if (m_setup->isReportingConsequence())
        return m_errors->logConsequence(s);
    if (m_editing && m_editing->isSaveShown()) {
        m_editing->noteMessage(s);
        return m_errors->logConsequence(s);
    }
    m_errors->show(s, m_parts->context.isUnattended() ? ErrorDisplay::Repeats::Logged
                                                      : ErrorDisplay::Repeats::Allowed);
}

void CWinMain::readDescription()
{
    const QString path = m_setup->filePath(descriptionFile);
    if (path.isEmpty())
        return; // the store has reported it
    QByteArray description;
    if (const QString fault = InterfaceDocument::read(path, description); !fault.isEmpty()) {
        Q_EMIT pseudothrow(fault);
        return;
    }
    // The load may have been one of other files, a report for example.
    if (path != m_builtFrom || description != m_builtText) {
        build(description, path);
        return;
    }
    m_parts->bindings.reload();
    m_described->showTexts();
}

void CWinMain::build(const QByteArray &description, const QString &path)
{
    InterfaceDocument document;
    if (const QString fault = document.load(description, path); !fault.isEmpty()) {
        Q_EMIT pseudothrow(fault);
        return;
    }
    m_parts->dialogs.closeAll();
    m_parts->tasks.clear();
    m_parts->context.startDescription();
    m_errors->startOver();
    m_parts->description.replace(document);

    const bool isFirst = !isBuilt();
    const int shownPage = isFirst ? -1 : m_frame->tabs()->currentIndex();
    m_builtFrom = path;
    m_builtText = description;
    setUpdatesEnabled(false);
    m_described->build(shownPage);
    m_parts->bindings.loadNew(m_parts->description.table().numbersSince(0));
    if (m_editing)
        m_editing->startDescription();
    m_frame->chainTabOrder();
    m_parts->tasks.add(document.root().firstChildElement(QStringLiteral("window")));
    m_taskTimer->start();
    // Shown only after the values are set: on a visible page each of them would trigger a new layout.
    m_frame->showPages();
    m_status->setBuilt(true);
    setUpdatesEnabled(true);
    qCInfo(windowLog) << "description shown," << m_frame->tabs()->count() << "pages and"
                      << m_parts->description.table().numbersSince(0).size() << "controls";
    if (isFirst)
        m_frame->tabs()->setFocus();
}

bool CWinMain::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Polish && watched->isWidgetType()) // a dialog of the description
        WindowLook::apply(static_cast<QWidget &>(*watched));
    if (event->type() == QEvent::KeyPress && pressFocusedButton(*static_cast<QKeyEvent *>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

/// A widget keeps the locale that was the default when it was made.
void CWinMain::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange && locale() != QLocale())
        setLocale(QLocale());
    QDialog::changeEvent(event);
}

void CWinMain::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool endsWindows = key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (endsWindows && event->isAutoRepeat())
        return; // the press has closed something over this window, or ended a gesture
    if (!pressFocusedButton(*event))
        QDialog::keyPressEvent(event);
}

void CWinMain::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    QPainter painter(this);
    painter.setPen(borderColor(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CWinMain::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    m_frame->placeGrip();
}

void CWinMain::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (event->spontaneous())
        return;
    m_described->remember();
    // An open dialog would otherwise outlive the window that it has closed.
    closeDialogs();
}

void CWinMain::closeDialogs()
{
    m_parts->files.closeDialog();
    m_parts->dialogs.closeAll();
    // Messages, questions and the login.
    const QList<QDialog *> open = findChildren<QDialog *>();
    for (const QPointer<QDialog> &dialog : QList<QPointer<QDialog>>(open.begin(), open.end())) {
        if (dialog && dialog->isVisible())
            dialog->reject();
    }
}
