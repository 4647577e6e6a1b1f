#include "capi/WindowRecord.h"

#include "capi/StoreRecord.h"
#include "device/RememberedWindows.h"
#include "entry/CloseSession.h"
#include "entry/RunParavueSetup.h"
#include "entry/SetupPage.h"
#include "snapshots/SnapshotStore.h"

#include <QEventLoop>
#include <QWindow>

namespace paravue::capi
{

WindowRecord::WindowRecord(StoreRecord &store, const paravue_window_options &options)
    : m_store(store), m_options(options)
{
}

WindowRecord::~WindowRecord()
{
    endPage();
}

void WindowRecord::endPage()
{
    if (!m_page)
        return;
    m_page->disconnect(this);
    // Taken out first, or the native window of the page would end with the object that stands for its parent.
    m_page->hide();
    m_page->windowHandle()->setParent(nullptr);
    m_page.reset();
}

WindowOptions WindowRecord::windowOptions() const
{
    const auto has = [this](uint32_t feature) { return (m_options.features & feature) != 0; };
    WindowOptions options;
    options.offersRefresh = has(PARAVUE_WINDOW_OFFERS_REFRESH);
    options.putsAdjustmentsBack = has(PARAVUE_WINDOW_PUTS_ADJUSTMENTS_BACK);
    if (has(PARAVUE_WINDOW_REMEMBERS_PLACE))
        options.memory = {rememberedWindow, rememberWindow};
    options.hasStatusLine = !has(PARAVUE_WINDOW_HAS_NO_STATUS_LINE);
    options.tracksChanges = has(PARAVUE_WINDOW_TRACKS_CHANGES);
    options.asksBeforeClosing = has(PARAVUE_WINDOW_ASKS_BEFORE_CLOSING);
    options.reviewBeforeSending = has(PARAVUE_WINDOW_REVIEWS_BEFORE_SENDING);
    options.comparesBeforeSending = has(PARAVUE_WINDOW_COMPARES_BEFORE_SENDING);
    options.confirmsSaves = has(PARAVUE_WINDOW_CONFIRMS_SAVES);
    options.confirmsDangerousFunctions = has(PARAVUE_WINDOW_CONFIRMS_DANGEROUS_FUNCTIONS);
    if (has(PARAVUE_WINDOW_KEEPS_SNAPSHOTS))
        options.snapshots.folder = snapshotsFolder();
    return options;
}

bool WindowRecord::embed()
{
    m_parent.reset(QWindow::fromWinId(WId(m_options.parent)));
    if (!m_parent)
        return false;
    m_page = std::make_unique<SetupPage>(&m_store.store());
    m_page->setWindowOptions(windowOptions());
    m_page->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    m_page->winId(); // makes the native window
    m_page->windowHandle()->setParent(m_parent.get());
    setGeometry({m_options.x, m_options.y, m_options.width, m_options.height});
    connect(m_page.get(), &SetupPage::finished, this, &WindowRecord::finish);
    return true;
}

void WindowRecord::begin()
{
    m_hasBegun = true;
    m_store.prepare();
    connect(&m_store.store(), &OrbSetup::loadDone, this, [this] { m_isLoaded = true; });
}

paravue_result WindowRecord::run(Library &library, bool &isAccepted)
{
    const Library::Scope scope(Library::Scope::Kind::Wait);
    begin();
    if (hasParent())
        runEmbedded();
    else
        finish(runAlone());
    isAccepted = m_isAccepted;
    if (m_isLoaded)
        return PARAVUE_OK;
    const paravue_result outcome = m_store.outcome(library);
    return outcome == PARAVUE_OK ? library.fail(PARAVUE_CANCELLED) : outcome;
}

bool WindowRecord::runAlone()
{
    return RunParavueSetup(&m_store.store(), {nullptr, windowOptions()}).isAccepted;
}

void WindowRecord::runEmbedded()
{
    QEventLoop loop;
    connect(this, &WindowRecord::over, &loop, &QEventLoop::quit);
    m_page->show();
    if (!m_isOver)
        loop.exec();
    if (m_isOver)
        return;
    endPage(); // the application has quit
    finish(false);
}

void WindowRecord::show()
{
    begin();
    m_page->show();
}

void WindowRecord::finish(bool isAccepted)
{
    m_isOver = true;
    m_isAccepted = isAccepted;
    if (m_page)
        m_page->hide();
    if (m_options.finished) {
        const Library::Scope scope(Library::Scope::Kind::Callback);
        m_options.finished(m_options.user, isAccepted ? 1 : 0);
    }
    Q_EMIT over();
}

void WindowRecord::setGeometry(const QRect &pixels)
{
    if (!m_page)
        return;
    const qreal scale = m_page->windowHandle()->devicePixelRatio();
    m_page->setGeometry(
        {(QPointF(pixels.topLeft()) / scale).toPoint(), (QSizeF(pixels.size()) / scale).toSize()});
}

void WindowRecord::close()
{
    if (!m_hasBegun || m_isOver)
        return;
    if (closeSession(m_store.store(), m_page.get()) || !m_page)
        return;
    endPage(); // which would begin its session in the event loop
    finish(false);
}

} // namespace paravue::capi
