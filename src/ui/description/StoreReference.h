#pragma once

#include "store/OrbSetup.h"

#include <QPointer>

#include <memory>

namespace paravue
{

/// The store of a window. The host may delete it in an event loop within the window's own one, such as that
/// of a dialog. What the window then still runs finds an empty local store in its place.
class StoreReference
{
public:
    explicit StoreReference(OrbSetup &store) : m_store(&store) {}

    OrbSetup &operator*() const
    {
        if (m_store)
            return *m_store;
        if (!m_empty)
            m_empty = std::make_unique<OrbSetup>();
        return *m_empty;
    }
    OrbSetup *operator->() const { return &**this; }

private:
    QPointer<OrbSetup> m_store;
    mutable std::unique_ptr<OrbSetup> m_empty;
};

} // namespace paravue
