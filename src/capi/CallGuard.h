#pragma once

#include "capi/Library.h"

#include <QString>

#include <new>

namespace paravue::capi
{

/// Runs \a body and lets no exception out, which the caller's language may not know.
template <typename Body>
paravue_result withoutExceptions(Body body) noexcept
{
    try {
        try {
            return body();
        } catch (const std::bad_alloc &) {
            return PARAVUE_NO_MEMORY;
        } catch (const QString &message) {
            return Library::instance().fail(PARAVUE_INTERNAL, message);
        } catch (...) {
            return Library::instance().fail(PARAVUE_INTERNAL);
        }
    } catch (...) { // keeping the problem needs memory too
        return PARAVUE_NO_MEMORY;
    }
}

/// The body of a function of the C interface: runs \a body with the library, in its thread only.
template <typename Body>
paravue_result guarded(Body body) noexcept
{
    return withoutExceptions([&body]() -> paravue_result {
        Library &library = Library::instance();
        const paravue_result thread = library.checkThread();
        return thread == PARAVUE_OK ? body(library) : thread;
    });
}

/// The same with the store or window that \a handle stands for.
template <typename Handle, typename Body>
paravue_result guarded(const Handle *handle, Body body) noexcept
{
    return guarded([handle, &body](Library &library) -> paravue_result {
        auto *record = library.find(handle);
        return record ? body(library, *record) : library.fail(PARAVUE_BAD_HANDLE);
    });
}

} // namespace paravue::capi
