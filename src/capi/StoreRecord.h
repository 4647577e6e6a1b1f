#pragma once

#include "capi/Library.h"
#include "device/OrbNetSetup.h"
#include "store/LinkStatus.h"

namespace paravue::capi
{

/// A store of the C interface, and who hears of it.
class StoreRecord
{
public:
    StoreRecord(const QString &address, uint32_t flags);

    OrbNetSetup &store() { return m_store; }
    void setObserver(const paravue_observer &observer) { m_observer = observer; }

    bool isRunning() const { return m_store.linkStatus().state == LinkStatus::State::Running; }
    /// To be called before an exchange is started: gives up one that has failed.
    void prepare();
    /// How the last exchange has ended.
    paravue_result outcome(Library &library) const;
    paravue_result wait(Library &library);
    void reset();

private:
    void connectObserver();

    OrbNetSetup m_store;
    paravue_observer m_observer = {};
    QString m_message; ///< the last one since prepare()
    bool m_isDone = false;
    bool m_isGivenUp = false;
};

/// What \a cause is called in the C interface.
paravue_result resultOf(LinkStatus::Cause cause);

} // namespace paravue::capi
