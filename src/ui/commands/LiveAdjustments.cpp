#include "ui/commands/LiveAdjustments.h"

#include "store/ExchangeQueue.h"

#include <QEventLoop>
#include <QTimer>

namespace paravue
{
namespace
{

const QString adjustFunction = QStringLiteral("adjust_bcsh");
const QString savingFunction = QStringLiteral("save_settings");
constexpr int SendingLimit = 5000; // milliseconds

} // namespace

LiveAdjustments::LiveAdjustments(OrbSetup &store, QObject *parent) : QObject(parent), m_store(store)
{
    const ExchangeQueue &queue = ExchangeQueue::of(store);
    connect(&queue, &ExchangeQueue::called, this, [this](const QString &name) {
        m_isSaving |= name == savingFunction;
        if (name != adjustFunction)
            return;
        m_isAdjusted = true;
        if (!m_keepsRunning)
            m_keepsRunning.emplace();
    });
    connect(&queue, &ExchangeQueue::answered, this, [this](const QString &name, bool isDone) {
        if (name != savingFunction)
            return;
        m_isSaving = false;
        if (isDone)
            noteStored();
    });
    const auto noteEnd = [this] {
        if (m_awaitedEnds > 0)
            --m_awaitedEnds;
    };
    connect(&store, &OrbSetup::loadDone, this, noteEnd);
    connect(&store, &OrbSetup::storeDone, this, noteEnd);
    connect(&store, &OrbSetup::pseudothrow, this, noteEnd);
}

void LiveAdjustments::noteStored()
{
    m_stored.clear();
    for (const QString &address : m_store->functionUse(adjustFunction, {}).addresses) {
        const QString path = OrbSetup::path(address);
        if (m_store->fileExists(path.section(u'/', 0, 0)))
            m_stored.insert(path, m_store->value(path));
    }
    m_isAdjusted = false;
    m_keepsRunning.reset();
}

bool LiveAdjustments::isSaving() const
{
    return m_isSaving || ExchangeQueue::of(*m_store).waiting().contains(savingFunction);
}

void LiveAdjustments::putBack()
{
    if (!m_isAdjusted || isSaving())
        return;
    m_isAdjusted = false;
    // Also when none differs here any more: what was undone in the window is not undone at the recorder.
    for (auto value = m_stored.cbegin(); value != m_stored.cend(); ++value) {
        if (m_store->value(value.key()) != value.value())
            m_store->setValue(value.key() + u'/' + value.value());
    }
    // Behind a fault nothing would be sent.
    if (m_store->linkStatus().state == LinkStatus::State::Failed)
        m_store->resetLink();
    m_awaitedEnds = m_store->linkStatus().state == LinkStatus::State::Running ? 2 : 1;
    m_store->function(adjustFunction, {});
}

void LiveAdjustments::finish()
{
    QEventLoop loop;
    const auto quitWhenDone = [&] {
        if (m_awaitedEnds == 0)
            loop.quit();
    };
    for (const auto end : {&OrbSetup::loadDone, &OrbSetup::storeDone})
        connect(&*m_store, end, &loop, quitWhenDone);
    connect(&*m_store, &OrbSetup::pseudothrow, &loop, quitWhenDone);
    connect(&*m_store, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(SendingLimit, &loop, &QEventLoop::quit);
    if (m_awaitedEnds > 0)
        loop.exec();
    m_keepsRunning.reset();
}

} // namespace paravue
