#include "capi/Library.h"

#include "capi/StoreRecord.h"
#include "capi/WindowRecord.h"

#include <QApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <clocale>
#include <string>

namespace paravue::capi
{

namespace
{

constexpr uint32_t MajorMask = 0xffff0000;

template <typename Handle>
std::uintptr_t numberOf(const Handle *handle)
{
    return reinterpret_cast<std::uintptr_t>(handle);
}

/// Qt ends the process when it can reach no screen, so the plain case is found before.
bool mayHaveScreen()
{
#ifdef Q_OS_UNIX
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

/// An application of the library's own. Numbers that a host in C prints and reads keep their decimal point,
/// which the locale that Qt sets would change.
std::unique_ptr<QCoreApplication> newApplication(bool hasWindows)
{
    // Qt keeps both, also in the application that follows after another start.
    static char name[] = "paravue";
    static char *arguments[] = {name, nullptr};
    static int count = 1;

    const std::string numbers = std::setlocale(LC_NUMERIC, nullptr);
    std::unique_ptr<QCoreApplication> application;
    if (hasWindows) {
        application = std::make_unique<QApplication>(count, arguments);
        QGuiApplication::setQuitOnLastWindowClosed(false);
    } else {
        application = std::make_unique<QCoreApplication>(count, arguments);
    }
    std::setlocale(LC_NUMERIC, numbers.c_str());
    return application;
}

} // namespace

Library::Library() = default;
Library::~Library() = default;

Library &Library::instance()
{
    // Deliberate: never deleted. A process that ends without paravue_stop() would destroy the application in
    // an arbitrary order with Qt's own static objects, maybe in another thread.
    static Library *const library = new Library;
    return *library;
}

paravue_result Library::start(uint32_t apiVersion, uint32_t flags)
{
    if ((apiVersion & MajorMask) != (PARAVUE_API_VERSION & MajorMask) || apiVersion > PARAVUE_API_VERSION)
        return PARAVUE_WRONG_VERSION;
    if ((flags & ~PARAVUE_START_WINDOWS) != 0)
        return PARAVUE_WRONG_USE;
    void *nobody = nullptr;
    void *const self = QThread::currentThreadId();
    // Two threads that start at the same time do not both become the library's.
    if (!m_thread.compare_exchange_strong(nobody, self) && nobody != self)
        return PARAVUE_WRONG_THREAD;
    const paravue_result result =
        QCoreApplication::instance() ? adoptApplication(flags) : makeApplication(flags);
    if (result == PARAVUE_OK)
        ++m_starts;
    else if (m_starts == 0)
        m_thread = nullptr;
    return result;
}

paravue_result Library::adoptApplication(uint32_t flags)
{
    if (QCoreApplication::instance()->thread() != QThread::currentThread())
        return PARAVUE_WRONG_THREAD;
    return (flags & PARAVUE_START_WINDOWS) && !hasWindows() ? PARAVUE_NO_WINDOWS : PARAVUE_OK;
}

paravue_result Library::makeApplication(uint32_t flags)
{
    const bool hasWindows = flags & PARAVUE_START_WINDOWS;
    if (hasWindows && !mayHaveScreen())
        return PARAVUE_NO_WINDOWS;
    m_application = newApplication(hasWindows);
    return PARAVUE_OK;
}

paravue_result Library::stop()
{
    if (isInside())
        return fail(PARAVUE_BUSY);
    if (m_starts > 1) {
        --m_starts;
        return PARAVUE_OK;
    }
    m_windows.clear();
    m_stores.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_application.reset();
    m_problem.clear();
    m_starts = 0;
    m_thread = nullptr;
    return PARAVUE_OK;
}

paravue_result Library::checkThread() const
{
    const void *const thread = m_thread;
    if (!thread)
        return PARAVUE_NOT_STARTED;
    return thread == QThread::currentThreadId() ? PARAVUE_OK : PARAVUE_WRONG_THREAD;
}

bool Library::hasWindows() const
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

paravue_result Library::fail(paravue_result result, const QString &problem)
{
    m_problem = problem;
    return result;
}

paravue_result Library::fail(paravue_result result)
{
    return fail(result, QCoreApplication::translate("CInterface", paravue_result_text(result)));
}

paravue_store *Library::add(std::unique_ptr<StoreRecord> store)
{
    m_stores.emplace(++m_lastHandle, std::move(store));
    return reinterpret_cast<paravue_store *>(m_lastHandle);
}

paravue_window *Library::add(std::unique_ptr<WindowRecord> window)
{
    m_windows.emplace(++m_lastHandle, std::move(window));
    return reinterpret_cast<paravue_window *>(m_lastHandle);
}

StoreRecord *Library::find(const paravue_store *store) const
{
    const auto found = m_stores.find(numberOf(store));
    return found == m_stores.end() ? nullptr : found->second.get();
}

WindowRecord *Library::find(const paravue_window *window) const
{
    const auto found = m_windows.find(numberOf(window));
    return found == m_windows.end() ? nullptr : found->second.get();
}

bool Library::hasWindowOf(const StoreRecord &store) const
{
    return std::any_of(m_windows.begin(), m_windows.end(),
                       [&store](const auto &entry) { return &entry.second->store() == &store; });
}

void Library::remove(const paravue_store *store)
{
    m_stores.erase(numberOf(store));
}

void Library::remove(const paravue_window *window)
{
    m_windows.erase(numberOf(window));
}

Library::Scope::Scope(Kind kind)
    : m_depth(kind == Kind::Callback ? instance().m_callbacks : instance().m_waits)
{
    ++m_depth;
}

Library::Scope::~Scope()
{
    --m_depth;
}

} // namespace paravue::capi
