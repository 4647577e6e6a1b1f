#pragma once

#include "capi/paravue.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>

class QCoreApplication;

namespace paravue::capi
{

class StoreRecord;
class WindowRecord;

/// What stands behind the C interface as long as it is started: the application, the stores and windows, and
/// the problem of the last failed call.
///
/// A handle is a number that is never given twice, in the form of a pointer: one that was destroyed is
/// recognised, which the address of an object would not allow.
class Library
{
public:
    static Library &instance();

    paravue_result start(uint32_t apiVersion, uint32_t flags);
    paravue_result stop();

    /// PARAVUE_OK in the thread of the library.
    paravue_result checkThread() const;
    bool hasWindows() const;

    const QString &problem() const { return m_problem; }
    paravue_result fail(paravue_result result, const QString &problem);
    /// With the general text of \a result.
    paravue_result fail(paravue_result result);

    paravue_store *add(std::unique_ptr<StoreRecord> store);
    paravue_window *add(std::unique_ptr<WindowRecord> window);
    /// Null when there is no such store or window.
    StoreRecord *find(const paravue_store *store) const;
    WindowRecord *find(const paravue_window *window) const;
    bool hasWindowOf(const StoreRecord &store) const;
    void remove(const paravue_store *store);
    void remove(const paravue_window *window);

    /// True within a callback, or within a call that waits.
    bool isInside() const { return m_callbacks > 0 || m_waits > 0; }
    bool isInCallback() const { return m_callbacks > 0; }

    /// Lives as long as a callback of the host, or a call that waits, runs.
    class Scope
    {
    public:
        enum class Kind { Callback, Wait };
        explicit Scope(Kind kind);
        ~Scope();
        Q_DISABLE_COPY_MOVE(Scope)

    private:
        int &m_depth;
    };

private:
    Library();
    ~Library();

    paravue_result adoptApplication(uint32_t flags);
    paravue_result makeApplication(uint32_t flags);

    std::atomic<void *> m_thread = nullptr;
    int m_starts = 0;
    int m_callbacks = 0;
    int m_waits = 0;
    std::uintptr_t m_lastHandle = 0;
    std::unique_ptr<QCoreApplication> m_application; ///< null while the host's is used
    std::unordered_map<std::uintptr_t, std::unique_ptr<StoreRecord>> m_stores;
    std::unordered_map<std::uintptr_t, std::unique_ptr<WindowRecord>> m_windows; ///< end before the stores
    QString m_problem;
};

} // namespace paravue::capi
