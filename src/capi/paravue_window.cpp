#include "capi/CallGuard.h"
#include "capi/StoreRecord.h"
#include "capi/Structures.h"
#include "capi/WindowRecord.h"
#include "capi/paravue.h"

#include <QCoreApplication>

#include <memory>

using namespace paravue::capi;

namespace
{

constexpr uint32_t KnownFeatures = 2 * PARAVUE_WINDOW_KEEPS_SNAPSHOTS - 1;

bool isUsable(const paravue_window_options &options)
{
    return (options.features & ~KnownFeatures) == 0 &&
           (options.parent == 0 || (options.width > 0 && options.height > 0));
}

} // namespace

paravue_result paravue_window_create(paravue_store *store, const paravue_window_options *options,
                                     paravue_window **window)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        if (!window)
            return library.fail(PARAVUE_WRONG_USE);
        *window = nullptr;
        const auto whole = options ? wholeCopy(*options) : paravue_window_options{};
        if (!whole || !isUsable(*whole))
            return library.fail(PARAVUE_WRONG_USE);
        if (!library.hasWindows())
            return library.fail(PARAVUE_NO_WINDOWS);
        if (library.isInCallback() || library.hasWindowOf(record))
            return library.fail(PARAVUE_BUSY);
        auto created = std::make_unique<WindowRecord>(record, *whole);
        if (created->hasParent() && !created->embed())
            return library.fail(PARAVUE_NO_WINDOWS,
                                QCoreApplication::translate(
                                    "CInterface", "The window of the host cannot be used on this screen"));
        *window = library.add(std::move(created));
        return PARAVUE_OK;
    });
}

paravue_result paravue_window_destroy(paravue_window *window)
{
    if (!window)
        return PARAVUE_OK;
    return guarded(window, [&](Library &library, WindowRecord &) {
        if (library.isInside())
            return library.fail(PARAVUE_BUSY);
        library.remove(window);
        return PARAVUE_OK;
    });
}

paravue_result paravue_window_run(paravue_window *window, int32_t *is_accepted)
{
    return guarded(window, [&](Library &library, WindowRecord &record) {
        if (is_accepted)
            *is_accepted = 0;
        if (record.hasBegun())
            return library.fail(PARAVUE_WRONG_USE);
        if (library.isInCallback() || record.store().isRunning())
            return library.fail(PARAVUE_BUSY);
        bool isAccepted = false;
        const paravue_result result = record.run(library, isAccepted);
        if (is_accepted)
            *is_accepted = isAccepted ? 1 : 0;
        return result;
    });
}

paravue_result paravue_window_show(paravue_window *window)
{
    return guarded(window, [](Library &library, WindowRecord &record) {
        if (!record.hasParent() || record.hasBegun())
            return library.fail(PARAVUE_WRONG_USE);
        if (library.isInCallback() || record.store().isRunning())
            return library.fail(PARAVUE_BUSY);
        record.show();
        return PARAVUE_OK;
    });
}

paravue_result paravue_window_set_geometry(paravue_window *window, int32_t x, int32_t y, int32_t width,
                                           int32_t height)
{
    return guarded(window, [&](Library &library, WindowRecord &record) {
        if (!record.hasParent() || width <= 0 || height <= 0)
            return library.fail(PARAVUE_WRONG_USE);
        record.setGeometry({x, y, width, height});
        return PARAVUE_OK;
    });
}

paravue_result paravue_window_close(paravue_window *window)
{
    return guarded(window, [](Library &, WindowRecord &record) {
        record.close();
        return PARAVUE_OK;
    });
}
